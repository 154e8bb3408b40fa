#include "MarkdownUI/Layout/DocumentLayout.h"

#include "MarkdownUI/Layout/CodeBlockView.h"
#include "MarkdownUI/Layout/DisplayListBuilder.h"
#include "MarkdownUI/Layout/DocumentHitTest.h"
#include "MarkdownUI/Layout/DocumentParts.h"
#include "MarkdownUI/Layout/DocumentState.h"
#include "MarkdownUI/Layout/DocumentText.h"
#include "MarkdownUI/Layout/ScrollRegion.h"

#include <algorithm>
#include <cmath>

namespace quillmoth::markdown {

DocumentLayout::DocumentLayout(TextEngine& engine, ImageSource& images, const Theme& theme)
    : state_(std::make_unique<DocumentState>(engine, images, theme)) {}

DocumentLayout::~DocumentLayout() = default;

void DocumentLayout::setContent(MarkdownContent content) {
    state_->setContent(std::move(content));
}

void DocumentLayout::setOptions(LayoutOptions options) {
    state_->setOptions(std::move(options));
}

void DocumentLayout::setCodeSyntaxHighlighter(const CodeSyntaxHighlighter* highlighter) {
    state_->setHighlighter(highlighter);
}

void DocumentLayout::imagesChanged(std::span<TextRange> kept) {
    state_->imagesChanged(kept);
}

bool DocumentLayout::isMissingImages() const {
    return state_->isMissingImages();
}

const LayoutOptions& DocumentLayout::options() const {
    return state_->options();
}

const MarkdownContent& DocumentLayout::content() const {
    return state_->content();
}

double DocumentLayout::ensureLaidOut(double top, double bottom) {
    return state_->ensureLaidOut(top, bottom);
}

double DocumentLayout::totalHeight() const {
    return state_->heights().total();
}

bool DocumentLayout::isHeightExact() const {
    return state_->isHeightExact();
}

double DocumentLayout::usedWidth() const {
    return state_->usedWidth();
}

double DocumentLayout::firstLineCenter() {
    if (state_->flow().units.empty())
        return 0;
    const double top = state_->contentTop(0);
    const Box& box = state_->box(0);
    if (!box.fragments.empty()) {
        const Rect line = box.fragments.front().frameOfLine(0);
        return top + line.y + line.height / 2;
    }
    if (box.decorations.empty())
        return top;
    const Rect& frame = frameOf(box.decorations.front());
    return top + frame.y + frame.height / 2;
}

DisplayList DocumentLayout::displayList(const Rect& area) {
    (void)state_->ensureLaidOut(area.y, area.bottom());
    return makeDisplayList(*state_, area);
}

std::size_t DocumentLayout::textBlockCount() const {
    return state_->flow().textBlockCount;
}

std::string DocumentLayout::textOfBlock(std::size_t block) const {
    return markdown::textOfBlock(*state_, block);
}

TextRange DocumentLayout::wholeRange() const {
    return markdown::wholeRange(*state_);
}

TextPosition DocumentLayout::positionAt(Point point) {
    return markdown::positionAt(*state_, point);
}

bool DocumentLayout::isTextAt(Point point) {
    return markdown::isTextAt(*state_, point);
}

std::vector<Rect> DocumentLayout::selectionRectangles(const TextRange& range, const Rect& area) {
    return markdown::selectionRectangles(*state_, range, area);
}

Rect DocumentLayout::caretRectangle(const TextPosition& position) {
    return markdown::caretRectangle(*state_, position);
}

std::string DocumentLayout::plainText(const TextRange& range) const {
    return markdown::plainText(*state_, range);
}

const std::string& DocumentLayout::documentText() const {
    ensureDocumentText(*state_);
    return *state_->documentText;
}

std::size_t DocumentLayout::documentOffset(const TextPosition& position) const {
    ensureDocumentText(*state_);
    const auto& starts = state_->documentBlockStarts;
    if (position.block >= starts.size())
        return state_->documentText->size();
    return std::min(starts[position.block] + position.offset, state_->documentText->size());
}

TextPosition DocumentLayout::positionAtDocumentOffset(std::size_t offset) const {
    ensureDocumentText(*state_);
    const auto& starts = state_->documentBlockStarts;
    const auto behind = std::ranges::upper_bound(starts, offset);
    if (behind == starts.begin())
        return {};
    const auto block = static_cast<std::size_t>(behind - starts.begin()) - 1;
    const std::size_t inBlock = offset - starts[block];
    const std::size_t length = textOfBlock(block).size();
    if (inBlock > length && behind != starts.end())
        return {block + 1, 0};
    return {block, std::min(inBlock, length)};
}

std::optional<std::string> DocumentLayout::linkAt(Point point) {
    return markdown::linkAt(*state_, point);
}

std::string DocumentLayout::imageAt(Point point) {
    return markdown::imageAt(*state_, point);
}

std::vector<PartInfo> DocumentLayout::parts() const {
    return partsOf(*state_);
}

std::vector<Rect> DocumentLayout::rectanglesOf(const PartInfo& part) {
    return markdown::rectanglesOf(*state_, part);
}

std::vector<Rect> DocumentLayout::selectedImages(const TextRange& range, const Rect& area) {
    return markdown::selectedImages(*state_, range, area);
}

std::size_t DocumentLayout::codeBlockCount() const {
    return state_->flow().codeBlocks.size();
}

std::optional<std::size_t> DocumentLayout::copyButtonAt(Point point) {
    const auto codeBlock = markdown::codeBlockAt(*state_, point);
    return codeBlock && copyButtonFrame(*codeBlock).contains(point) ? codeBlock : std::nullopt;
}

Rect DocumentLayout::copyButtonFrame(std::size_t codeBlock) {
    return copyButton(*state_, codeBlock).frame;
}

std::string DocumentLayout::codeBlockText(std::size_t codeBlock) const {
    const DocumentFlow& flow = state_->flow();
    return std::string(withoutFinalLineFeed(flow.groups[flow.codeBlocks[codeBlock]].code->content));
}

void DocumentLayout::setJustCopy(std::size_t codeBlock, bool justCopy) {
    if (codeBlock < state_->justCopy.size())
        state_->justCopy[codeBlock] = justCopy;
}

std::string DocumentLayout::copyButtonLabel(std::size_t codeBlock) const {
    return markdown::copyButtonLabel(*state_, codeBlock);
}

std::size_t DocumentLayout::groupOfCodeBlock(std::size_t codeBlock) const {
    return state_->flow().codeBlocks[codeBlock];
}

std::optional<ScrollRegionItem> DocumentLayout::scrollRegionAt(Point point) {
    return markdown::scrollRegionAt(*state_, point);
}

ScrollRegionItem DocumentLayout::scrollRegion(std::size_t group) {
    return scrollRegionOf(*state_, group);
}

void DocumentLayout::setScrollOffset(std::size_t group, double offset) {
    markdown::setScrollOffset(*state_, group, offset);
}

} // namespace quillmoth::markdown
