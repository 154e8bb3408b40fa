#include "MarkdownUI/Layout/DocumentParts.h"

#include "Foundation/URL.h"
#include "MarkdownUI/Layout/CodeBlockView.h"
#include "MarkdownUI/Layout/DocumentHitTest.h"
#include "MarkdownUI/Layout/DocumentText.h"
#include "MarkdownUI/Layout/ImageFlow.h"
#include "MarkdownUI/Layout/ScrollRegion.h"

#include <algorithm>
#include <iterator>

namespace quillmoth::markdown {

namespace {

class PartCollector {
public:
    explicit PartCollector(const DocumentState& state) : state_(state) {}

    std::vector<PartInfo> collect() {
        for (unit_ = 0; unit_ < state_.flow().units.size(); ++unit_)
            addUnit(state_.flow().units[unit_]);
        return std::move(parts_);
    }

private:
    void addUnit(const FlowUnit& unit) {
        const bool isFirstPart = unit.textBegin == 0;
        switch (unit.kind) {
        case FlowUnit::Kind::text:
            if (isFirstPart)
                addText(unit);
            break;
        case FlowUnit::Kind::code:
            if (isFirstPart)
                parts_.push_back({.kind = PartInfo::Kind::copyButton, .place = codeBlockCount_++});
            break;
        case FlowUnit::Kind::image:
        case FlowUnit::Kind::imageFlow:
            addImages(*unit.inlines, 0);
            break;
        case FlowUnit::Kind::tableRow:
            addRow(unit);
            break;
        default:
            break;
        }
    }

    void addText(const FlowUnit& unit) {
        const std::size_t block = unit.firstTextBlock;
        if (unit.headingLevel > 0) {
            const std::string text = textOfBlock(state_, block);
            parts_.push_back({.kind = PartInfo::Kind::heading,
                              .level = unit.headingLevel,
                              .range = {{block, 0}, {block, text.size()}},
                              .text = text});
        }
        addLinksAndImages(block);
    }

    void addLinksAndImages(std::size_t block) {
        std::vector<PartInfo> found = imagesOfBlock(state_, block);
        for (LinkInfo& link : linksOfBlock(state_, block)) {
            found.push_back({.kind = PartInfo::Kind::link,
                             .range = link.range,
                             .text = std::move(link.text),
                             .destination = std::move(link.destination)});
        }
        std::ranges::stable_sort(found, {}, [](const PartInfo& part) { return part.range.begin; });
        std::ranges::move(found, std::back_inserter(parts_));
    }

    /// Gives the index behind the last one.
    std::size_t addImages(const Inlines& values, std::size_t index) {
        for (const Inline& value : values) {
            const auto image = imageOfInline(value);
            if (!image)
                continue;
            PartInfo part{
                .kind = PartInfo::Kind::image, .text = image->alt, .place = unit_, .index = index++};
            const LayoutContext context = state_.context();
            part.source = context.imageURL(image->source.value_or(""));
            const DefaultImageViewModel model = context.image(part.source);
            part.isPressable = model.isPressable;
            // A placeholder is no link: a press on it would surprise.
            if (image->destination && model.state != DefaultImageViewModel::State::placeholder)
                part.destination = resolveLink(*image->destination, state_.options().baseURL).value_or("");
            parts_.push_back(std::move(part));
        }
        return index;
    }

    void addRow(const FlowUnit& unit) {
        const auto& cells = state_.flow().groups[unit.group].table->rows[unit.row];
        std::size_t images = 0;
        for (std::size_t cell = 0; cell < cells.size(); ++cell) {
            if (!cells[cell].empty() && isImageFlow(cells[cell]))
                images = addImages(cells[cell], images);
            else
                addLinksAndImages(unit.firstTextBlock + cell);
        }
    }

    const DocumentState& state_;
    std::size_t unit_ = 0;
    std::size_t codeBlockCount_ = 0;
    std::vector<PartInfo> parts_;
};

/// The frames of the images of a unit, in order.
std::vector<Rect> imagesOf(DocumentState& state, std::size_t unit) {
    std::vector<Rect> frames;
    const Box& box = state.box(unit);
    for (const DisplayItem& item : box.decorations) {
        if (std::holds_alternative<ImageItem>(item))
            frames.push_back(
                frameOf(item).translated(-scrollOffsetOfUnit(state, unit), state.contentTop(unit)));
    }
    return frames;
}

/// Rectangles of one line that touch become one.
std::vector<Rect> joined(const std::vector<Rect>& rectangles) {
    constexpr double kTouching = 0.5;
    std::vector<Rect> result;
    for (const Rect& rect : rectangles) {
        if (!result.empty() && result.back().y == rect.y && rect.x <= result.back().right() + kTouching &&
            rect.right() >= result.back().x - kTouching) {
            const double left = std::min(result.back().x, rect.x);
            result.back().width = std::max(result.back().right(), rect.right()) - left;
            result.back().x = left;
        } else {
            result.push_back(rect);
        }
    }
    return result;
}

std::vector<Rect> rectanglesOfText(DocumentState& state, const TextRange& range) {
    if (range.empty())
        return {};
    const Rect first = caretRectangle(state, range.begin);
    const Rect last = caretRectangle(state, range.end);
    return joined(
        selectionRectangles(state, range, {0, first.y, state.options().width, last.bottom() - first.y}));
}

/// The positions between which the images of a unit stand.
TextRange placeOfImages(const DocumentState& state, const FlowUnit& unit) {
    const std::size_t block = unit.firstTextBlock;
    const TextPosition before =
        block == 0 ? TextPosition{} : TextPosition{block - 1, textOfBlock(state, block - 1).size()};
    return {before, block < state.flow().textBlockCount ? TextPosition{block, 0} : before};
}

} // namespace

std::vector<PartInfo> partsOf(const DocumentState& state) {
    return PartCollector(state).collect();
}

std::vector<Rect> rectanglesOf(DocumentState& state, const PartInfo& part) {
    switch (part.kind) {
    case PartInfo::Kind::copyButton:
        return {copyButton(state, part.place).frame};
    case PartInfo::Kind::image: {
        if (part.isInText)
            return rectanglesOfText(state, part.range);
        const std::vector<Rect> frames = imagesOf(state, part.place);
        return part.index < frames.size() ? std::vector<Rect>{frames[part.index]} : std::vector<Rect>();
    }
    default:
        return rectanglesOfText(state, part.range);
    }
}

std::vector<Rect> selectedImages(DocumentState& state, const TextRange& range, const Rect& area) {
    std::vector<Rect> result;
    const std::size_t count = state.flow().units.size();
    for (std::size_t unit = state.heights().find(area.y);
         !range.empty() && unit < count && state.heights().top(unit) < area.bottom(); ++unit) {
        const FlowUnit& flowUnit = state.flow().units[unit];
        if (flowUnit.kind != FlowUnit::Kind::image && flowUnit.kind != FlowUnit::Kind::imageFlow)
            continue;
        const TextRange place = placeOfImages(state, flowUnit);
        if (range.begin <= place.begin && place.end <= range.end) {
            for (const Rect& frame : imagesOf(state, unit))
                result.push_back(frame);
        }
    }
    return result;
}

} // namespace quillmoth::markdown
