#include "MarkdownUI/Style/CodeSyntaxHighlighter.h"

namespace quillmoth::markdown {

AttributedText
PlainTextCodeSyntaxHighlighter::highlightCode(std::string_view content,
                                              std::optional<std::string_view> /*language*/) const {
    return {std::string(content), {}};
}

} // namespace quillmoth::markdown
