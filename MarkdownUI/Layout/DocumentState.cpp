#include "MarkdownUI/Layout/DocumentState.h"

#include "MarkdownUI/Layout/CodeBlockView.h"
#include "MarkdownUI/Layout/DocumentText.h"
#include "MarkdownUI/Layout/SchemeImages.h"

#include <algorithm>

namespace quillmoth::markdown {

namespace {

/// What is further from the viewport is forgotten: this many of its heights, and this many pixels more.
constexpr double kKeptViewports = 2;
constexpr double kKeptPixels = 4000;

AttributeContainer rootAttributes(const Theme& theme, double fontSize) {
    const AnyTextStyle root = markdownTextStyle(FontProperties{}, FontSize{fontSize});
    return TextStyleAttributesReader{markdownTextStyle(root, theme.text)}.read();
}

} // namespace

DocumentState::DocumentState(TextEngine& engine, ImageSource& images, const Theme& theme)
    : engine_(engine), source_(images), images_(images), theme_(theme), measure_(engine) {
    rebuildFlow();
}

void DocumentState::setContent(MarkdownContent content) {
    content_ = std::move(content);
    withoutSchemeImages_.reset();
    images_.forget();
    rebuildFlow();
}

void DocumentState::setOptions(LayoutOptions options) {
    if (options == options_)
        return;
    const bool sameFlow = options.fontSize == options_.fontSize &&
                          options.colorScheme == options_.colorScheme && options.baseURL == options_.baseURL;
    options_ = std::move(options);
    if (sameFlow && !hasMovedParts_)
        forgetLayout();
    else
        rebuildFlow();
}

void DocumentState::setHighlighter(const CodeSyntaxHighlighter* highlighter) {
    highlighter_ = highlighter;
    for (const std::uint32_t index : flow_.codeBlocks) {
        groups_[index].text.reset();
        for (std::size_t unit = flow_.groups[index].firstUnit; unit < flow_.groups[index].endUnit; ++unit)
            boxes_[unit].reset();
    }
}

void DocumentState::imagesChanged(std::span<TextRange> kept) {
    const IsImageLoaded after = requestTo(source_);
    for (TextRange& range : kept)
        range = movedRange(*this, range, after);
    images_.takeNotice();
    // The heights of what is not in sight are best kept: they are nearly right.
    documentText.reset();
    for (std::size_t unit = liveBegin_; unit < liveEnd_; ++unit)
        boxes_[unit].reset();
    for (GroupState& group : groups_) {
        group.columns.reset();
        group.text.reset();
    }
}

void DocumentState::rebuildFlow() {
    environment_ = InlineEnvironment(options_.baseURL, theme_);
    if (withoutSchemeImages_ || hasSchemeImages(content_.blocks))
        withoutSchemeImages_ = removeSchemeImages(content_.blocks, options_.colorScheme);
    measure_.clear();
    copyLabelSize_.reset();
    flow_ = makeFlow(withoutSchemeImages_ ? *withoutSchemeImages_ : content_.blocks, theme_,
                     rootAttributes(theme_, options_.fontSize), measure_);
    justCopy.resize(flow_.codeBlocks.size());
    scrolled.resize(flow_.groups.size());
    documentText.reset();
    hasMovedParts_ = false;
    forgetLayout();
}

void DocumentState::forgetLayout() {
    const std::size_t count = flow_.units.size();
    groups_.assign(flow_.groups.size(), {});
    boxes_.clear();
    boxes_.resize(count);
    isExact_.assign(count, false);
    exactCount_ = liveBegin_ = liveEnd_ = 0;
    usedWidth_ = 0;
    std::vector<double> heights;
    heights.reserve(count);
    const LayoutContext all = context();
    for (const FlowUnit& unit : flow_.units) {
        if (unit.kind == FlowUnit::Kind::nothing) { // no viewport meets it
            isExact_[heights.size()] = true;
            ++exactCount_;
        }
        heights.push_back(unit.gap + estimatedHeight(all, unit));
    }
    heights_.assign(std::move(heights));
}

LayoutContext DocumentState::context() const {
    return {engine_, images_, theme_, options_, flow_, environment_, highlighter_};
}

IsImageLoaded DocumentState::requestTo(ImageSource& images) const {
    return [this, &images](const std::string& source) {
        const std::string url = context().imageURL(source);
        return !url.empty() && images.requestImage(url).isShown();
    };
}

Size DocumentState::copyLabelSize() {
    if (!copyLabelSize_) {
        Size size;
        for (const char* label : {kCopyLabel, kCopiedLabel}) {
            AttributeContainer attributes;
            attributes.font = copyButtonFont();
            const AttributedText text(label, attributes);
            const TextLine line = engine_.shape(text, {})->lines().front();
            size = {std::max(size.width, line.advance), line.height()};
        }
        copyLabelSize_ = size;
    }
    return *copyLabelSize_;
}

const Box& DocumentState::box(std::size_t unit) {
    layOut(unit);
    return *boxes_[unit];
}

void DocumentState::layOut(std::size_t unit) {
    if (boxes_[unit])
        return;
    const FlowUnit& flowUnit = flow_.units[unit];
    GroupState none;
    GroupState& group = flowUnit.group == kNoGroup ? none : groups_[flowUnit.group];
    boxes_[unit] = std::make_unique<Box>(makeBox(context(), flowUnit, group));
    handLastLineOn(unit, *boxes_[unit]);
    heights_.set(unit, flowUnit.gap + boxes_[unit]->height);
    usedWidth_ = std::max(usedWidth_, boxes_[unit]->right);
    if (!isExact_[unit]) {
        isExact_[unit] = true;
        ++exactCount_;
        ++group.unitsSeen;
    }
    liveBegin_ = liveBegin_ == liveEnd_ ? unit : std::min(liveBegin_, unit);
    liveEnd_ = std::max(liveEnd_, unit + 1);
}

/// The last line of a part of a long text is not full: the next part, if it has not been seen yet, starts
/// with it.
void DocumentState::handLastLineOn(std::size_t unit, Box& box) {
    FlowUnit& part = flow_.units[unit];
    if (part.kind != FlowUnit::Kind::text || part.group == kNoGroup ||
        unit + 1 == flow_.groups[part.group].endUnit || isExact_[unit + 1])
        return;
    Fragment& fragment = box.fragments.front();
    if (fragment.lineCount < 2)
        return;
    const TextLine& last = fragment.shaped->lines()[--fragment.lineCount];
    const TextLine& before = fragment.shaped->lines()[fragment.lineCount - 1];
    box.height -= last.top + last.height() - before.top - before.height();
    part.textEnd = static_cast<std::uint32_t>(fragment.textOffset + last.begin);
    flow_.units[unit + 1].textBegin = part.textEnd;
    hasMovedParts_ = true;
}

double DocumentState::ensureLaidOut(double top, double bottom) {
    const std::size_t count = flow_.units.size();
    if (count == 0)
        return 0;
    double moved = 0;
    std::size_t unit = heights_.find(top);
    double y = heights_.top(unit);
    do {
        const double before = heights_.height(unit);
        layOut(unit);
        if (y < top + moved) {
            const double change = heights_.height(unit) - before;
            moved += change;
        }
        y += heights_.height(unit);
        ++unit;
    } while (unit < count && y < bottom + moved);
    dropFarFrom(top + moved, bottom + moved);
    return moved;
}

void DocumentState::dropFarFrom(double top, double bottom) {
    const double kept = kKeptViewports * (bottom - top) + kKeptPixels;
    const std::size_t begin = std::max(liveBegin_, heights_.find(top - kept));
    const std::size_t end = std::max(begin, std::min(liveEnd_, heights_.find(bottom + kept) + 1));
    if (begin == liveBegin_ && end == liveEnd_)
        return;
    const auto drop = [this](std::size_t from, std::size_t to) {
        for (std::size_t unit = from; unit < to; ++unit)
            boxes_[unit].reset();
        dropGroupTexts(from, to);
    };
    const std::size_t formerBegin = std::exchange(liveBegin_, begin);
    const std::size_t formerEnd = std::exchange(liveEnd_, end);
    drop(formerBegin, std::min(begin, formerEnd));
    drop(std::max(end, formerBegin), formerEnd);
}

void DocumentState::dropGroupTexts(std::size_t firstUnit, std::size_t endUnit) {
    for (std::size_t unit = firstUnit; unit < endUnit; ++unit) {
        const std::uint32_t index = flow_.units[unit].group;
        if (index == kNoGroup)
            continue;
        const FlowGroup& group = flow_.groups[index];
        if (group.endUnit <= liveBegin_ || group.firstUnit >= liveEnd_)
            groups_[index].text.reset();
        unit = std::min(endUnit, group.endUnit) - 1;
    }
}

} // namespace quillmoth::markdown
