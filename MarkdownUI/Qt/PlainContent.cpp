#include "MarkdownUI/Qt/PlainContent.h"

#include <algorithm>
#include <utility>

namespace quillmoth::markdown {

namespace {

constexpr RelativeSize kLineSpacing = RelativeSize::em(0.15); // as paragraphs have it, so nothing jumps

} // namespace

PlainContent::PlainContent(TextEngine& engine, std::string text) : engine_(engine), layout_(engine) {
    layout_.setText(std::move(text));
}

void PlainContent::setOptions(const ItemOptions& options) {
    FontProperties properties;
    properties.size = options.fontSize;
    PlainTextOptions plain;
    plain.width = options.width;
    plain.font = makeFont(properties);
    const FontMetrics metrics = engine_.metricsOf(plain.font);
    plain.lineSpacing = options.lineHeight > 0 ? options.lineHeight - metrics.ascent - metrics.descent
                                               : kLineSpacing.points(properties);
    plain.alignment = options.alignment;
    layout_.setOptions(plain);
}

std::string PlainContent::textOfBlock(std::size_t /*block*/) const {
    return layout_.text();
}

TextRange PlainContent::wholeRange() const {
    return {{0, 0}, {0, layout_.text().size()}};
}

bool PlainContent::isTextAt(Point point) {
    const DisplayList line = layout_.displayList({0, point.y, 1e6, 1});
    return std::any_of(line.begin(), line.end(),
                       [point](const DisplayItem& item) { return frameOf(item).contains(point); });
}

std::string PlainContent::plainText(const TextRange& range) const {
    return layout_.text().substr(range.begin.offset, range.end.offset - range.begin.offset);
}

std::size_t PlainContent::documentOffset(const TextPosition& position) const {
    return position.offset;
}

TextPosition PlainContent::positionAtDocumentOffset(std::size_t offset) const {
    return {0, std::min(offset, layout_.text().size())};
}

} // namespace quillmoth::markdown
