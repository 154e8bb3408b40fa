#include "MarkdownUI/Layout/Box.h"

#include <algorithm>
#include <cmath>

#include "Foundation/URL.h"

namespace quillmoth::markdown {

namespace {

/// Deep nesting leaves the content this many times its font's size, if the document is that wide.
constexpr double kLeastEms = 6;

double lineHeightOf(const LayoutContext& context, const FlowUnit& unit) {
    const FontMetrics metrics = context.engine.metricsOf(makeFont(context.flow.fontOf(unit)));
    return metrics.ascent + metrics.descent;
}

double estimatedTextHeight(const LayoutContext& context, const FlowUnit& unit, double width) {
    const FontMetrics metrics = context.engine.metricsOf(makeFont(context.flow.fontOf(unit)));
    const double length = unit.textEnd - unit.textBegin;
    const double lines =
        std::max(1.0, std::ceil(length * metrics.averageAdvance / std::max(width, 1.0))) + unit.lineBreaks;
    return lines * (metrics.ascent + metrics.descent) + (lines - 1) * unit.lineSpacing;
}

/// The border of a character at or behind `offset`. The parts of a text are made without its images, which
/// move the characters.
std::size_t atCharacter(std::string_view text, std::size_t offset) {
    while (offset < text.size() && (static_cast<unsigned char>(text[offset]) & 0xC0) == 0x80)
        ++offset;
    return std::min(offset, text.size());
}

bool isFirstOfGroup(const LayoutContext& context, const FlowUnit& unit) {
    return &unit == &context.flow.units[context.flow.groups[unit.group].firstUnit];
}

bool isLastOfGroup(const LayoutContext& context, const FlowUnit& unit) {
    return &unit == &context.flow.units[context.flow.groups[unit.group].endUnit - 1];
}

double estimatedRowHeight(const LayoutContext& context, const FlowUnit& unit) {
    const FontProperties& font = context.flow.fontOf(unit);
    const RelativeEdges padding = context.theme.tableCell({unit.row, 0}).padding;
    const double border = context.theme.tableBorderStyle.strokeStyle.lineWidth;
    return lineHeightOf(context, unit) + padding.top.points(font) + padding.bottom.points(font) + border +
           (unit.row == 0 ? border : 0);
}

double estimatedCodeHeight(const LayoutContext& context, const FlowUnit& unit) {
    const bool isLast = isLastOfGroup(context, unit);
    const double lines = unit.lineBreaks + (isLast ? 1.0 : 0.0);
    return lines * (lineHeightOf(context, unit) + unit.lineSpacing) +
           (isFirstOfGroup(context, unit) ? kCodePadding + kCodeButtonRoom : 0) +
           (isLast ? kCodePadding - unit.lineSpacing : 0);
}

AttributedText wholeText(const LayoutContext& context, const FlowUnit& unit, double width) {
    if (unit.inlines != nullptr)
        return textOfInlines(context, *unit.inlines, context.bagOf(unit), width);
    AttributedText text{std::string(unit.verbatim), context.bagOf(unit)};
    realizeFonts(text);
    return text;
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

ColumnFrame contentFrame(const LayoutContext& context, const FlowUnit& unit) {
    const double all = context.options.width;
    const double least = std::min(all, kLeastEms * context.flow.fontOf(unit).size);
    const double width = std::max(all - unit.leading - unit.trailing, least);
    const double leading = std::min<double>(unit.leading, all - width);
    return {unit.direction == TextDirection::leftToRight ? leading : all - leading - width, width};
}

double estimatedHeight(const LayoutContext& context, const FlowUnit& unit) {
    switch (unit.kind) {
    case FlowUnit::Kind::text:
        return estimatedTextHeight(context, unit, contentFrame(context, unit).width) +
               (unit.group != kNoGroup && !isLastOfGroup(context, unit) ? unit.lineSpacing : 0);
    case FlowUnit::Kind::code:
        return estimatedCodeHeight(context, unit);
    case FlowUnit::Kind::tableRow:
        return estimatedRowHeight(context, unit);
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

AttributedText textOfInlines(const LayoutContext& context, const Inlines& values,
                             const AttributeContainer& bag, double width) {
    const InlineImages images = [&](const std::string& source) -> std::optional<ImageAttachment> {
        const std::string url = context.imageURL(source);
        const ImageStatus status = url.empty() ? ImageStatus{} : context.images.requestImage(url);
        if (status.state != ImageState::success)
            return std::nullopt;
        const double scale = std::min(1.0, width / std::max(status.naturalSize.width, 1.0));
        return ImageAttachment{
            url, {}, {status.naturalSize.width * scale, status.naturalSize.height * scale}};
    };
    return inlinesToText(values, context.environment, bag, images);
}

void addText(const LayoutContext& context, const FlowUnit& unit, GroupState& group, Box& box) {
    const ColumnFrame frame = contentFrame(context, unit);
    const TextOptions options{frame.width, unit.lineSpacing, unit.direction, context.options.alignment,
                              makeFont(context.flow.fontOf(unit))};
    const Point origin{frame.x, 0};
    if (unit.group == kNoGroup) {
        AttributedText text = wholeText(context, unit, frame.width);
        const Size size = addFragment(context, std::move(text), options, origin, unit.firstTextBlock, box);
        box.height = size.height;
        box.right = frame.x + size.width;
        return;
    }
    if (!group.text)
        group.text = wholeText(context, unit, frame.width);
    const std::string& text = group.text->text();
    const bool isLast = isLastOfGroup(context, unit);
    const std::size_t begin = atCharacter(text, unit.textBegin);
    const std::size_t end = isLast ? text.size() : atCharacter(text, unit.textEnd);
    // A line feed at the end of a part would make one more line.
    const bool hasFeed = !isLast && end > begin && text[end - 1] == '\n';
    const Size size = addFragment(context, group.text->substring(begin, end - (hasFeed ? 1 : 0)), options,
                                  origin, unit.firstTextBlock, box);
    box.fragments.back().textOffset = begin;
    box.height = size.height + (isLast ? 0 : unit.lineSpacing);
    box.right = frame.x + size.width;
}

void addCode(const LayoutContext& context, const FlowUnit& unit, GroupState& group, Box& box) {
    const blocks::CodeBlock& code = *context.flow.groups[unit.group].code;
    const Font font = makeFont(context.flow.fontOf(unit));
    if (!group.text) {
        const std::optional<std::string_view> language = code.info;
        const PlainTextCodeSyntaxHighlighter plain;
        const CodeSyntaxHighlighter& highlighter =
            context.highlighter != nullptr ? *context.highlighter : plain;
        group.text = highlighter.highlightCode(withoutFinalLineFeed(code.content), language);
        group.text->editAttributes([&font](AttributeContainer& attributes) {
            if (!attributes.font)
                attributes.font = font;
        });
    }
    const bool isFirst = isFirstOfGroup(context, unit);
    const bool isLast = isLastOfGroup(context, unit);
    // The line feed at the end of a part would make one more line.
    AttributedText text = group.text->substring(unit.textBegin, unit.textEnd - (isLast ? 0 : 1));
    const ColumnFrame frame = contentFrame(context, unit);
    const Point origin{frame.x + kCodePadding, isFirst ? kCodePadding + kCodeButtonRoom : 0};
    const Size size = addFragment(context, std::move(text), {.lineSpacing = unit.lineSpacing, .font = font},
                                  origin, unit.firstTextBlock, box);
    box.fragments.back().textOffset = unit.textBegin;
    box.height = origin.y + size.height + (isLast ? kCodePadding : unit.lineSpacing);
    box.right = frame.x + frame.width;
    group.codeWidth = std::max(group.codeWidth, size.width);
}

Box makeBox(const LayoutContext& context, const FlowUnit& unit, GroupState& group) {
    Box box;
    switch (unit.kind) {
    case FlowUnit::Kind::text:
        addText(context, unit, group, box);
        break;
    case FlowUnit::Kind::code:
        addCode(context, unit, group, box);
        break;
    case FlowUnit::Kind::tableRow:
        addTableRow(context, unit, group, box);
        break;
    case FlowUnit::Kind::image:
        addImage(context, unit, box);
        break;
    case FlowUnit::Kind::imageFlow: {
        const ColumnFrame frame = contentFrame(context, unit);
        const bool isRightToLeft = unit.direction == TextDirection::rightToLeft;
        const Size size =
            addImageFlow(context, *unit.inlines, context.flow.fontOf(unit), frame, 0, isRightToLeft, box);
        box.height = size.height;
        box.right = frame.x + size.width;
        break;
    }
    case FlowUnit::Kind::rule: {
        const ColumnFrame frame = contentFrame(context, unit);
        box.decorations.push_back(RectangleItem{{frame.x, 0, frame.width, 1}, SemanticColor::divider});
        box.height = 1;
        box.right = frame.x + frame.width;
        break;
    }
    default:
        break;
    }
    addMarkers(context, unit, box);
    return box;
}

} // namespace quillmoth::markdown
