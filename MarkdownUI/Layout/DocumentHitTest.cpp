#include "MarkdownUI/Layout/DocumentHitTest.h"

#include "MarkdownUI/Layout/DocumentState.h"
#include "MarkdownUI/Layout/DocumentText.h"
#include "MarkdownUI/Layout/ScrollRegion.h"

#include <algorithm>
#include <cmath>

namespace quillmoth::markdown {

namespace {

/// How far `value` is outside [begin, end].
double distanceTo(double value, double begin, double end) {
    return std::max({begin - value, value - end, 0.0});
}

Rect frameOf(const Fragment& fragment) {
    Rect frame = fragment.frameOfLine(0);
    for (std::size_t line = 1; line < fragment.lineCount; ++line) {
        const Rect next = fragment.frameOfLine(line);
        const double right = std::max(frame.right(), next.right());
        frame.x = std::min(frame.x, next.x);
        frame.width = right - frame.x;
        frame.height = next.bottom() - frame.y;
    }
    return frame;
}

/// The selectable fragment nearest to `point`, first by x (the cells of a row), then by y; null for none.
const Fragment* nearestFragment(const Box& box, Point point) {
    const Fragment* nearest = nullptr;
    std::pair<double, double> least;
    for (const Fragment& fragment : box.fragments) {
        if (fragment.textBlock == kNoTextBlock)
            continue;
        const Rect frame = frameOf(fragment);
        const std::pair distance{distanceTo(point.x, frame.x, frame.right()),
                                 distanceTo(point.y, frame.y, frame.bottom())};
        if (nearest == nullptr || distance < least) {
            nearest = &fragment;
            least = distance;
        }
    }
    return nearest;
}

/// The line at or nearest to `y`, which is in the fragment's coordinates.
std::size_t lineAt(const Fragment& fragment, double y) {
    const auto& lines = fragment.shaped->lines();
    std::size_t line = 0;
    while (line + 1 < fragment.lineCount && y >= lines[line + 1].top)
        ++line;
    return line;
}

/// A point in the coordinates of a unit's box.
Point inUnit(const DocumentState& state, std::size_t unit, Point point) {
    return {point.x + scrollOffsetOfUnit(state, unit), point.y - state.contentTop(unit)};
}

/// The unit at `point`, laid out; nothing in an empty document.
std::optional<std::size_t> unitAt(DocumentState& state, Point point) {
    if (state.flow().units.empty())
        return std::nullopt;
    (void)state.ensureLaidOut(point.y, point.y + 1);
    return state.heights().find(point.y);
}

/// Calls visit(fragment, unit) for each selectable fragment that meets `area` until it returns true.
template<class Visit>
void forEachFragment(DocumentState& state, const Rect& area, const Visit& visit) {
    (void)state.ensureLaidOut(area.y, area.bottom());
    const std::size_t count = state.flow().units.size();
    for (std::size_t unit = state.heights().find(area.y);
         unit < count && state.heights().top(unit) < area.bottom(); ++unit) {
        for (const Fragment& fragment : state.box(unit).fragments) {
            if (fragment.textBlock != kNoTextBlock)
                visit(fragment, unit);
        }
    }
}

/// The part of a fragment that lies in `range`, in offsets of its text; empty for none.
std::pair<std::size_t, std::size_t> clipped(const Fragment& fragment, const TextRange& range) {
    const std::size_t first = fragment.textOffset;
    const std::size_t last = first + fragment.textEnd();
    const TextPosition begin = std::max(range.begin, TextPosition{fragment.textBlock, first});
    const TextPosition end = std::min(range.end, TextPosition{fragment.textBlock, last});
    if (begin >= end)
        return {0, 0};
    return {begin.offset - first, end.offset - first};
}

TextPosition nearbyPosition(const DocumentState& state, std::size_t unit) {
    const std::size_t block = state.flow().units[unit].firstTextBlock;
    return block < state.flow().textBlockCount ? TextPosition{block, 0} : wholeRange(state).end;
}

bool isIn(const std::vector<Rect>& rectangles, Point point) {
    return std::ranges::any_of(rectangles, [point](const Rect& rect) { return rect.contains(point); });
}

/// The attributes of the text at a point of the box that fulfil `isWanted`; null for none.
template<class IsWanted>
const AttributeContainer* runAt(const Box& box, Point inside, const IsWanted& isWanted) {
    for (const Fragment& fragment : box.fragments) {
        const Point inText{inside.x - fragment.origin.x, inside.y - fragment.origin.y};
        const TextLine& line = fragment.shaped->lines()[lineAt(fragment, inText.y)];
        for (const AttributedText::Run& run : fragment.text->runs()) {
            const std::size_t begin = std::max(run.begin, line.begin);
            const std::size_t end = std::min(run.end(), line.end);
            if (begin < end && isWanted(*run.attributes) &&
                isIn(fragment.shaped->rectanglesOf(begin, end), inText))
                return &*run.attributes;
        }
    }
    return nullptr;
}

} // namespace

TextPosition positionAt(DocumentState& state, Point point) {
    const auto unit = unitAt(state, point);
    if (!unit)
        return {};
    if (point.y >= state.heights().total())
        return wholeRange(state).end;
    const Point inside = inUnit(state, *unit, point);
    const Fragment* fragment = nearestFragment(state.box(*unit), inside);
    if (fragment == nullptr)
        return nearbyPosition(state, *unit);
    const std::size_t line = lineAt(*fragment, inside.y - fragment->origin.y);
    const std::size_t offset = fragment->shaped->offsetAt(line, inside.x - fragment->origin.x);
    return {fragment->textBlock, fragment->textOffset + offset};
}

bool isTextAt(DocumentState& state, Point point) {
    const auto unit = unitAt(state, point);
    if (!unit)
        return false;
    const Point inside = inUnit(state, *unit, point);
    return std::ranges::any_of(state.box(*unit).fragments, [inside](const Fragment& fragment) {
        const double y = inside.y - fragment.origin.y;
        return fragment.textBlock != kNoTextBlock &&
               fragment.frameOfLine(lineAt(fragment, y)).contains(inside);
    });
}

std::vector<Rect> selectionRectangles(DocumentState& state, const TextRange& range, const Rect& area) {
    std::vector<Rect> result;
    forEachFragment(state, area, [&](const Fragment& fragment, std::size_t unit) {
        const auto [begin, end] = clipped(fragment, range);
        if (begin == end)
            return;
        const double x = fragment.origin.x - scrollOffsetOfUnit(state, unit);
        const double y = fragment.origin.y + state.contentTop(unit);
        for (const Rect& rect : fragment.shaped->rectanglesOf(begin, end)) {
            const Rect placed = rect.translated(x, y);
            if (placed.y < area.bottom() && area.y < placed.bottom())
                result.push_back(placed);
        }
    });
    return result;
}

Rect caretRectangle(DocumentState& state, const TextPosition& position) {
    const DocumentFlow& flow = state.flow();
    std::size_t unit = flow.unitOfTextBlock(position.block);
    if (unit == flow.units.size())
        return {0, state.heights().total(), 0, 0};
    // In a text of several parts, the last that starts before the position.
    while (unit + 1 < flow.units.size() && flow.units[unit].group != kNoGroup &&
           flow.units[unit].kind != FlowUnit::Kind::tableRow &&
           flow.units[unit + 1].group == flow.units[unit].group &&
           flow.units[unit + 1].textBegin <= position.offset)
        ++unit;
    for (const Fragment& fragment : state.box(unit).fragments) {
        if (fragment.textBlock != position.block)
            continue;
        const std::size_t offset = std::min(
            std::max(position.offset, fragment.textOffset) - fragment.textOffset, fragment.textEnd());
        const auto& lines = fragment.shaped->lines();
        std::size_t line = 0;
        while (line + 1 < fragment.lineCount && lines[line + 1].begin <= offset)
            ++line;
        const Rect frame = fragment.frameOfLine(line).translated(0, state.contentTop(unit));
        const double x = fragment.origin.x + fragment.shaped->caretX(line, offset);
        return {x - scrollOffsetOfUnit(state, unit), frame.y, 0, frame.height};
    }
    return {0, state.contentTop(unit), 0, 0};
}

std::optional<std::string> linkAt(DocumentState& state, Point point) {
    const auto unit = unitAt(state, point);
    if (!unit)
        return std::nullopt;
    const Point inside = inUnit(state, *unit, point);
    const Box& box = state.box(*unit);
    for (const DisplayItem& decoration : box.decorations) {
        const auto* image = std::get_if<ImageItem>(&decoration);
        if (image != nullptr && !image->isPlaceholder && !image->destination.empty() &&
            image->frame.contains(inside))
            return image->destination;
    }
    const auto* run = runAt(box, inside, [](const AttributeContainer& bag) { return bag.link.has_value(); });
    return run != nullptr ? run->link : std::nullopt;
}

std::string imageAt(DocumentState& state, Point point) {
    const auto unit = unitAt(state, point);
    if (!unit)
        return {};
    const Point inside = inUnit(state, *unit, point);
    const Box& box = state.box(*unit);
    for (const DisplayItem& decoration : box.decorations) {
        const auto* image = std::get_if<ImageItem>(&decoration);
        if (image != nullptr && image->frame.contains(inside))
            return image->source;
    }
    const auto* run =
        runAt(box, inside, [](const AttributeContainer& bag) { return bag.attachment.has_value(); });
    return run != nullptr ? run->attachment->source : std::string();
}

std::optional<std::size_t> codeBlockAt(DocumentState& state, Point point) {
    const auto unit = unitAt(state, point);
    if (!unit || state.flow().units[*unit].kind != FlowUnit::Kind::code)
        return std::nullopt;
    const auto& codeBlocks = state.flow().codeBlocks;
    const auto found = std::ranges::lower_bound(codeBlocks, state.flow().units[*unit].group);
    const auto codeBlock = static_cast<std::size_t>(found - codeBlocks.begin());
    return scrollRegionOf(state, *found).frame.contains(point) ? std::optional(codeBlock) : std::nullopt;
}

std::optional<ScrollRegionItem> scrollRegionAt(DocumentState& state, Point point) {
    const auto unit = unitAt(state, point);
    if (!unit)
        return std::nullopt;
    const FlowUnit& flowUnit = state.flow().units[*unit];
    if (flowUnit.kind != FlowUnit::Kind::code && flowUnit.kind != FlowUnit::Kind::tableRow)
        return std::nullopt;
    const ScrollRegionItem region = scrollRegionOf(state, flowUnit.group);
    return region.frame.contains(point) ? std::optional(region) : std::nullopt;
}

} // namespace quillmoth::markdown
