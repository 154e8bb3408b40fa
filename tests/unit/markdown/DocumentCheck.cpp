#include "DocumentCheck.h"

#include "MarkdownUI/Layout/DocumentLayout.h"
#include "MarkdownUI/Layout/PlainTextLayout.h"

#include "FixedTextEngine.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace quillmoth::markdown {

namespace {

using Random = std::mt19937_64;

constexpr int kPointsAsked = 4;
constexpr double kEverything = 1e12;

FixedImageSource someImages() {
    FixedImageSource images;
    images.sizes = {{"icon.png", {40, 24}}, {"icon.png#gh-dark-mode-only", {900, 5}}};
    return images;
}

double between(Random& random, double least, double most) {
    return std::uniform_real_distribution(least, most)(random);
}

LayoutOptions someOptions(Random& random) {
    return {.width = std::floor(between(random, 0, 600)), .fontSize = std::floor(between(random, 9, 40))};
}

std::string faultAt(DocumentLayout& layout, Point point) {
    const TextPosition position = layout.positionAt(point);
    if (layout.textBlockCount() == 0)
        return {};
    if (position.block >= layout.textBlockCount())
        return "a position in no block";
    if (position.offset > layout.textOfBlock(position.block).size())
        return "a position behind its block's text";
    if (position > layout.wholeRange().end)
        return "a position behind the document";
    if (!std::isfinite(layout.caretRectangle(position).y))
        return "a caret nowhere";
    (void)layout.linkAt(point);
    (void)layout.selectionRectangles({position, layout.wholeRange().end}, {0, point.y - 100, 600, 500});
    const std::size_t offset = layout.documentOffset(position);
    if (offset > layout.documentText().size() || layout.positionAtDocumentOffset(offset) != position)
        return "a position that its offset does not lead back to";
    return {};
}

std::string faultOfText(const DocumentLayout& layout) {
    const std::string& all = layout.documentText();
    if (layout.plainText(layout.wholeRange()).size() > all.size())
        return "a copy longer than the text";
    for (const PartInfo& part : layout.parts()) {
        if (part.range.end.offset > layout.textOfBlock(part.range.end.block).size())
            return "a part behind its block's text";
        if (part.level < 0 || part.level > 6)
            return "a heading of no level";
    }
    return {};
}

std::string wholeList(DocumentLayout& layout) {
    return describe(layout.displayList({0, 0, layout.options().width, layout.totalHeight() + 1}));
}

} // namespace

std::string faultOfDocument(std::string_view text, std::uint64_t seed) {
    Random random(seed);
    FixedTextEngine engine;
    FixedImageSource images = someImages();
    DocumentLayout layout(engine, images, Theme::basic());
    layout.setOptions(someOptions(random));
    layout.setContent(MarkdownContent(text));
    layout.ensureLaidOut(kEverything);
    if (!layout.isHeightExact() || !std::isfinite(layout.totalHeight()))
        return "a height that is not exact";
    for (const DisplayItem& item : layout.displayList({0, 0, 600, layout.totalHeight() + 1})) {
        const Rect& frame = frameOf(item);
        if (!std::isfinite(frame.x) || frame.width < 0 || frame.height < 0 || frame.y < 0 ||
            frame.bottom() > layout.totalHeight() + 0.01)
            return "an item outside the document, which is " + std::to_string(layout.totalHeight()) +
                   " high: " + describe(DisplayList{item});
    }
    std::string fault = faultOfText(layout);
    for (int i = 0; i < kPointsAsked && fault.empty(); ++i)
        fault = faultAt(layout, {between(random, -5, 600), between(random, -5, layout.totalHeight() + 20)});
    return fault;
}

std::string faultOfLaziness(std::string_view text, std::uint64_t seed) {
    Random random(seed);
    FixedTextEngine engine;
    FixedImageSource images = someImages();
    DocumentLayout atOnce(engine, images, Theme::basic());
    DocumentLayout lazy(engine, images, Theme::basic());
    const LayoutOptions options = someOptions(random);
    atOnce.setOptions(options);
    atOnce.setContent(MarkdownContent(text));
    lazy.setContent(MarkdownContent(text));
    lazy.setOptions(options);
    (void)lazy.ensureLaidOut(lazy.totalHeight() / 2, lazy.totalHeight() / 2 + 1);
    atOnce.ensureLaidOut(kEverything);
    lazy.ensureLaidOut(kEverything);
    return wholeList(atOnce) == wholeList(lazy) ? "" : "a layout that depends on what was seen first";
}

std::string faultOfStream(std::string_view text, std::uint64_t seed) {
    constexpr std::size_t kLongestPiece = 80;
    Random random(seed);
    FixedTextEngine engine;
    PlainTextLayout layout(engine);
    layout.setOptions({.width = between(random, 40, 340), .font = {.size = 16}});
    for (std::size_t at = 0; at < text.size();) {
        const std::string_view piece = text.substr(at, 1 + random() % kLongestPiece);
        layout.append(piece);
        at += piece.size();
    }
    (void)layout.displayList({0, 0, 600, layout.totalHeight()});
    if (layout.positionAt({5, layout.totalHeight() / 2}).offset > text.size())
        return "a position behind the stream";
    return {};
}

} // namespace quillmoth::markdown
