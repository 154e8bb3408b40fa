#include "Quillmoth/Shell/Panel/MessagePalette.h"

#include "Quillmoth/Shell/Looks/Palette.h"

namespace quillmoth {

namespace {

/// How strong a colour is that lets shine through what is below.
QColor withAlphaOf(const QColor& color, const QColor& strength) {
    QColor result = color;
    result.setAlphaF(strength.alphaF());
    return result;
}

} // namespace

markdown::MarkdownPalette messagePalette() {
    markdown::MarkdownPalette palette = markdown::MarkdownPalette::panel();
    palette.base = kPanelTheme.base;
    palette.text = palette.codeText = kPanelTheme.text;
    palette.gray = kPanelTheme.gray;
    palette.secondary = withAlphaOf(kPanelTheme.gray, palette.secondary);
    palette.accent = kPanelTheme.accent;
    palette.selection = palette.codeSelection = withAlphaOf(kPanelTheme.accent, palette.selection);
    palette.link = kPanelTheme.link;
    palette.done = kPanelTheme.done;
    palette.buttonLabel = kPanelTheme.barHovered;
    palette.buttonLabelPressed = kPanelTheme.buttonPressedText;
    return palette;
}

} // namespace quillmoth
