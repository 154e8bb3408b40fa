#include "Platform/Curl/URLParts.h"

#include <memory>

namespace quillmoth::platform {

namespace {

using Handle = std::unique_ptr<CURLU, decltype(&::curl_url_cleanup)>;

Handle parsed(const CurlLibrary& curl, const std::string& url) {
    Handle handle(curl.url(), curl.urlCleanUp);
    // Blanks and bytes beyond ASCII are escaped, as browsers do.
    if (handle && curl.urlSet(handle.get(), CURLUPART_URL, url.c_str(), CURLU_URLENCODE) != CURLUE_OK)
        handle.reset();
    return handle;
}

std::string part(const CurlLibrary& curl, const Handle& handle, CURLUPart what) {
    char* text = nullptr;
    if (curl.urlGet(handle.get(), what, &text, CURLU_DEFAULT_PORT) != CURLUE_OK)
        return {};
    const std::unique_ptr<char, decltype(curl.free)> owner(text, curl.free);
    return text;
}

bool isFollowed(const std::string& scheme) {
    return scheme == "http" || scheme == "https";
}

} // namespace

std::string URLParts::server() const {
    const bool usual = port == (scheme == "https" ? "443" : "80");
    return usual ? host : host + ":" + port;
}

std::optional<URLParts> parseURL(const CurlLibrary& curl, const std::string& url) {
    const Handle handle = parsed(curl, url);
    if (!handle)
        return std::nullopt;
    URLParts parts{.scheme = part(curl, handle, CURLUPART_SCHEME),
                   .host = part(curl, handle, CURLUPART_HOST),
                   .port = part(curl, handle, CURLUPART_PORT)};
    return isFollowed(parts.scheme) && !parts.host.empty() ? std::optional(parts) : std::nullopt;
}

std::optional<std::string> resolvedURL(const CurlLibrary& curl, const std::string& base,
                                       const std::string& reference) {
    const Handle handle = parsed(curl, base);
    if (!handle || curl.urlSet(handle.get(), CURLUPART_URL, reference.c_str(), CURLU_URLENCODE) != CURLUE_OK)
        return std::nullopt;
    if (!isFollowed(part(curl, handle, CURLUPART_SCHEME)))
        return std::nullopt;
    return part(curl, handle, CURLUPART_URL);
}

} // namespace quillmoth::platform
