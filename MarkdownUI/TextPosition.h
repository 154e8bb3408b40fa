#pragma once

#include <compare>
#include <cstddef>
#include <string>

namespace quillmoth::markdown {

/// A caret position: a text block (paragraph, heading, code block, table cell; counted in document order) and
/// a byte offset in its plain text.
struct TextPosition {
    std::size_t block = 0;
    std::size_t offset = 0;

    auto operator<=>(const TextPosition&) const = default;
};

/// Half-open; `begin` is not behind `end`.
struct TextRange {
    TextPosition begin;
    TextPosition end;

    [[nodiscard]] bool empty() const { return begin == end; }

    bool operator==(const TextRange&) const = default;
};

struct HeadingInfo {
    int level = 1;
    TextRange range;
    std::string text;

    bool operator==(const HeadingInfo&) const = default;
};

struct LinkInfo {
    TextRange range;
    std::string destination; ///< absolute URL, or as written where there is no base
    std::string text;

    bool operator==(const LinkInfo&) const = default;
};

} // namespace quillmoth::markdown
