#include "MarkdownUI/Layout/Box.h"

#include <algorithm>
#include <cmath>
#include <variant>

namespace quillmoth::markdown {

namespace {

/// Capitals are about this high, and symbols stand in their middle.
constexpr double kCapHeight = 0.72;

double firstBaseline(const LayoutContext& context, const FlowUnit& unit, const Box& box) {
    if (box.fragments.empty())
        return context.engine.metricsOf(makeFont(context.flow.fontOf(unit))).ascent;
    const Fragment& first = box.fragments.front();
    const TextLine& line = first.shaped->lines().front();
    return first.origin.y + line.top + line.ascent;
}

/// Markers can be higher than what they stand before: a rule, a small heading. The box holds them all the
/// same.
void makeRoom(Box& box, double top, double bottom) {
    const double missing = std::max(0.0, -top);
    for (Fragment& fragment : box.fragments)
        fragment.origin.y += missing;
    for (DisplayItem& item : box.decorations)
        std::visit([missing](auto& kind) { kind.frame.y += missing; }, item);
    box.height = std::max(box.height, bottom) + missing;
}

} // namespace

void addMarkers(const LayoutContext& context, const FlowUnit& unit, Box& box) {
    if (unit.markerCount == 0)
        return;
    const double baseline = firstBaseline(context, unit, box);
    const ColumnFrame frame = contentFrame(context, unit);
    const bool isRightToLeft = unit.direction == TextDirection::rightToLeft;
    const double leading = isRightToLeft ? context.options.width - frame.x - frame.width : frame.x;
    const double moved = unit.leading - leading; // by deep nesting
    double highest = 0;
    double lowest = 0;
    const auto hold = [&](double top, double bottom) {
        highest = std::min(highest, top);
        lowest = std::max(lowest, bottom);
    };
    for (std::uint32_t i = 0; i < unit.markerCount; ++i) {
        const FlowMarker& place = context.flow.markers[unit.firstMarker + i];
        const double end = place.leading + place.width - moved;
        if (end <= 0)
            continue;
        const auto left = [&](double width) {
            return isRightToLeft ? context.options.width - end : end - width;
        };
        const AttributeContainer& bag = context.flow.bags[place.bag];
        const FontProperties& font = *bag.fontProperties;
        const ListMarker marker = makeMarker(place, context.theme);
        if (!marker.symbol.empty()) {
            const double side = symbolSide(marker.scale, font);
            const double top = std::round(baseline - font.scaledSize() * kCapHeight / 2 - side / 2);
            const Rect symbol{std::round(left(side)), top, side, side};
            box.decorations.push_back(SymbolItem{symbol, marker.symbol, marker.color});
            hold(symbol.y, symbol.bottom());
            continue;
        }
        addFragment(context, markerText(marker, bag), {.font = makeFont(font)}, {}, kNoTextBlock, box);
        Fragment& text = box.fragments.back();
        const TextLine& line = text.shaped->lines().front();
        text.origin = {left(line.advance), baseline - line.top - line.ascent};
        hold(text.origin.y, text.origin.y + line.height());
    }
    makeRoom(box, highest, lowest);
}

} // namespace quillmoth::markdown
