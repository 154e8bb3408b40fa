#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
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

/// Something in a document that is more than text.
struct PartInfo {
    enum class Kind : std::uint8_t { heading, link, image, copyButton };

    Kind kind = Kind::heading;
    int level = 0;             ///< of a heading
    TextRange range{};         ///< of a heading or link
    std::string text{};        ///< of a heading or link; what an image shows
    std::string destination{}; ///< of a link, or of an image that is one: absolute URL
    std::size_t place = 0;     ///< copy button: its code block; image: the unit that holds it
    std::size_t index = 0;     ///< image: which one of its unit
    std::string source{};      ///< image: absolute URL
    bool isInText = false;     ///< image: in a text, at `range`, which is empty where it is not shown
    bool isPressable = false;  ///< image: a placeholder that loads when it is pressed

    /// True where it can be pressed.
    [[nodiscard]] bool acts() const {
        return kind == Kind::copyButton || isPressable || !destination.empty();
    }

    bool operator==(const PartInfo&) const = default;
};

struct LinkInfo {
    TextRange range;
    std::string destination{}; ///< absolute URL
    std::string text;

    bool operator==(const LinkInfo&) const = default;
};

} // namespace quillmoth::markdown
