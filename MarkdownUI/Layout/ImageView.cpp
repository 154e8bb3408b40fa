#include "MarkdownUI/Layout/ImageView.h"

#include "Foundation/URL.h"
#include "MarkdownUI/Layout/ImagePlaceholder.h"
#include "MarkdownUI/Layout/ResizeToFit.h"

#include <algorithm>

namespace quillmoth::markdown {

namespace {

double alignedOffset(TextAlignment alignment, bool isRightToLeft, double free) {
    if (alignment == TextAlignment::center)
        return free / 2;
    return (alignment == TextAlignment::trailing) == isRightToLeft ? 0 : free;
}

} // namespace

ImageView::ImageView(const LayoutContext& context, const Inline::Image& image, const FontProperties& font) {
    item_.source = context.imageURL(image.source.value_or(std::string()));
    item_.alt = image.alt;
    if (image.destination)
        item_.destination = resolveLink(*image.destination, context.options.baseURL).value_or(std::string());
    model_ = context.image(item_.source);
    const FontMetrics metrics = context.engine.metricsOf(makeFont(font));
    clearSide_ = metrics.ascent + metrics.descent;
}

ImageItem ImageView::within(double width) const {
    ImageItem item = item_;
    const bool isLoaded = model_.state == DefaultImageViewModel::State::success;
    item.isPlaceholder = model_.state == DefaultImageViewModel::State::placeholder;
    const Size size = isLoaded             ? ResizeToFit{model_.naturalSize}.within(width)
                      : item.isPlaceholder ? placeholderWithin(kPlaceholderInBlock, width)
                                           : Size{std::min(clearSide_, width), clearSide_};
    item.frame = {0, 0, size.width, size.height};
    return item;
}

void ImageView::layOut(const LayoutContext& context, const FlowUnit& unit, Box& box) {
    const ColumnFrame frame = contentFrame(context, unit);
    const auto image = imageOfInline(unit.inlines->front());
    ImageItem item = ImageView(context, *image, context.flow.fontOf(unit)).within(frame.width);
    item.frame.x =
        frame.x + alignedOffset(context.options.alignment, unit.direction == TextDirection::rightToLeft,
                                frame.width - item.frame.width);
    box.height = item.frame.height;
    box.right = item.frame.right();
    box.decorations.push_back(std::move(item));
}

} // namespace quillmoth::markdown
