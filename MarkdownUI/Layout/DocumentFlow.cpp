#include "MarkdownUI/Layout/DocumentFlow.h"

#include <algorithm>
#include <map>

#include "MarkdownUI/Layout/PlainText.h"
#include "MarkdownUI/Layout/TextDirection.h"

namespace quillmoth::markdown {

namespace {

/// What containers hand down.
struct FlowContext {
    std::uint32_t bag = 0;
    double leading = 0;
    double trailing = 0;
    bool isTight = false;
    int listLevel = 0;
};

class FlowBuilder {
public:
    FlowBuilder(const Theme& theme, MarkerMeasure& measure, DocumentFlow& flow)
        : theme_(theme), measure_(measure), flow_(flow) {}

    BlockMargin addBlocks(const Blocks& values, const FlowContext& context) {
        return addSequence(values.size(), context.isTight,
                           [&](std::size_t index) { return addBlock(values[index], context); });
    }

private:
    /// Adds `count` elements below each other; add(index) gives the margin of one.
    template<class Add>
    BlockMargin addSequence(std::size_t count, bool isTight, const Add& add) {
        BlockMargin all;
        BlockMargin before;
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t first = flow_.units.size();
            const BlockMargin margin = add(i);
            if (flow_.units.size() == first)
                addUnit(FlowUnit::Kind::nothing, {});
            if (i > 0)
                flow_.units[first].gap += static_cast<float>(spaceBetween(before, margin, isTight));
            all = combined(all, margin);
            before = margin;
        }
        return all;
    }

    BlockMargin addBlock(const Block& block, const FlowContext& context) {
        return std::visit([&](const auto& kind) { return addKind(kind, context); }, block.value);
    }

    BlockMargin addKind(const blocks::Blockquote& quote, const FlowContext& context) {
        const BlockMargin inner = addBlocks(quote.blocks, inside(theme_.blockquote, context));
        return combined(marginOf(theme_.blockquote, context), inner);
    }

    BlockMargin addKind(const blocks::TaskList& list, const FlowContext& context) {
        return addList(list, FlowMarker{.kind = FlowMarker::Kind::task}, context);
    }

    BlockMargin addKind(const blocks::BulletedList& list, const FlowContext& context) {
        return addList(list, FlowMarker{.kind = FlowMarker::Kind::bulleted}, context);
    }

    BlockMargin addKind(const blocks::NumberedList& list, const FlowContext& context) {
        return addList(list, FlowMarker{.kind = FlowMarker::Kind::numbered, .number = list.start}, context);
    }

    template<class List>
    BlockMargin addList(const List& list, FlowMarker marker, const FlowContext& context) {
        FlowContext inner = inside(theme_.listItem, inside(theme_.list, context));
        inner.listLevel = context.listLevel + 1;
        inner.isTight = list.tight;
        marker.listLevel = inner.listLevel;
        marker.bag = inner.bag;
        marker.leading = inner.leading;
        marker.width = markerWidth(marker, list.items.size(), inner);
        FlowContext item = inner;
        item.leading += marker.width + pointsOf(kMarkerSpacing, inner);
        const BlockMargin margin = addSequence(list.items.size(), inner.isTight, [&](std::size_t index) {
            if constexpr (std::is_same_v<List, blocks::TaskList>)
                marker.isCompleted = list.items[index].isCompleted;
            waitingMarkers_.push_back(marker);
            ++marker.number;
            const BlockMargin ofItem = addBlocks(list.items[index].blocks, item);
            if (!waitingMarkers_.empty())
                addText(FlowUnit{}, 0, 0, item, std::nullopt); // an empty item still shows its marker
            return ofItem;
        });
        return combined(marginOf(theme_.list, context), margin);
    }

    /// The width of the column: of the widest marker, which for digits of one width is the longest.
    double markerWidth(FlowMarker marker, std::size_t count, const FlowContext& context) {
        const AttributeContainer& bag = flow_.bags[context.bag];
        const ListMarker first = makeMarker(marker, theme_);
        double width = std::max(first.minimumWidth.points(*bag.fontProperties), measure_.widthOf(first, bag));
        if (marker.kind != FlowMarker::Kind::numbered || count == 0)
            return width;
        constexpr std::size_t kMostMeasured = 200;
        marker.number += static_cast<std::int64_t>(count) - 1;
        for (std::size_t i = 0; i < std::min(count, kMostMeasured); ++i, --marker.number) {
            const ListMarker other = makeMarker(marker, theme_);
            width = std::max(width, measure_.widthOf(other, bag));
            if (other.hasMonospacedDigits)
                break;
        }
        return width;
    }

