#include "MarkdownUI/Layout/ImageFlow.h"

#include "MarkdownUI/Layout/FlowLayout.h"
#include "MarkdownUI/Layout/ImageView.h"

#include <algorithm>
#include <cmath>

namespace quillmoth::markdown {

bool isImageFlow(const Inlines& values) {
    return std::ranges::all_of(values, [](const Inline& value) {
        if (const auto* text = value.get<inlines::Text>())
            return text->literal.empty();
        return value.get<inlines::SoftBreak>() != nullptr || value.get<inlines::LineBreak>() != nullptr ||
               imageOfInline(value).has_value();
    });
}

Size ImageFlow::addTo(Box& box, const ColumnFrame& frame, double top, TextDirection direction) const {
    const double spacing = std::round(font_.size * 0.25);
    FlowLayout flow{spacing, spacing, frame.width};
    std::vector<ImageItem> items;
    for (const Inline& value : values_) {
        if (value.get<inlines::LineBreak>() != nullptr) {
            flow.addSpacer();
        } else if (const auto image = imageOfInline(value)) {
            const ImageView view(context_, *image, font_);
            items.push_back(view.within(frame.width));
            flow.add([&view](double width) { return view.within(width).frame; });
        }
    }
    const std::vector<Rect> frames = flow.frames();
    for (std::size_t i = 0; i < items.size(); ++i) {
        Rect place = frames[i];
        if (direction == TextDirection::rightToLeft)
            place.x = frame.width - place.right();
        items[i].frame = place.translated(frame.x, top);
        box.decorations.push_back(std::move(items[i]));
    }
    return flow.size();
}

void ImageFlow::layOut(const LayoutContext& context, const FlowUnit& unit, Box& box) {
    const ColumnFrame frame = contentFrame(context, unit);
    const Size size =
        ImageFlow(context, *unit.inlines, context.flow.fontOf(unit)).addTo(box, frame, 0, unit.direction);
    box.height = size.height;
    box.right = frame.x + size.width;
}

} // namespace quillmoth::markdown
