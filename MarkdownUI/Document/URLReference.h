#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillmoth::markdown {

/// A URL or relative reference in its five components (RFC 3986, appendix B). Characters beyond ASCII are
/// accepted and percent-encoded, and so are braces, brackets, "|" and "^" behind the host, which browsers
/// take.
struct URLReference {
    std::optional<std::string> scheme;
    std::optional<std::string> authority;
    std::string path;
    std::optional<std::string> query;
    std::optional<std::string> fragment;

    /// Nothing where `text` is empty or no URL (blanks, a stray "%", a port that is no number...).
    [[nodiscard]] static std::optional<URLReference> parse(std::string_view text);

    /// This reference seen from `base` (RFC 3986, 5.2.2). With a base that is relative itself, unchanged.
    [[nodiscard]] URLReference resolvedAgainst(const URLReference& base) const;

    [[nodiscard]] std::string text() const;

    bool operator==(const URLReference&) const = default;
};

/// `text` as a URL relative to `base` (empty for none); nothing if it does not parse.
[[nodiscard]] std::optional<std::string> resolveURL(std::string_view text, std::string_view base);

/// The absolute URL that a link leads to; nothing where there is none: a link that nothing can open is no
/// link.
[[nodiscard]] std::optional<std::string> resolveLink(std::string_view destination, std::string_view base);

} // namespace quillmoth::markdown
