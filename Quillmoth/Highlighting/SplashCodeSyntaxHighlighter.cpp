#include "Quillmoth/Highlighting/SplashCodeSyntaxHighlighter.h"

#include <utility>

namespace quillmoth::highlighting {

SplashCodeSyntaxHighlighter::SplashCodeSyntaxHighlighter(Theme theme)
    : syntaxHighlighter(TextOutputFormat{std::move(theme)}, SwiftGrammar()) {}

markdown::AttributedText
SplashCodeSyntaxHighlighter::highlightCode(std::string_view content,
                                           std::optional<std::string_view> /*language*/) const {
    return syntaxHighlighter.highlight(content);
}

} // namespace quillmoth::highlighting
