#include "Quillmoth/Shell/Looks/EditorColors.h"

#include "Quillmoth/Shell/Looks/WindowTheme.h"

namespace quillmoth {

namespace {

QColor translucent(QRgb color, float opacity) {
    QColor result(color);
    result.setAlphaF(opacity);
    return result;
}

} // namespace

const EditorColors& editorColors(const QPalette& palette) {
    static const EditorColors light{.segment = translucent(0x000000, 0.065F),
                                    .segmentOn = QColor(0xFFFFFF),
                                    .rowSelected = translucent(0x5753DE, 0.14F),
                                    .rowHovered = translucent(0x000000, 0.045F)};
    static const EditorColors dark{.segment = translucent(0xFFFFFF, 0.07F),
                                   .segmentOn = translucent(0xFFFFFF, 0.16F),
                                   .rowSelected = translucent(0x908EFF, 0.24F),
                                   .rowHovered = translucent(0xFFFFFF, 0.055F)};
    return &windowTheme(palette) == &windowTheme(true) ? dark : light;
}

} // namespace quillmoth
