#include "MarkdownUI/Layout/Box.h"

#include "Foundation/URL.h"
#include "MarkdownUI/Layout/CodeBlockView.h"
#include "MarkdownUI/Layout/ImageFlow.h"
#include "MarkdownUI/Layout/ImageView.h"
#include "MarkdownUI/Layout/InlineText.h"
#include "MarkdownUI/Layout/TableView.h"

#include <algorithm>

namespace quillmoth::markdown {

namespace {

/// Deep nesting leaves the content this many times its font's size, if the document is that wide.
constexpr double kLeastEms = 6;

void addRule(const LayoutContext& context, const FlowUnit& unit, Box& box) {
    const ColumnFrame frame = contentFrame(context, unit);
    box.decorations.push_back(RectangleItem{{frame.x, 0, frame.width, 1}, SemanticColor::divider});
    box.height = 1;
    box.right = frame.x + frame.width;
}

} // namespace

Rect Fragment::frameOfLine(std::size_t line) const {
    const TextLine& shape = shaped->lines()[line];
    return {origin.x + shape.x, origin.y + shape.top, shape.advance, shape.height()};
}

std::size_t Fragment::textEnd() const {
    return lineCount == shaped->lines().size() ? text->text().size() : shaped->lines()[lineCount].begin;
}

std::string LayoutContext::imageURL(const std::string& source) const {
    const std::string& base = options.imageBaseURL.empty() ? options.baseURL : options.imageBaseURL;
    return resolveURL(source, base).value_or(std::string());
}

DefaultImageViewModel LayoutContext::image(const std::string& url) const {
    return url.empty() ? DefaultImageViewModel{} : images.requestImage(url);
}

ColumnFrame contentFrame(const LayoutContext& context, const FlowUnit& unit) {
    const double all = context.options.width;
    const double least = std::min(all, kLeastEms * context.flow.fontOf(unit).size);
    const double width = std::max(all - unit.leading - unit.trailing, least);
    const double leading = std::min<double>(unit.leading, all - width);
    return {unit.direction == TextDirection::leftToRight ? leading : all - leading - width, width};
}

double lineHeightOf(const LayoutContext& context, const FlowUnit& unit) {
    const FontMetrics metrics = context.engine.metricsOf(makeFont(context.flow.fontOf(unit)));
    return metrics.ascent + metrics.descent;
}

double estimatedHeight(const LayoutContext& context, const FlowUnit& unit) {
    switch (unit.kind) {
    case FlowUnit::Kind::text:
        return InlineText::estimatedHeight(context, unit);
    case FlowUnit::Kind::code:
        return CodeBlockView::estimatedHeight(context, unit);
    case FlowUnit::Kind::tableRow:
        return TableView::estimatedRowHeight(context, unit);
    case FlowUnit::Kind::image:
    case FlowUnit::Kind::imageFlow:
        return lineHeightOf(context, unit);
    case FlowUnit::Kind::rule:
        return 1;
    default:
        return 0;
    }
}

Size addFragment(const LayoutContext& context, AttributedText text, const TextOptions& options, Point origin,
                 std::size_t textBlock, Box& box) {
    Fragment& fragment = box.fragments.emplace_back();
    fragment.text = std::make_unique<const AttributedText>(std::move(text));
    fragment.shaped = context.engine.shape(*fragment.text, options);
    fragment.origin = origin;
    fragment.lineCount = fragment.shaped->lines().size();
    fragment.textBlock = textBlock;
    Size size;
    for (std::size_t line = 0; line < fragment.lineCount; ++line) {
        const Rect frame = fragment.frameOfLine(line);
        size.width = std::max(size.width, frame.right() - origin.x);
        size.height = frame.bottom() - origin.y;
    }
    return size;
}

Box makeBox(const LayoutContext& context, const FlowUnit& unit, GroupState& group) {
    Box box;
    switch (unit.kind) {
    case FlowUnit::Kind::text:
        InlineText::layOut(context, unit, group, box);
        break;
    case FlowUnit::Kind::code:
        CodeBlockView::layOut(context, unit, group, box);
        break;
    case FlowUnit::Kind::tableRow:
        TableView::layOutRow(context, unit, group, box);
        break;
    case FlowUnit::Kind::image:
        ImageView::layOut(context, unit, box);
        break;
    case FlowUnit::Kind::imageFlow:
        ImageFlow::layOut(context, unit, box);
        break;
    case FlowUnit::Kind::rule:
        addRule(context, unit, box);
        break;
    default:
        break;
    }
    addMarkers(context, unit, box);
    return box;
}

} // namespace quillmoth::markdown
