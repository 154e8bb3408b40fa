#include "MarkdownUI/Qt/DocumentContent.h"

namespace quillmoth::markdown {

DocumentContent::DocumentContent(TextEngine& engine, ImageSource& images,
                                 const CodeSyntaxHighlighter* highlighter, MarkdownContent content)
    : layout_(engine, images, Theme::basic()) {
    layout_.setCodeSyntaxHighlighter(highlighter);
    setContent(std::move(content));
}

void DocumentContent::setOptions(const ItemOptions& options) {
    LayoutOptions layoutOptions;
    layoutOptions.width = options.width;
    layoutOptions.fontSize = options.fontSize;
    layoutOptions.colorScheme = options.colorScheme;
    layoutOptions.alignment = options.alignment;
    layout_.setOptions(layoutOptions);
}

} // namespace quillmoth::markdown
