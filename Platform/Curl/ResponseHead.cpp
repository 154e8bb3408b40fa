#include "Platform/Curl/ResponseHead.h"

#include "Foundation/ASCII.h"
#include "Foundation/Text.h"

#include <charconv>
#include <utility>

namespace quillmoth::platform {

namespace {

/// The number behind the protocol's name in a status line.
int parseStatusCode(std::string_view statusLine) {
    const std::size_t blank = statusLine.find(' ');
    if (blank == std::string_view::npos)
        return 0;
    const std::string_view rest = trimmed(statusLine.substr(blank));
    int code = 0;
    std::from_chars(rest.data(), rest.data() + rest.size(), code);
    return code;
}

} // namespace

bool ResponseHead::addLine(std::string_view line) {
    if (complete_)
        return false;
    if (line.starts_with("HTTP/")) {
        response_ = URLResponse();
        response_.statusCode = parseStatusCode(line);
        return false;
    }
    if (trimmed(line).empty()) {
        complete_ = statusCode() >= 200;
        return complete_;
    }
    const std::size_t colon = line.find(':');
    if (colon != std::string_view::npos)
        response_.headers.emplace_back(trimmed(line.substr(0, colon)), trimmed(line.substr(colon + 1)));
    return false;
}

std::optional<std::string> ResponseHead::header(std::string_view name) const {
    for (const auto& [field, value] : response_.headers) {
        if (equalIgnoringASCIICase(field, name))
            return value;
    }
    return std::nullopt;
}

URLResponse ResponseHead::response(std::string url) const {
    URLResponse response = response_;
    response.url = std::move(url);
    return response;
}

} // namespace quillmoth::platform
