#pragma once

#include <QColor>
#include <QPalette>

namespace quillmoth {

/// What the prompt editor paints beyond the colours of all windows. They lie over the sidebar's colour.
struct EditorColors {
    QColor segment, segmentOn, rowSelected, rowHovered;
};

/// Those of the theme that a widget's palette belongs to.
[[nodiscard]] const EditorColors& editorColors(const QPalette& palette);

} // namespace quillmoth
