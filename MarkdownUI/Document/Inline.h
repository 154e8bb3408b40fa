#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace quillmoth::markdown {

struct Inline;
using Inlines = std::vector<Inline>;

/// The kinds of Inline.
namespace inlines {

struct Text {
    std::string literal;
};

struct Code {
    std::string literal;
};

/// Raw markup, kept as text.
struct HTML {
    std::string literal;
};

struct Emphasis {
    Inlines children;
};

struct Strong {
    Inlines children;
};

struct Strikethrough {
    Inlines children;
};

struct Link {
    std::string destination;
    Inlines children;
};

/// The children are the alternative text.
struct Image {
    std::string source;
    Inlines children;
};

struct SoftBreak {};

struct LineBreak {};

} // namespace inlines

/// A piece of the content of a paragraph, heading or table cell. Immutable by use; a value.
struct Inline {
    using Value = std::variant<inlines::Text, inlines::Code, inlines::HTML, inlines::Emphasis,
                               inlines::Strong, inlines::Strikethrough, inlines::Link, inlines::Image,
                               inlines::SoftBreak, inlines::LineBreak>;

    /// One image to be shown.
    struct Image {
        std::optional<std::string> source;
        std::string alt;
        std::optional<std::string> destination; ///< of the link that wraps it

        bool operator==(const Image&) const = default;
    };

    Value value;

    template<class Kind>
    [[nodiscard]] const Kind* get() const {
        return std::get_if<Kind>(&value);
    }
};

[[nodiscard]] bool operator==(const Inline& first, const Inline& second);
[[nodiscard]] std::size_t hashValue(const Inline& value);
[[nodiscard]] std::size_t hashValue(const Inlines& values);

/// The children of a kind that has some; null for the others.
[[nodiscard]] const Inlines* childrenOf(const Inline& value);
[[nodiscard]] Inlines* childrenOf(Inline& value);

/// All text below, soft breaks as blanks and line breaks as line feeds, without separators.
[[nodiscard]] std::string inlinesAsText(const Inlines& values);

/// The image of an image, or of a link whose only child is an image.
[[nodiscard]] std::optional<Inline::Image> imageOfInline(const Inline& value);

} // namespace quillmoth::markdown

template<>
struct std::hash<quillmoth::markdown::Inline> {
    std::size_t operator()(const quillmoth::markdown::Inline& value) const { return hashValue(value); }
};
