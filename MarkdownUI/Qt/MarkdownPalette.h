#pragma once

#include "MarkdownUI/Style/Color.h"

#include <QColor>

namespace quillmoth::markdown {

/// All colours of a painted document, and whether it stands on a dark ground.
struct MarkdownPalette {
    bool isDark = true;
    QColor base;
    QColor text;
    QColor secondary;
    QColor gray;
    QColor link;
    QColor accent;
    QColor divider;
    QColor codeFill;
    QColor codeText; ///< of code without a colour of its own, and of selected code
    QColor button;
    QColor buttonHovered;
    QColor buttonPressed;
    QColor buttonLabel;
    QColor buttonLabelPressed;
    QColor done;
    QColor selection;
    QColor codeSelection;
    QColor thumb; ///< of scroll bars
    QColor thumbHovered;
    QColor thumbDragged;
    QColor codeThumb;
    QColor codeThumbHovered;
    QColor codeThumbDragged;

    /// For the panel, which is always dark.
    [[nodiscard]] static MarkdownPalette panel();
    /// For a light ground. Code keeps its dark one, for which its colours are made.
    [[nodiscard]] static MarkdownPalette light();

    [[nodiscard]] QColor resolve(const Color& color) const;
    [[nodiscard]] QColor resolve(SemanticColor color) const;

    bool operator==(const MarkdownPalette&) const = default;
};

} // namespace quillmoth::markdown
