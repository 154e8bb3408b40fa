#include "MarkdownUI/Document/URLReference.h"

#include <algorithm>

namespace quillmoth::markdown {

namespace {

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isHexDigit(char c) {
    return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

/// Unreserved characters and sub-delims of RFC 3986.
bool isPlain(char c) {
    return isLetter(c) || isDigit(c) || std::string_view("-._~!$&'()*+,;=").find(c) != std::string_view::npos;
}

/// `text` with characters beyond ASCII, and those in `tolerated`, percent-encoded; nothing where another one
/// is neither plain nor in `allowed` nor part of a percent-encoding.
std::optional<std::string> encoded(std::string_view text, std::string_view allowed,
                                   std::string_view tolerated) {
    constexpr std::string_view kHex = "0123456789ABCDEF";
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte >= 0x80 || tolerated.find(text[i]) != std::string_view::npos) {
            result += {'%', kHex[byte >> 4], kHex[byte & 0xF]};
        } else if (text[i] == '%') {
            if (i + 2 >= text.size() || !isHexDigit(text[i + 1]) || !isHexDigit(text[i + 2]))
                return std::nullopt;
            result += '%';
        } else if (isPlain(text[i]) || allowed.find(text[i]) != std::string_view::npos) {
            result += text[i];
        } else {
            return std::nullopt;
        }
    }
    return result;
}

/// Cuts what follows the first `separator` off `text`.
std::optional<std::string_view> cutBehind(std::string_view& text, char separator) {
    const std::size_t at = text.find(separator);
    if (at == std::string_view::npos)
        return std::nullopt;
    const std::string_view rest = text.substr(at + 1);
    text = text.substr(0, at);
    return rest;
}

/// Host and port; the userinfo before "@" is left as it is.
bool isHostAndPort(std::string_view text) {
    const std::size_t at = text.rfind('@');
    if (at != std::string_view::npos)
        text.remove_prefix(at + 1);
    std::size_t hostEnd = text.find(':');
    if (text.starts_with('[')) {
        const std::size_t close = text.find(']');
        if (close == std::string_view::npos)
            return false;
        hostEnd = close + 1;
    }
    const std::string_view port = hostEnd >= text.size() ? std::string_view() : text.substr(hostEnd);
    return port.empty() || (port.front() == ':' && std::ranges::all_of(port.substr(1), isDigit));
}

std::optional<std::string_view> cutScheme(std::string_view& text) {
    const std::size_t colon = text.find_first_of(":/?#");
    if (colon == std::string_view::npos || text[colon] != ':')
        return std::nullopt;
    const std::string_view scheme = text.substr(0, colon);
    const auto isSchemeCharacter = [](char c) {
        return isLetter(c) || isDigit(c) || c == '+' || c == '-' || c == '.';
    };
    if (scheme.empty() || !isLetter(scheme.front()) || !std::ranges::all_of(scheme, isSchemeCharacter))
        return std::nullopt;
    text.remove_prefix(colon + 1);
    return scheme;
}

/// Sets `target` to the encoded `part`, if there is one; false where it cannot be.
bool assign(std::optional<std::string>& target, std::optional<std::string_view> part,
            std::string_view allowed, std::string_view tolerated) {
    if (part)
        target = encoded(*part, allowed, tolerated);
    return !part || target;
}

std::string withoutDotSegments(std::string_view path) {
    std::string result;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find('/', 1), path.size());
        const std::string_view segment = path.substr(0, end);
        const bool isLast = end == path.size();
        path.remove_prefix(end);
        if (segment == "/." || segment == "/..") {
            if (segment == "/..")
                result.erase(std::min(result.rfind('/'), result.size()));
            if (isLast)
                result += '/';
        } else {
            result += segment;
        }
    }
    return result;
}

std::string mergedPath(const URLReference& base, const std::string& path) {
    if (base.authority && base.path.empty())
        return "/" + path;
    const std::size_t slash = base.path.rfind('/');
    return slash == std::string::npos ? path : base.path.substr(0, slash + 1) + path;
}

} // namespace

std::optional<URLReference> URLReference::parse(std::string_view text) {
    if (text.empty())
        return std::nullopt;
    URLReference result;
    const auto fragment = cutBehind(text, '#');
    const auto query = cutBehind(text, '?');
    if (const auto scheme = cutScheme(text))
        result.scheme = std::string(*scheme);
    if (text.starts_with("//")) {
        text.remove_prefix(2);
        const std::size_t end = std::min(text.find('/'), text.size());
        const std::string_view authority = text.substr(0, end);
        text.remove_prefix(end);
        if (!isHostAndPort(authority) || !assign(result.authority, authority, ":@[]", {}))
            return std::nullopt;
    } else if (!result.scheme && text.substr(0, text.find('/')).find(':') != std::string_view::npos) {
        return std::nullopt; // the first segment of a relative path has no colon
    }
    std::optional<std::string> path;
    if (!assign(path, text, ":@/", "{}|^[]") || !assign(result.query, query, ":@/?[]", "{}|^") ||
        !assign(result.fragment, fragment, ":@/?[]", "{}|^"))
        return std::nullopt;
    result.path = std::move(*path);
    return result;
}

URLReference URLReference::resolvedAgainst(const URLReference& base) const {
    if (scheme || !base.scheme)
        return *this;
    URLReference result = *this;
    result.scheme = base.scheme;
    if (authority) {
        result.path = withoutDotSegments(path);
        return result;
    }
    result.authority = base.authority;
    if (path.empty()) {
        result.path = base.path;
        if (!query)
            result.query = base.query;
    } else {
        result.path = withoutDotSegments(path.front() == '/' ? path : mergedPath(base, path));
    }
    return result;
}

std::string URLReference::text() const {
    std::string result;
    if (scheme)
        result += *scheme + ":";
    if (authority)
        result += "//" + *authority;
    result += path;
    if (query)
        result += "?" + *query;
    if (fragment)
        result += "#" + *fragment;
    return result;
}

std::optional<std::string> resolveURL(std::string_view text, std::string_view base) {
    const auto reference = URLReference::parse(text);
    if (!reference)
        return std::nullopt;
    const auto baseReference = URLReference::parse(base);
    return (baseReference ? reference->resolvedAgainst(*baseReference) : *reference).text();
}

std::optional<std::string> resolveLink(std::string_view destination, std::string_view base) {
    auto url = resolveURL(destination, base);
    std::string_view rest = url ? std::string_view(*url) : std::string_view();
    return cutScheme(rest) ? url : std::nullopt;
}

} // namespace quillmoth::markdown
