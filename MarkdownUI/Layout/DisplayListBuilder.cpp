#include "MarkdownUI/Layout/DisplayListBuilder.h"

#include "MarkdownUI/Layout/CodeBlockView.h"
#include "MarkdownUI/Layout/DocumentState.h"
#include "MarkdownUI/Layout/ScrollRegion.h"
#include "MarkdownUI/Layout/TableView.h"

#include <algorithm>

namespace quillmoth::markdown {

namespace {

constexpr double kSideBarWidth = 4;
constexpr double kCodeRadius = 8;

std::size_t codeBlockOfGroup(const DocumentFlow& flow, std::uint32_t group) {
    return static_cast<std::size_t>(std::ranges::lower_bound(flow.codeBlocks, group) -
                                    flow.codeBlocks.begin());
}

/// Of a box: all, or what scrolls with its block, or the markers before it.
enum class Part { all, content, markers };

class Builder {
public:
    Builder(DocumentState& state, const Rect& area) : state_(state), flow_(state.flow()), area_(area) {}

    DisplayList build() {
        std::size_t unit = state_.heights().find(area_.y);
        while (unit < flow_.units.size() && isAboveBottom(unit)) {
            const FlowUnit& flowUnit = flow_.units[unit];
            if (flowUnit.kind == FlowUnit::Kind::code)
                unit = addCode(flowUnit.group, unit);
            else if (flowUnit.kind == FlowUnit::Kind::tableRow)
                unit = addTable(flowUnit.group, unit);
            else
                addBox(unit++, Part::all, 0);
        }
        return std::move(list_);
    }

private:
    [[nodiscard]] bool isAboveBottom(std::size_t unit) const {
        return state_.heights().top(unit) < area_.bottom();
    }

    [[nodiscard]] bool isInSight(const Rect& frame) const {
        return frame.y < area_.bottom() && area_.y < frame.bottom();
    }

    void addFragment(const Fragment& fragment, double left, double top) {
        for (std::size_t line = 0; line < fragment.lineCount; ++line) {
            const Rect frame = fragment.frameOfLine(line).translated(-left, top);
            if (!isInSight(frame))
                continue;
            TextLineItem item{frame, {fragment.origin.x - left, fragment.origin.y + top}};
            item.shaped = fragment.shaped.get();
            item.text = fragment.text.get();
            item.line = line;
            item.textBlock = fragment.textBlock;
            item.textOffset = fragment.textOffset;
            list_.push_back(item);
        }
    }

    void addBox(std::size_t unit, Part part, double left) {
        const Box& box = state_.box(unit);
        const double top = state_.contentTop(unit);
        const auto isWanted = [part](bool isMarker) {
            return part == Part::all || isMarker == (part == Part::markers);
        };
        for (const DisplayItem& decoration : box.decorations) {
            const bool isMarker = std::holds_alternative<SymbolItem>(decoration);
            if (!isWanted(isMarker) || !isInSight(frameOf(decoration).translated(0, top)))
                continue;
            DisplayItem& item = list_.emplace_back(decoration);
            std::visit([&](auto& kind) { kind.frame = kind.frame.translated(-left, top); }, item);
        }
        for (const Fragment& fragment : box.fragments) {
            if (isWanted(fragment.textBlock == kNoTextBlock))
                addFragment(fragment, left, top);
        }
    }

    /// Adds the units of a code block from `unit` on; gives the unit behind those in sight.
    std::size_t addCode(std::uint32_t group, std::size_t unit) {
        const std::size_t codeBlock = codeBlockOfGroup(flow_, group);
        const std::size_t first = unit;
        const ScrollRegionItem region = scrollRegionOf(state_, group);
        list_.push_back(RectangleItem{region.frame, SemanticColor::codeFill, kCodeRadius});
        const std::size_t place = list_.size();
        list_.push_back(region);
        const std::size_t end = flow_.groups[group].endUnit;
        for (; unit < end && isAboveBottom(unit); ++unit)
            addBox(unit, Part::content, region.offset);
        endRegion(place);
        const Rect bar{region.frame.x, region.frame.y, kSideBarWidth, region.frame.height};
        list_.push_back(RectangleItem{.frame = bar, .color = SemanticColor::gray, .isOverlay = true});
        const ButtonItem button = copyButton(state_, codeBlock);
        if (isInSight(button.frame))
            list_.push_back(button);
        if (flow_.units[first].markerCount > 0)
            addBox(first, Part::markers, 0);
        return unit;
    }

    /// The region at `place` in the list holds all that has been added behind it.
    void endRegion(std::size_t place) {
        std::get<ScrollRegionItem>(list_[place]).itemCount = list_.size() - place - 1;
    }

    /// The same for a table, whose borders are drawn for the rows in sight.
    std::size_t addTable(std::uint32_t group, std::size_t unit) {
        const FlowGroup& flowGroup = flow_.groups[group];
        const TableBorderView border(state_.theme().tableBorderStyle);
        const std::size_t first = unit;
        (void)state_.box(unit); // makes the columns
        const TableColumns& columns = *state_.group(group).columns;
        const ScrollRegionItem region = scrollRegionOf(state_, group);
        const bool scrolls = scrollsSideways(columns, {region.frame.x, region.frame.width});
        const double barRoom = scrolls ? kTableBarRoom : 0;
        TableBounds table;
        table.bounds = columns.bounds.translated(-region.offset, region.frame.y);
        table.bounds.height = region.frame.height - barRoom;
        for (const ColumnFrame& column : columns.columns)
            table.columns.push_back({column.x - region.offset, column.width});
        for (; unit < flowGroup.endUnit && isAboveBottom(unit); ++unit)
            table.rows.push_back(boundsOfRow(unit, border.width()));
        if (unit == flowGroup.endUnit)
            table.rows.back().height -= barRoom;
        const std::size_t place = list_.size();
        if (scrolls)
            list_.push_back(region);
        TableBackgroundView(state_.theme().tableBackgroundStyle).addTo(list_, table, flow_.units[first].row);
        for (std::size_t row = first; row < unit; ++row)
            addBox(row, scrolls ? Part::content : Part::all, region.offset);
        for (const RectangleItem& line : border.lines(table)) {
            if (isInSight(line.frame))
                list_.push_back(line);
        }
        if (scrolls) {
            endRegion(place);
            addBox(first, Part::markers, 0);
        }
        return unit;
    }

    [[nodiscard]] TableBounds::Row boundsOfRow(std::size_t unit, double border) const {
        const double above = flow_.units[unit].row == 0 ? border : 0;
        const double top = state_.contentTop(unit);
        return {top + above, state_.heights().top(unit + 1) - top - above - border};
    }

    DocumentState& state_;
    const DocumentFlow& flow_;
    Rect area_;
    DisplayList list_;
};

} // namespace

DisplayList makeDisplayList(DocumentState& state, const Rect& area) {
    return Builder(state, area).build();
}

} // namespace quillmoth::markdown
