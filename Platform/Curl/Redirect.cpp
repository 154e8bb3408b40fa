#include "Platform/Curl/Redirect.h"

#include "Foundation/ASCII.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace quillmoth::platform {

namespace {

constexpr std::array<std::string_view, 2> kCredentials{"Authorization", "Cookie"};
constexpr std::array<std::string_view, 6> kBodyHeaders{"Content-Type",     "Content-Length",
                                                       "Content-Encoding", "Content-Language",
                                                       "Content-Location", "Transfer-Encoding"};

bool becomesGet(const std::string& method, int statusCode) {
    if (statusCode == 303)
        return method != "HEAD";
    return (statusCode == 301 || statusCode == 302) && method == "POST";
}

template<class Names>
bool isAmong(const Names& names, std::string_view header) {
    return std::any_of(names.begin(), names.end(),
                       [&](std::string_view name) { return equalIgnoringASCIICase(header, name); });
}

template<class Names>
void removeHeaders(URLRequest& request, const Names& names) {
    std::erase_if(request.headers, [&](const auto& header) { return isAmong(names, header.first); });
}

} // namespace

bool isRedirect(int statusCode) {
    return (statusCode >= 301 && statusCode <= 303) || statusCode == 307 || statusCode == 308;
}

bool isConfidential(const URLRequest& request, const std::map<std::string, std::string>& added) {
    const auto isCredential = [](const auto& header) { return isAmong(kCredentials, header.first); };
    return (request.httpBody && !request.httpBody->empty()) ||
           std::any_of(request.headers.begin(), request.headers.end(), isCredential) ||
           std::any_of(added.begin(), added.end(), isCredential);
}

URLRequest redirectedRequest(const URLRequest& request, int statusCode, std::string url) {
    URLRequest result = request;
    result.url = std::move(url);
    // The name of another host must not be kept.
    removeHeaders(result, std::array<std::string_view, 1>{"Host"});
    if (becomesGet(request.httpMethod, statusCode)) {
        result.httpMethod = "GET";
        result.httpBody.reset();
        removeHeaders(result, kBodyHeaders);
    }
    return result;
}

} // namespace quillmoth::platform
