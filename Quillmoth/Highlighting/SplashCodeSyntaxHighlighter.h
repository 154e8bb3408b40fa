#pragma once

#include "MarkdownUI/Style/CodeSyntaxHighlighter.h"
#include "Quillmoth/Highlighting/SwiftGrammar.h"
#include "Quillmoth/Highlighting/SyntaxHighlighter.h"
#include "Quillmoth/Highlighting/TextOutputFormat.h"

#include <optional>
#include <string_view>

namespace quillmoth::highlighting {

/// Colours every code block by the one grammar, whatever language its fence names.
class SplashCodeSyntaxHighlighter : public markdown::CodeSyntaxHighlighter {
public:
    explicit SplashCodeSyntaxHighlighter(Theme theme);

    [[nodiscard]] markdown::AttributedText
    highlightCode(std::string_view content, std::optional<std::string_view> language) const override;

    const SyntaxHighlighter<TextOutputFormat, SwiftGrammar> syntaxHighlighter;
};

} // namespace quillmoth::highlighting
