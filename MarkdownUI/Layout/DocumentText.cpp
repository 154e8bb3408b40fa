#include "MarkdownUI/Layout/DocumentText.h"

#include "Foundation/Text.h"
#include "Foundation/URL.h"

namespace quillmoth::markdown {

namespace {

const FlowUnit& unitOf(const DocumentState& state, std::size_t block) {
    return state.flow().units[state.flow().unitOfTextBlock(block)];
}

/// Null where the block is raw markup, code or empty.
const Inlines* inlinesOf(const DocumentState& state, std::size_t block) {
    const FlowUnit& unit = unitOf(state, block);
    if (unit.kind != FlowUnit::Kind::tableRow)
        return unit.inlines;
    return &state.flow().groups[unit.group].table->rows[unit.row][block - unit.firstTextBlock];
}

std::string verbatimOf(const DocumentState& state, std::size_t block) {
    const FlowUnit& unit = unitOf(state, block);
    if (unit.kind == FlowUnit::Kind::code)
        return std::string(withoutFinalLineFeed(state.flow().groups[unit.group].code->content));
    return std::string(unit.verbatim);
}

/// Calls visit(block) for each text block in order.
template<class Visit>
void forEachTextBlock(const DocumentState& state, const Visit& visit) {
    for (const FlowUnit& unit : state.flow().units) {
        for (std::uint32_t i = 0; i < unit.textBlockCount && unit.textBegin == 0; ++i)
            visit(std::size_t{unit.firstTextBlock} + i);
    }
}

} // namespace

std::string textOfBlock(const DocumentState& state, std::size_t block) {
    if (block >= state.flow().textBlockCount)
        return {};
    const Inlines* values = inlinesOf(state, block);
    return values != nullptr ? plainTextOf(*values, state.imageRequest()) : verbatimOf(state, block);
}

std::string separatorBefore(const DocumentState& state, std::size_t block) {
    if (block == 0)
        return {};
    const FlowUnit& unit = unitOf(state, block);
    if (block > unit.firstTextBlock)
        return "\t";
    return unit.gap > 0 ? "\n\n" : "\n";
}

std::string markersBefore(const DocumentState& state, std::size_t block) {
    const FlowUnit& unit = unitOf(state, block);
    std::string result;
    for (std::uint32_t i = 0; i < unit.markerCount && block == unit.firstTextBlock; ++i) {
        const FlowMarker& marker = state.flow().markers[unit.firstMarker + i];
        if (i == 0)
            result.append(static_cast<std::size_t>(marker.listLevel - 1), '\t');
        result += makeMarker(marker, state.theme()).plainText + " ";
    }
    return result;
}

TextRange wholeRange(const DocumentState& state) {
    const std::size_t count = state.flow().textBlockCount;
    if (count == 0)
        return {};
    return {{0, 0}, {count - 1, textOfBlock(state, count - 1).size()}};
}

std::string plainText(const DocumentState& state, const TextRange& range) {
    std::string result;
    for (std::size_t block = range.begin.block;
         block <= range.end.block && block < state.flow().textBlockCount; ++block) {
        const bool isFirst = block == range.begin.block;
        if (!isFirst)
            result += separatorBefore(state, block);
        const bool reachesOn = block < range.end.block;
        if (!isFirst || (range.begin.offset == 0 && reachesOn))
            result += markersBefore(state, block);
        std::string text = textOfBlock(state, block);
        if (!reachesOn)
            text.resize(std::min(text.size(), range.end.offset));
        result += std::string_view(text).substr(isFirst ? std::min(range.begin.offset, text.size()) : 0);
    }
    return replacingAll(result, kObjectReplacement, "");
}

TextRange movedRange(const DocumentState& state, const TextRange& range, const IsImageLoaded& after) {
    const auto moved = [&](const TextPosition& position, bool isBehind) {
        const Inlines* values =
            position.block < state.flow().textBlockCount ? inlinesOf(state, position.block) : nullptr;
        return values == nullptr
                   ? position
                   : TextPosition{position.block, movedOffset(*values, position.offset, isBehind,
                                                              state.imageRequest(), after)};
    };
    return {moved(range.begin, false), moved(range.end, !range.empty())};
}

void ensureDocumentText(DocumentState& state) {
    if (state.documentText)
        return;
    std::string text;
    state.documentBlockStarts.clear();
    forEachTextBlock(state, [&](std::size_t block) {
        text += separatorBefore(state, block) + markersBefore(state, block);
        state.documentBlockStarts.push_back(text.size());
        text += textOfBlock(state, block);
    });
    state.documentText = std::move(text);
}

std::vector<LinkInfo> linksOfBlock(const DocumentState& state, std::size_t block) {
    std::vector<LinkInfo> result;
    const Inlines* values = inlinesOf(state, block);
    if (values == nullptr)
        return result;
    const IsImageLoaded isLoaded = state.imageRequest();
    std::string text;
    forEachLink(*values, isLoaded, [&](std::size_t begin, std::size_t end, const std::string& destination) {
        const auto url = resolveLink(destination, state.options().baseURL);
        if (!url)
            return;
        if (text.empty())
            text = plainTextOf(*values, isLoaded);
        result.push_back({{{block, begin}, {block, end}}, *url, text.substr(begin, end - begin)});
    });
    return result;
}

std::vector<PartInfo> imagesOfBlock(const DocumentState& state, std::size_t block) {
    std::vector<PartInfo> result;
    const Inlines* values = inlinesOf(state, block);
    if (values == nullptr)
        return result;
    forEachImage(*values, state.imageRequest(),
                 [&](std::size_t begin, std::size_t end, const inlines::Image& image) {
                     const LayoutContext context = state.context();
                     PartInfo part{.kind = PartInfo::Kind::image,
                                   .range = {{block, begin}, {block, end}},
                                   .text = inlinesAsText(image.children),
                                   .source = context.imageURL(image.source),
                                   .isInText = true};
                     part.isPressable = context.image(part.source).isPressable;
                     result.push_back(std::move(part));
                 });
    return result;
}

} // namespace quillmoth::markdown