    BlockMargin addKind(const blocks::CodeBlock& code, const FlowContext& context) {
        const std::uint32_t group = addGroup();
        flow_.groups[group].code = &code;
        flow_.codeBlocks.push_back(group);
        addCodeUnits(withoutFinalLineFeed(code.content), group, insideCode(context));
        return marginOf(theme_.codeBlock, context);
    }

    /// Code runs from left to right wherever it stands, so its own padding is at its left.
    FlowContext insideCode(const FlowContext& context) {
        FlowContext inner = inside(theme_.codeBlock, context);
        if (direction_ == TextDirection::rightToLeft) {
            const double leading = inner.leading - context.leading;
            const double trailing = inner.trailing - context.trailing;
            inner.leading += trailing - leading;
            inner.trailing += leading - trailing;
        }
        return inner;
    }

    void addCodeUnits(std::string_view text, std::uint32_t groupIndex, const FlowContext& context) {
        FlowGroup& group = flow_.groups[groupIndex];
        std::size_t end = 0;
        for (bool isLast = false; !isLast;) {
            FlowUnit unit;
            unit.group = groupIndex;
            unit.lineSpacing = pointsOf(theme_.codeBlock.lineSpacing, context);
            unit.textBegin = static_cast<std::uint32_t>(end);
            for (std::size_t line = 0; line < kCodeLinesOfUnit && !isLast; ++line) {
                const std::size_t feed = std::min(text.find('\n', end), text.size());
                group.longestLine = std::max(group.longestLine, feed - end);
                isLast = feed == text.size();
                end = isLast ? feed : feed + 1;
                unit.lineBreaks += isLast ? 0 : 1;
            }
            unit.textEnd = static_cast<std::uint32_t>(end);
            addPart(FlowUnit::Kind::code, unit, context);
        }
    }

    BlockMargin addKind(const blocks::HTMLBlock& html, const FlowContext& context) {
        FlowUnit unit;
        unit.verbatim = withoutFinalLineFeed(html.content);
        const TextSize size = sizeOf(unit.verbatim);
        const FlowContext inner = inside(theme_.paragraph, context);
        unit.lineSpacing = pointsOf(theme_.paragraph.lineSpacing, inner);
        addText(unit, size.bytes, size.lineBreaks, inner, firstStrongDirection(unit.verbatim));
        return marginOf(theme_.paragraph, context);
    }

    BlockMargin addKind(const blocks::Paragraph& paragraph, const FlowContext& context) {
        const FlowContext inner = inside(theme_.paragraph, context);
        if (paragraph.text.size() == 1 && imageOfInline(paragraph.text.front()))
            addUnit(FlowUnit::Kind::image, inside(theme_.image, inner)).inlines = &paragraph.text;
        else if (isImageFlow(paragraph.text))
            addUnit(FlowUnit::Kind::imageFlow, inner).inlines = &paragraph.text;
        else
            addInlines(paragraph.text, theme_.paragraph, inner);
        return marginOf(theme_.paragraph, context);
    }

    BlockMargin addKind(const blocks::Heading& heading, const FlowContext& context) {
        const auto index = static_cast<std::size_t>(std::clamp(heading.level, 1, 6) - 1);
        const BlockStyle& style = theme_.headings.at(index);
        addInlines(heading.text, style, inside(style, context), static_cast<std::uint8_t>(index + 1));
        return marginOf(style, context);
    }

    BlockMargin addKind(const blocks::Table& table, const FlowContext& context) {
        const FlowContext inner = inside(theme_.table, context);
        const std::uint32_t group = addGroup();
        flow_.groups[group].table = &table;
        directionOfTable(table);
        for (std::size_t row = 0; row < table.rows.size(); ++row) {
            FlowUnit& unit = addUnit(FlowUnit::Kind::tableRow, inner);
            unit.group = group;
            unit.row = static_cast<std::uint32_t>(row);
            unit.textBlockCount = static_cast<std::uint32_t>(table.rows[row].size());
            flow_.textBlockCount += unit.textBlockCount;
            flow_.groups[group].endUnit = flow_.units.size();
        }
        return marginOf(theme_.table, context);
    }

