#include "MarkdownUI/Layout/InlineText.h"

#include "MarkdownUI/Layout/ImagePlaceholder.h"
#include "MarkdownUI/Layout/PlainText.h"
#include "MarkdownUI/Layout/ResizeToFit.h"
#include "MarkdownUI/Layout/TextDirection.h"

#include <algorithm>
#include <cmath>

namespace quillmoth::markdown {

namespace {

/// From here on a text is laid out in parts.
constexpr std::size_t kLongText = std::size_t{16} * 1024;
constexpr std::size_t kLongTextPart = std::size_t{8} * 1024;

bool continuesCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// Where to end a part of a long text that starts at `begin`: behind a blank near its length.
std::size_t endOfLongTextPart(std::string_view text, std::size_t begin) {
    std::size_t end = begin + kLongTextPart;
    if (end + kLongTextPart / 2 >= text.size())
        return text.size();
    // Looked for in the part's second half only: a text without blanks is not to be searched again and
    // again.
    const std::size_t half = begin + kLongTextPart / 2;
    const std::size_t blank = text.substr(half, end + 1 - half).find_last_of(" \n");
    if (blank != std::string_view::npos)
        return half + blank + 1;
    while (end < text.size() && continuesCharacter(text[end]))
        ++end;
    return end;
}

/// The border of a character at or behind `offset`. The parts of a text are made without its images, which
/// move the characters.
std::size_t atCharacter(std::string_view text, std::size_t offset) {
    while (offset < text.size() && continuesCharacter(text[offset]))
        ++offset;
    return std::min(offset, text.size());
}

AttributedText wholeText(const LayoutContext& context, const FlowUnit& unit, double width) {
    if (unit.inlines != nullptr)
        return textOfInlines(context, *unit.inlines, context.bagOf(unit), width);
    AttributedText text{std::string(unit.verbatim), context.bagOf(unit)};
    realizeFonts(text);
    return text;
}

} // namespace

InlineText::InlineText(const Inlines& inlines, int headingLevel)
    : inlines_(&inlines), headingLevel_(headingLevel) {}

void InlineText::addTo(FlowBuilder& flow, const BlockStyle& style, const FlowContext& context) const {
    addUnits(flow, flow.inside(style, context), flow.styled(style, context).lineSpacing);
}

void InlineText::addUnits(FlowBuilder& flow, const FlowContext& inner, double lineSpacing) const {
    const TextSize size = inlines_ != nullptr ? sizeOf(*inlines_) : sizeOf(markup_);
    const auto direction =
        inlines_ != nullptr ? firstStrongDirection(*inlines_) : firstStrongDirection(markup_);
    flow.direction = direction.value_or(flow.direction);
    FlowUnit prototype;
    prototype.inlines = inlines_;
    prototype.verbatim = markup_;
    prototype.headingLevel = static_cast<std::uint8_t>(headingLevel_);
    prototype.lineSpacing = static_cast<float>(lineSpacing);
    if (size.bytes >= kLongText)
        return addParts(flow, inner, prototype);
    FlowUnit& unit = flow.addUnit(FlowUnit::Kind::text, inner);
    unit.inlines = prototype.inlines;
    unit.verbatim = prototype.verbatim;
    unit.headingLevel = prototype.headingLevel;
    unit.lineSpacing = prototype.lineSpacing;
    unit.textEnd = static_cast<std::uint32_t>(size.bytes);
    unit.lineBreaks = static_cast<std::uint32_t>(size.lineBreaks);
    unit.textBlockCount = 1;
    ++flow.flow().textBlockCount;
}

void InlineText::addParts(FlowBuilder& flow, const FlowContext& inner, const FlowUnit& prototype) const {
    // Images of the text are not counted on: their characters only move the ends of the parts, which are
    // put between characters again where they are laid out.
    const std::string text = inlines_ != nullptr ? plainTextOf(*inlines_, {}) : std::string(markup_);
    flow.addGroup();
    std::size_t end = 0;
    do {
        FlowUnit unit = prototype;
        unit.textBegin = static_cast<std::uint32_t>(end);
        end = endOfLongTextPart(text, end);
        unit.textEnd = static_cast<std::uint32_t>(end);
        unit.lineBreaks = static_cast<std::uint32_t>(
            sizeOf(std::string_view(text).substr(unit.textBegin, end - unit.textBegin)).lineBreaks);
        flow.addPart(FlowUnit::Kind::text, unit, inner);
    } while (end < text.size());
}

double InlineText::estimatedHeight(const LayoutContext& context, const FlowUnit& unit) {
    const double width = contentFrame(context, unit).width;
    const FontMetrics metrics = context.engine.metricsOf(makeFont(context.flow.fontOf(unit)));
    const double length = unit.textEnd - unit.textBegin;
    const double lines =
        std::max(1.0, std::ceil(length * metrics.averageAdvance / std::max(width, 1.0))) + unit.lineBreaks;
    const bool isContinued = unit.group != kNoGroup && !context.flow.isLastOfGroup(unit);
    return lines * (metrics.ascent + metrics.descent) + (isContinued ? lines : lines - 1) * unit.lineSpacing;
}

void InlineText::layOut(const LayoutContext& context, const FlowUnit& unit, GroupState& group, Box& box) {
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
    const bool isLast = context.flow.isLastOfGroup(unit);
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

AttributedText textOfInlines(const LayoutContext& context, const Inlines& values,
                             const AttributeContainer& bag, double width) {
    const InlineImages images = [&](const std::string& source) -> std::optional<ImageAttachment> {
        const std::string url = context.imageURL(source);
        const DefaultImageViewModel image = context.image(url);
        if (!image.isShown())
            return std::nullopt;
        if (image.state == DefaultImageViewModel::State::placeholder)
            return ImageAttachment{url, {}, placeholderWithin(kPlaceholderInText, width)};
        return ImageAttachment{url, {}, ResizeToFit{image.naturalSize}.within(width)};
    };
    return inlinesToText(values, context.environment, bag, images);
}

} // namespace quillmoth::markdown
