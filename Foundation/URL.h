#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmoth {

/// One item of a URL's query, percent-decoded. An item without "=" has no value.
struct URLQueryItem {
    std::string name;
    std::optional<std::string> value;

    friend bool operator==(const URLQueryItem&, const URLQueryItem&) = default;
};

/// A URL or relative reference in its parts (RFC 3986, section 3), as they are written.
struct URL {
    std::optional<std::string> scheme;
    std::optional<std::string> userInfo;
    /// None where there is no authority. An IPv6 address stands in brackets.
    std::optional<std::string> host;
    std::optional<std::string> port;
    std::string path;
    std::optional<std::string> query;
    std::optional<std::string> fragment;

    /// What people write in links as it is, and browsers take.
    static constexpr std::string_view kInLinks = "{}|^[]";
    /// All that a URL may not hold and that is no control character.
    static constexpr std::string_view kAnything = "{}|^[] \"<>\\`";

    /// Characters beyond ASCII, and behind the host those in `tolerated`, are percent-encoded first. Nothing
    /// where `text` is empty or no URL (a stray "%", a port that is no number...).
    [[nodiscard]] static std::optional<URL> parse(std::string_view text,
                                                  std::string_view tolerated = kInLinks);

    /// This reference seen from `base` (section 5.2.2). With a base that is relative itself, unchanged.
    [[nodiscard]] URL resolvedAgainst(const URL& base) const;

    /// True for an http or https URL with a host.
    [[nodiscard]] bool isWeb() const;

    /// None where there is no port, or none from 1 to 65535.
    [[nodiscard]] std::optional<std::uint16_t> portNumber() const;

    /// The query split at "&"; none where there is no query. A "+" stands for itself (section 3.4).
    [[nodiscard]] std::optional<std::vector<URLQueryItem>> queryItems() const;

    [[nodiscard]] std::string text() const;

    friend bool operator==(const URL&, const URL&) = default;
};

/// `text` as a URL relative to `base` (empty for none); nothing if it does not parse.
[[nodiscard]] std::optional<std::string> resolveURL(std::string_view text, std::string_view base,
                                                    std::string_view tolerated = URL::kInLinks);

/// The absolute URL that a link leads to; nothing where there is none: a link that nothing can open is no
/// link.
[[nodiscard]] std::optional<std::string> resolveLink(std::string_view destination, std::string_view base);

[[nodiscard]] std::string percentDecoded(std::string text);

/// The scheme of the program's own URLs.
inline constexpr std::string_view kOwnScheme = "quillmoth";

/// The URL with its scheme in lower case where that is the program's own, however it is written (section
/// 6.2.2.1), and something stands behind it. None otherwise. Whatever brings URLs from outside asks here;
/// within the program they compare exactly.
[[nodiscard]] std::optional<std::string> ownURL(std::string_view url);

} // namespace quillmoth
