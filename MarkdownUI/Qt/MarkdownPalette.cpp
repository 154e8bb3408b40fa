#include "MarkdownUI/Qt/MarkdownPalette.h"

namespace quillmoth::markdown {

namespace {

QColor white(double alpha) {
    return QColor::fromRgbF(1.F, 1.F, 1.F, static_cast<float>(alpha));
}

QColor black(double alpha) {
    return QColor::fromRgbF(0.F, 0.F, 0.F, static_cast<float>(alpha));
}

QColor withAlpha(QColor color, double alpha) {
    color.setAlphaF(static_cast<float>(alpha));
    return color;
}

} // namespace

MarkdownPalette MarkdownPalette::panel() {
    const QColor gray(0x86, 0x86, 0x92);
    const QColor accent(0x33, 0x9A, 0xFF);
    MarkdownPalette palette;
    palette.isDark = true;
    palette.base = QColor(0x1C, 0x1C, 0x21);
    palette.text = QColor(0xF2, 0xF2, 0xF7);
    palette.secondary = withAlpha(gray, 0.75);
    palette.gray = gray;
    palette.link = QColor(0x6C, 0xB4, 0xFF);
    palette.accent = accent;
    palette.divider = white(0.11);
    palette.codeFill = white(0.04);
    palette.codeText = palette.text;
    palette.button = white(0.10);
    palette.buttonHovered = white(0.16);
    palette.buttonPressed = white(0.06);
    palette.buttonLabel = QColor(0xD2, 0xD2, 0xDA);
    palette.buttonLabelPressed = QColor(0xC8, 0xC8, 0xD0);
    palette.done = QColor(0x57, 0xC9, 0x7A);
    palette.selection = palette.codeSelection = withAlpha(accent, 0.42);
    palette.thumb = palette.codeThumb = white(0.28);
    palette.thumbHovered = palette.codeThumbHovered = white(0.46);
    palette.thumbDragged = palette.codeThumbDragged = white(0.60);
    return palette;
}

MarkdownPalette MarkdownPalette::light() {
    MarkdownPalette palette = panel();
    palette.isDark = false;
    palette.base = QColor(0xFF, 0xFF, 0xFF);
    palette.text = QColor(0x1D, 0x1D, 0x22);
    palette.link = QColor(0x25, 0x63, 0xC9);
    palette.divider = black(0.12);
    palette.codeFill = QColor(0x25, 0x25, 0x2A);
    palette.button = QColor(0x3A, 0x3A, 0x3F);
    palette.buttonHovered = QColor(0x48, 0x48, 0x4D);
    palette.buttonPressed = QColor(0x31, 0x31, 0x36);
    palette.selection = withAlpha(palette.accent, 0.30);
    palette.thumb = black(0.24);
    palette.thumbHovered = black(0.42);
    palette.thumbDragged = black(0.56);
    return palette;
}

QColor MarkdownPalette::resolve(SemanticColor color) const {
    switch (color) {
    case SemanticColor::text:
        return text;
    case SemanticColor::secondary:
        return secondary;
    case SemanticColor::gray:
        return gray;
    case SemanticColor::link:
        return link;
    case SemanticColor::accent:
        return accent;
    case SemanticColor::divider:
        return divider;
    case SemanticColor::codeFill:
        return codeFill;
    case SemanticColor::buttonFill:
        return button;
    case SemanticColor::buttonLabel:
        return buttonLabel;
    case SemanticColor::done:
        return done;
    case SemanticColor::clear:
        break;
    }
    return Qt::transparent;
}

QColor MarkdownPalette::resolve(const Color& color) const {
    if (const RGBColor* rgb = color.rgb())
        return {rgb->red, rgb->green, rgb->blue};
    return resolve(*color.semantic());
}

} // namespace quillmoth::markdown
