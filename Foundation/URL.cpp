#include "Foundation/URL.h"

#include "Foundation/ASCII.h"

#include <uriparser/Uri.h>

#include <algorithm>
#include <charconv>
#include <system_error>

namespace quillmoth {

namespace {

/// The library's form of a URL. It points into the text that was parsed.
struct ParsedURL {
    UriUriA uri{};

    ParsedURL() = default;
    ParsedURL(const ParsedURL&) = delete;
    ParsedURL& operator=(const ParsedURL&) = delete;

    ~ParsedURL() { uriFreeUriMembersA(&uri); }

    [[nodiscard]] bool parse(std::string_view text) {
        return uriParseSingleUriExA(&uri, text.data(), text.data() + text.size(), nullptr) == URI_SUCCESS;
    }
};

std::optional<std::string> textOf(const UriTextRangeA& range) {
    return range.first == nullptr ? std::nullopt : std::optional(std::string(range.first, range.afterLast));
}

URL partsOf(const UriUriA& uri) {
    URL url{.scheme = textOf(uri.scheme),
            .userInfo = textOf(uri.userInfo),
            .host = textOf(uri.hostText),
            .port = textOf(uri.portText),
            .path = {},
            .query = textOf(uri.query),
            .fragment = textOf(uri.fragment)};
    if (uri.hostData.ip6 != nullptr || uri.hostData.ipFuture.first != nullptr)
        url.host = "[" + *url.host + "]";
    bool isBehindSlash = !url.host && uri.absolutePath == URI_FALSE;
    for (const auto* segment = uri.pathHead; segment != nullptr; segment = segment->next) {
        if (!isBehindSlash)
            url.path += '/';
        url.path.append(segment->text.first, segment->text.afterLast);
        isBehindSlash = false;
    }
    if (uri.pathHead == nullptr && uri.absolutePath != URI_FALSE)
        url.path = "/";
    return url;
}

/// Where the authority ends, in which nothing is tolerated.
std::size_t authorityEnd(std::string_view text) {
    const std::size_t start = text.find_first_of("/?#");
    if (start == std::string_view::npos || !text.substr(start).starts_with("//") ||
        (start > 0 && text[start - 1] != ':'))
        return 0;
    return std::min(text.find_first_of("/?#", start + 2), text.size());
}

std::string encoded(std::string_view text, std::string_view tolerated) {
    constexpr std::string_view kHex = "0123456789ABCDEF";
    const std::size_t tolerantFrom = authorityEnd(text);
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte >= 0x80 || (i >= tolerantFrom && tolerated.find(text[i]) != std::string_view::npos))
            result += {'%', kHex[byte >> 4], kHex[byte & 0xF]};
        else
            result += text[i];
    }
    return result;
}

std::optional<URL> resolved(std::string_view text, std::string_view base, std::string_view tolerated) {
    const auto url = URL::parse(text, tolerated);
    const auto baseURL = url ? URL::parse(base, tolerated) : std::nullopt;
    return baseURL ? url->resolvedAgainst(*baseURL) : url;
}

} // namespace

std::optional<URL> URL::parse(std::string_view text, std::string_view tolerated) {
    const std::string strict = encoded(text, tolerated);
    ParsedURL parsed;
    return !strict.empty() && parsed.parse(strict) ? std::optional(partsOf(parsed.uri)) : std::nullopt;
}

URL URL::resolvedAgainst(const URL& base) const {
    if (scheme || !base.scheme)
        return *this;
    const std::string ownText = text();
    const std::string baseText = base.text();
    ParsedURL own;
    ParsedURL from;
    ParsedURL result;
    const bool isResolved = own.parse(ownText) && from.parse(baseText) &&
                            uriAddBaseUriA(&result.uri, &own.uri, &from.uri) == URI_SUCCESS;
    return isResolved ? partsOf(result.uri) : *this;
}

bool URL::isWeb() const {
    const bool isHTTP =
        scheme && (equalIgnoringASCIICase(*scheme, "http") || equalIgnoringASCIICase(*scheme, "https"));
    return isHTTP && host && !host->empty();
}

std::optional<std::uint16_t> URL::portNumber() const {
    const std::string_view digits = port ? std::string_view(*port) : std::string_view();
    std::uint16_t number = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return result.ec == std::errc() && number != 0 ? std::optional(number) : std::nullopt;
}

// Not by the library, whose items end at a zero byte, however it is written.
std::optional<std::vector<URLQueryItem>> URL::queryItems() const {
    if (!query)
        return std::nullopt;
    std::vector<URLQueryItem> items;
    for (std::string_view rest = *query; !rest.empty();) {
        const std::string_view item = rest.substr(0, rest.find('&'));
        rest.remove_prefix(std::min(item.size() + 1, rest.size()));
        const std::size_t equals = item.find('=');
        URLQueryItem& added = items.emplace_back();
        added.name = percentDecoded(std::string(item.substr(0, equals)));
        if (equals != std::string_view::npos)
            added.value = percentDecoded(std::string(item.substr(equals + 1)));
    }
    return items;
}

std::string URL::text() const {
    std::string result;
    if (scheme)
        result += *scheme + ":";
    if (host)
        result += "//" + (userInfo ? *userInfo + "@" : std::string()) + *host + (port ? ":" + *port : "");
    result += path;
    if (query)
        result += "?" + *query;
    if (fragment)
        result += "#" + *fragment;
    return result;
}

std::optional<std::string> resolveURL(std::string_view text, std::string_view base,
                                      std::string_view tolerated) {
    const auto url = resolved(text, base, tolerated);
    return url ? std::optional(url->text()) : std::nullopt;
}

std::optional<std::string> resolveLink(std::string_view destination, std::string_view base) {
    const auto url = resolved(destination, base, URL::kInLinks);
    return url && url->scheme ? std::optional(url->text()) : std::nullopt;
}

std::string percentDecoded(std::string text) {
    const char* end = uriUnescapeInPlaceExA(text.data(), URI_FALSE, URI_BR_DONT_TOUCH);
    text.resize(static_cast<std::size_t>(end - text.data()));
    return text;
}

std::optional<std::string> ownURL(std::string_view url) {
    const std::size_t length = kOwnScheme.size();
    const bool isOwn = url.size() > length + 1 && url[length] == ':' &&
                       equalIgnoringASCIICase(url.substr(0, length), kOwnScheme);
    return isOwn ? std::optional(std::string(kOwnScheme).append(url.substr(length))) : std::nullopt;
}

} // namespace quillmoth