    void directionOfTable(const blocks::Table& table) {
        for (std::size_t cell = 0; !table.rows.empty() && cell < table.rows.front().size(); ++cell) {
            if (const auto found = firstStrongDirection(table.rows.front()[cell])) {
                direction_ = *found;
                return;
            }
        }
    }

    BlockMargin addKind(const blocks::ThematicBreak& /*rule*/, const FlowContext& context) {
        addUnit(FlowUnit::Kind::rule, context);
        return marginOf(theme_.thematicBreak, context);
    }

    void addInlines(const Inlines& values, const BlockStyle& style, const FlowContext& context,
                    std::uint8_t headingLevel = 0) {
        FlowUnit unit;
        unit.headingLevel = headingLevel;
        unit.inlines = &values;
        unit.lineSpacing = pointsOf(style.lineSpacing, context);
        const TextSize size = sizeOf(values);
        addText(unit, size.bytes, size.lineBreaks, context, firstStrongDirection(values));
    }

    void addText(const FlowUnit& prototype, std::size_t bytes, std::size_t lineBreaks,
                 const FlowContext& context, std::optional<TextDirection> direction) {
        direction_ = direction.value_or(direction_);
        if (bytes >= kLongText) {
            addLongText(prototype, context);
            return;
        }
        FlowUnit& unit = addUnit(FlowUnit::Kind::text, context);
        unit.headingLevel = prototype.headingLevel;
        unit.inlines = prototype.inlines;
        unit.verbatim = prototype.verbatim;
        unit.lineSpacing = prototype.lineSpacing;
        unit.textEnd = static_cast<std::uint32_t>(bytes);
        unit.lineBreaks = static_cast<std::uint32_t>(lineBreaks);
        unit.textBlockCount = 1;
        ++flow_.textBlockCount;
    }

    void addLongText(const FlowUnit& prototype, const FlowContext& context) {
        // Images of the text are not counted on: their characters only move the ends of the parts, which are
        // put between characters again where they are laid out.
        const std::string text = prototype.inlines != nullptr ? plainTextOf(*prototype.inlines, {})
                                                              : std::string(prototype.verbatim);
        const std::uint32_t group = addGroup();
        std::size_t end = 0;
        do {
            FlowUnit unit = prototype;
            unit.group = group;
            unit.textBegin = static_cast<std::uint32_t>(end);
            end = endOfPart(text, end);
            unit.textEnd = static_cast<std::uint32_t>(end);
            unit.lineBreaks = static_cast<std::uint32_t>(
                sizeOf(std::string_view(text).substr(unit.textBegin, end - unit.textBegin)).lineBreaks);
            addPart(FlowUnit::Kind::text, unit, context);
        } while (end < text.size());
    }

    /// Adds one more unit of the last group's one text block.
    void addPart(FlowUnit::Kind kind, const FlowUnit& prototype, const FlowContext& context) {
        const bool isFirst = flow_.groups.back().firstUnit == flow_.units.size();
        FlowUnit& unit = addUnit(kind, context);
        FlowUnit placed = prototype;
        placed.kind = unit.kind;
        placed.direction = unit.direction;
        placed.bag = unit.bag;
        placed.leading = unit.leading;
        placed.trailing = unit.trailing;
        placed.firstMarker = unit.firstMarker;
        placed.markerCount = unit.markerCount;
        placed.firstTextBlock = unit.firstTextBlock - (isFirst ? 0 : 1);
        placed.textBlockCount = 1;
        unit = placed;
        flow_.textBlockCount += isFirst ? 1 : 0;
        flow_.groups.back().endUnit = flow_.units.size();
    }

    /// The unit gets the markers that wait for the first line of their items, if it has lines.
    FlowUnit& addUnit(FlowUnit::Kind kind, const FlowContext& context) {
        FlowUnit& unit = flow_.units.emplace_back();
        unit.kind = kind;
        unit.direction = direction_;
        unit.bag = context.bag;
        unit.leading = static_cast<float>(context.leading);
        unit.trailing = static_cast<float>(context.trailing);
        unit.firstTextBlock = static_cast<std::uint32_t>(flow_.textBlockCount);
        unit.firstMarker = static_cast<std::uint32_t>(flow_.markers.size());
        if (kind == FlowUnit::Kind::nothing)
            return unit;
        unit.markerCount = static_cast<std::uint32_t>(waitingMarkers_.size());
        flow_.markers.insert(flow_.markers.end(), waitingMarkers_.begin(), waitingMarkers_.end());
        waitingMarkers_.clear();
        return unit;
    }

