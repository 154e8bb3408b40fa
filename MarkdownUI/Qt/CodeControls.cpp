#include "MarkdownUI/Qt/CodeControls.h"

#include <QString>

#include <algorithm>
#include <chrono>

namespace quillmoth::markdown {

namespace {

using namespace std::chrono_literals;

constexpr auto kCopiedFor = 2s;
constexpr auto kButtonFade = 90ms;
constexpr auto kBarFade = 120ms;
constexpr double kBarReach = 10; // a scroll bar can be grabbed this far up from the block's bottom
constexpr double kPageShare = 0.9;

} // namespace

CodeControls::CodeControls(MarkdownHost& host)
    : host_(host), buttonFade_(kButtonFade, [this] { changed(); }),
      barFade_(kBarFade, [this] { changed(); }) {}

void CodeControls::forget() {
    buttonFade_.clear();
    barFade_.clear();
    hoveredButton_.reset();
    hoveredBar_.reset();
    pressedButton_.reset();
    draggedBar_.reset();
    focusedButton_.reset();
}

bool CodeControls::hover(DocumentLayout& document, Point point) {
    const auto button = document.copyButtonAt(point);
    const auto bar = button ? std::nullopt : barAt(document, point);
    setHovered(button, bar ? std::optional(bar->group) : std::nullopt);
    return button || bar;
}

bool CodeControls::isAt(DocumentLayout& document, Point point) {
    return document.copyButtonAt(point) || barAt(document, point);
}

void CodeControls::leave() {
    setHovered(std::nullopt, std::nullopt);
}

void CodeControls::setHovered(std::optional<std::size_t> button, std::optional<std::size_t> bar) {
    const auto change = [](HoverFade& fade, std::optional<std::size_t>& current,
                           std::optional<std::size_t> next) {
        if (current == next)
            return;
        if (current)
            fade.setHovered(*current, false);
        current = next;
        if (current)
            fade.setHovered(*current, true);
    };
    change(buttonFade_, hoveredButton_, button);
    change(barFade_, hoveredBar_, bar);
}

std::optional<ScrollRegionItem> CodeControls::barAt(DocumentLayout& document, Point point) {
    const auto region = document.scrollRegionAt(point);
    const bool isLow = region && point.y >= region->frame.bottom() - kBarReach;
    return isLow && scrollThumbOf(*region, 1) ? region : std::nullopt;
}

bool CodeControls::press(DocumentLayout& document, Point point) {
    setFocusedButton(std::nullopt);
    if (const auto button = document.copyButtonAt(point)) {
        pressedButton_ = button;
        isPressedInside_ = true;
        changed();
        return true;
    }
    const auto bar = barAt(document, point);
    return bar && pressBar(document, *bar, point);
}

bool CodeControls::pressBar(DocumentLayout& document, const ScrollRegionItem& region, Point point) {
    const Rect thumb = scrollThumbOf(region, 1).value_or(Rect{});
    if (point.x < thumb.x || point.x >= thumb.right()) {
        const double page = region.frame.width * kPageShare;
        scroll(document, region.group, point.x < thumb.x ? -page : page);
        return true;
    }
    draggedBar_ = BarDrag{region.group, point.x - thumb.x};
    changed();
    return true;
}

void CodeControls::drag(DocumentLayout& document, Point point) {
    if (pressedButton_) {
        const bool isInside = document.copyButtonAt(point) == pressedButton_;
        if (isInside != isPressedInside_) {
            isPressedInside_ = isInside;
            changed();
        }
    }
    if (!draggedBar_)
        return;
    ScrollRegionItem region = document.scrollRegion(draggedBar_->group);
    region.offset = 0;
    const auto first = scrollThumbOf(region, 1);
    region.offset = region.contentWidth - region.frame.width;
    const auto last = scrollThumbOf(region, 1);
    if (first && last && last->x > first->x) {
        const double share = (point.x - draggedBar_->grabbedAt - first->x) / (last->x - first->x);
        document.setScrollOffset(draggedBar_->group, share * region.offset);
        changed();
    }
}

void CodeControls::release(DocumentLayout& document, Point point) {
    if (pressedButton_ && document.copyButtonAt(point) == pressedButton_)
        copy(document, *pressedButton_);
    pressedButton_.reset();
    draggedBar_.reset();
    hover(document, point);
    changed();
}

void CodeControls::copy(DocumentLayout& document, std::size_t codeBlock) {
    host_.copyText(QString::fromStdString(document.codeBlockText(codeBlock)));
    setJustCopy(document, codeBlock, true);
    host_.callAfter(kCopiedFor, [this, &document, codeBlock, alive = std::weak_ptr<void>(alive_)] {
        if (!alive.expired() && codeBlock < document.codeBlockCount())
            setJustCopy(document, codeBlock, false);
    });
}

void CodeControls::setJustCopy(DocumentLayout& document, std::size_t codeBlock, bool justCopy) {
    document.setJustCopy(codeBlock, justCopy);
    host_.copyButtonRenamed(codeBlock);
    changed();
}

bool CodeControls::scroll(DocumentLayout& document, std::size_t group, double distance) {
    const double before = document.scrollRegion(group).offset;
    document.setScrollOffset(group, before + distance);
    if (document.scrollRegion(group).offset == before)
        return false;
    changed();
    return true;
}

void CodeControls::setFocusedButton(std::optional<std::size_t> codeBlock) {
    if (focusedButton_ != codeBlock) {
        focusedButton_ = codeBlock;
        changed();
    }
}

std::map<std::size_t, CopyButtonLook> CodeControls::buttonLooks() const {
    std::map<std::size_t, CopyButtonLook> looks;
    for (const auto& [block, share] : buttonFade_.shares())
        looks[block].hover = share;
    if (pressedButton_ && isPressedInside_)
        looks[*pressedButton_].isPressed = true;
    if (focusedButton_)
        looks[*focusedButton_].isFocused = true;
    return looks;
}

std::map<std::size_t, ScrollBarLook> CodeControls::barLooks() const {
    std::map<std::size_t, ScrollBarLook> looks;
    for (const auto& [group, share] : barFade_.shares())
        looks[group].hover = share;
    if (draggedBar_)
        looks[draggedBar_->group].isDragged = true;
    return looks;
}

} // namespace quillmoth::markdown
