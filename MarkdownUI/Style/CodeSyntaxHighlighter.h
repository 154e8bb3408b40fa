#pragma once

#include "MarkdownUI/Style/AttributedText.h"

#include <optional>
#include <string_view>

namespace quillmoth::markdown {

/// Colours the text of code blocks. Main thread; any text is good input.
class CodeSyntaxHighlighter {
public:
    virtual ~CodeSyntaxHighlighter() = default;

    /// `content` unchanged, in runs with colours. A run without `font` gets the font of its code block, and
    /// one without `foregroundColor` the colour around it. `language` is the fence's info text, if there is
    /// one.
    [[nodiscard]] virtual AttributedText highlightCode(std::string_view content,
                                                       std::optional<std::string_view> language) const = 0;
};

/// The default: no colours.
class PlainTextCodeSyntaxHighlighter : public CodeSyntaxHighlighter {
public:
    [[nodiscard]] AttributedText highlightCode(std::string_view content,
                                               std::optional<std::string_view> language) const override;
};

} // namespace quillmoth::markdown
