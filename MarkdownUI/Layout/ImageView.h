#pragma once

#include "MarkdownUI/Document/Inline.h"
#include "MarkdownUI/Layout/Box.h"

namespace quillmoth::markdown {

/// One image, at its natural size or narrower; a clear area as large as a letter where it is not there.
class ImageView {
public:
    /// All but the context's references may go after this.
    ImageView(const LayoutContext& context, const Inline::Image& image, const FontProperties& font);

    /// The image at x 0 and y 0 in that width.
    [[nodiscard]] ImageItem within(double width) const;

    /// A unit that is one image.
    static void layOut(const LayoutContext& context, const FlowUnit& unit, Box& box);

private:
    ImageItem item_; ///< without a frame
    DefaultImageViewModel model_;
    double clearSide_ = 0;
};

} // namespace quillmoth::markdown