    std::uint32_t addGroup() {
        FlowGroup& group = flow_.groups.emplace_back();
        group.firstUnit = group.endUnit = flow_.units.size();
        return static_cast<std::uint32_t>(flow_.groups.size() - 1);
    }

    /// The context within a block of that style.
    FlowContext inside(const BlockStyle& style, const FlowContext& context) {
        FlowContext inner = context;
        const auto [entry, isNew] = bagsByStyle_.try_emplace({&style, context.bag}, context.bag);
        if (isNew) {
            AttributeContainer bag = collecting(style.textStyle, flow_.bags[context.bag]);
            if (bag != flow_.bags[context.bag]) {
                entry->second = static_cast<std::uint32_t>(flow_.bags.size());
                flow_.bags.push_back(std::move(bag));
            }
        }
        inner.bag = entry->second;
        inner.leading += pointsOf(style.padding.leading, inner);
        inner.trailing += pointsOf(style.padding.trailing, inner);
        return inner;
    }

    float pointsOf(RelativeSize size, const FlowContext& context) const {
        return static_cast<float>(size.points(*flow_.bags[context.bag].fontProperties));
    }

    BlockMargin marginOf(const BlockStyle& style, const FlowContext& context) const {
        BlockMargin margin;
        if (style.marginTop)
            margin.top = pointsOf(*style.marginTop, context);
        if (style.marginBottom)
            margin.bottom = pointsOf(*style.marginBottom, context);
        return margin;
    }

    /// Where to end a part of a long text that starts at `begin`: behind a blank near its length.
    static std::size_t endOfPart(std::string_view text, std::size_t begin) {
        std::size_t end = begin + kLongTextPart;
        if (end + kLongTextPart / 2 >= text.size())
            return text.size();
        // Looked for in the part's second half only: a text without blanks is not to be searched again and
        // again.
        const std::size_t half = begin + kLongTextPart / 2;
        const std::size_t blank = text.substr(half, end + 1 - half).find_last_of(" \n");
        if (blank != std::string_view::npos)
            return half + blank + 1;
        while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
            ++end;
        return end;
    }

    const Theme& theme_;
    MarkerMeasure& measure_;
    DocumentFlow& flow_;
    std::vector<FlowMarker> waitingMarkers_;
    std::map<std::pair<const BlockStyle*, std::uint32_t>, std::uint32_t> bagsByStyle_;
    /// Of the text before, which text without strong characters and what is no text take on.
    TextDirection direction_ = TextDirection::leftToRight;
};

} // namespace

ListMarker makeMarker(const FlowMarker& marker, const Theme& theme) {
    switch (marker.kind) {
    case FlowMarker::Kind::task:
        return theme.taskListMarker({marker.isCompleted});
    case FlowMarker::Kind::numbered:
        return theme.numberedListMarker({marker.listLevel, marker.number});
    default:
        return theme.bulletedListMarker({marker.listLevel, marker.number});
    }
}

std::size_t DocumentFlow::unitOfTextBlock(std::size_t block) const {
    const auto behind = std::ranges::partition_point(units, [block](const FlowUnit& unit) {
        return std::size_t{unit.firstTextBlock} + unit.textBlockCount <= block;
    });
    return static_cast<std::size_t>(behind - units.begin());
}

DocumentFlow makeFlow(const Blocks& values, const Theme& theme, const AttributeContainer& root,
                      MarkerMeasure& measure) {
    DocumentFlow flow;
    flow.bags.push_back(root);
    FlowBuilder(theme, measure, flow).addBlocks(values, {});
    return flow;
}

bool isImageFlow(const Inlines& values) {
    return std::ranges::all_of(values, [](const Inline& value) {
        if (const auto* text = value.get<inlines::Text>())
            return text->literal.empty();
        return value.get<inlines::SoftBreak>() != nullptr || value.get<inlines::LineBreak>() != nullptr ||
               imageOfInline(value).has_value();
    });
}

} // namespace quillmoth::markdown
