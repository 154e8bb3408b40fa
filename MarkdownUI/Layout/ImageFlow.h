#pragma once

#include "MarkdownUI/Layout/Box.h"

namespace quillmoth::markdown {

/// Whether inlines are laid out as rows of images: there is nothing else in them than images, breaks and
/// empty text.
[[nodiscard]] bool isImageFlow(const Inlines& values);

/// Rows of images, which a line break ends.
class ImageFlow {
public:
    /// All outlive the flow.
    ImageFlow(const LayoutContext& context, const Inlines& values, const FontProperties& font)
        : context_(context), values_(values), font_(font) {}

    /// Adds the images from `top` on, as wide as `frame` at most; gives the size of all.
    Size addTo(Box& box, const ColumnFrame& frame, double top, TextDirection direction) const;

    /// A unit that is such a flow.
    static void layOut(const LayoutContext& context, const FlowUnit& unit, Box& box);

private:
    const LayoutContext& context_;
    const Inlines& values_;
    const FontProperties& font_;
};

} // namespace quillmoth::markdown
