#include <algorithm>
#include <cmath>

#include "Foundation/URL.h"
#include "MarkdownUI/Layout/Box.h"
#include "MarkdownUI/Layout/FlowLayout.h"

namespace quillmoth::markdown {

namespace {

/// The image within that width: its natural size at most. A clear area as large as a letter where there is
/// none.
ImageItem imageItem(const LayoutContext& context, const Inline::Image& image, const FontProperties& font,
                    double width) {
    ImageItem item;
    item.source = context.imageURL(image.source.value_or(std::string()));
    item.alt = image.alt;
    if (image.destination)
        item.destination = resolveLink(*image.destination, context.options.baseURL).value_or(std::string());
    const ImageStatus status = item.source.empty() ? ImageStatus{} : context.images.requestImage(item.source);
    if (status.state == ImageState::success) {
        const double scale = std::min(1.0, width / std::max(status.naturalSize.width, 1.0));
        item.frame = {0, 0, status.naturalSize.width * scale, status.naturalSize.height * scale};
    } else {
        const FontMetrics metrics = context.engine.metricsOf(makeFont(font));
        const double side = metrics.ascent + metrics.descent;
        item.frame = {0, 0, std::min(side, width), side};
    }
    return item;
}

double alignedOffset(TextAlignment alignment, bool isRightToLeft, double free) {
    if (alignment == TextAlignment::center)
        return free / 2;
    return (alignment == TextAlignment::trailing) == isRightToLeft ? 0 : free;
}

} // namespace

void addImage(const LayoutContext& context, const FlowUnit& unit, Box& box) {
    const ColumnFrame frame = contentFrame(context, unit);
    const auto image = imageOfInline(unit.inlines->front());
    ImageItem item = imageItem(context, *image, context.flow.fontOf(unit), frame.width);
    item.frame.x =
        frame.x + alignedOffset(context.options.alignment, unit.direction == TextDirection::rightToLeft,
                                frame.width - item.frame.width);
    box.height = item.frame.height;
    box.right = item.frame.right();
    box.decorations.push_back(std::move(item));
}

Size addImageFlow(const LayoutContext& context, const Inlines& values, const FontProperties& font,
                  const ColumnFrame& frame, double top, bool isRightToLeft, Box& box) {
    const double spacing = std::round(font.size * 0.25);
    FlowLayout flow{spacing, spacing, frame.width};
    std::vector<ImageItem> items;
    for (const Inline& value : values) {
        if (value.get<inlines::LineBreak>() != nullptr) {
            flow.addSpacer();
        } else if (const auto image = imageOfInline(value)) {
            items.push_back(imageItem(context, *image, font, frame.width));
            flow.add([&](double width) { return imageItem(context, *image, font, width).frame; });
        }
    }
    const std::vector<Rect> frames = flow.frames();
    for (std::size_t i = 0; i < items.size(); ++i) {
        Rect place = frames[i];
        if (isRightToLeft)
            place.x = frame.width - place.right();
        items[i].frame = place.translated(frame.x, top);
        box.decorations.push_back(std::move(items[i]));
    }
    return flow.size();
}

} // namespace quillmoth::markdown
