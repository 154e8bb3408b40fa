#pragma once

#include "MarkdownUI/Document/Block.h"

#include <string_view>

namespace quillmoth::markdown {

/// The deepest nesting of a document, of blocks and inlines together. What is nested deeper loses that
/// nesting, but none of its text: recursion over a document is safe.
constexpr int kDeepestNesting = 1200;

/// A parsed document.
struct MarkdownContent {
    Blocks blocks;

    MarkdownContent() = default;

    explicit MarkdownContent(Blocks values) : blocks(std::move(values)) {}

    /// Any text is a document. Ill-formed UTF-8 and NUL become U+FFFD. Any thread.
    explicit MarkdownContent(std::string_view text);

    bool operator==(const MarkdownContent&) const = default;
};

} // namespace quillmoth::markdown
