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
    setHovered(button, bar);
    return button || bar;
}

void CodeControls::leave() {
    setHovered(std::nullopt, std::nullopt);
}

void CodeControls::setHovered(std::optional<std::size_t> button, std::optional<std::size_t> bar) {
    const auto change = [](HoverFade& fade, std::optional<std::size_t>& current,
                           std::optional<std::size_t> next) {
        if (current == next) {
            return;
        }
        if (current) {
            fade.setHovered(*current, false);
        }
        current = next;
        if (current) {
            fade.setHovered(*current, true);
        }
    };
    change(buttonFade_, hoveredButton_, button);
    change(barFade_, hoveredBar_, bar);
}

std::optional<std::size_t> CodeControls::barAt(DocumentLayout& document, Point point) const {
    const auto block = document.codeBlockAt(point);
    if (!block) {
        return std::nullopt;
    }
    const ScrollRegionItem region = document.scrollRegion(*block);
    const bool isLow = point.y >= region.frame.bottom() - kBarReach;
    return isLow && scrollThumbOf(region, 1) ? block : std::nullopt;
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

bool CodeControls::pressBar(DocumentLayout& document, std::size_t codeBlock, Point point) {
    const ScrollRegionItem region = document.scrollRegion(codeBlock);
    const Rect thumb = scrollThumbOf(region, 1).value_or(Rect{});
    if (point.x < thumb.x || point.x >= thumb.right()) {
        const double page = region.frame.width * kPageShare;
        scroll(document, codeBlock, point.x < thumb.x ? -page : page);
        return true;
    }
    draggedBar_ = BarDrag{codeBlock, point.x - thumb.x};
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
    if (!draggedBar_) {
        return;
    }
    ScrollRegionItem region = document.scrollRegion(draggedBar_->codeBlock);
    region.offset = 0;
    const auto first = scrollThumbOf(region, 1);
    region.offset = region.contentWidth - region.frame.width;
    const auto last = scrollThumbOf(region, 1);
    if (first && last && last->x > first->x) {
        const double share = (point.x - draggedBar_->grabbedAt - first->x) / (last->x - first->x);
        document.setScrollOffset(draggedBar_->codeBlock, share * region.offset);
        changed();
    }
}

void CodeControls::release(DocumentLayout& document, Point point) {
    if (pressedButton_ && document.copyButtonAt(point) == pressedButton_) {
        copy(document, *pressedButton_);
    }
    pressedButton_.reset();
    draggedBar_.reset();
    hover(document, point);
    changed();
}

void CodeControls::copy(DocumentLayout& document, std::size_t codeBlock) {
    host_.copyText(QString::fromStdString(document.codeBlockText(codeBlock)));
    document.setJustCopied(codeBlock, true);
    changed();
    host_.callAfter(kCopiedFor, [this, &document, codeBlock, alive = std::weak_ptr<void>(alive_)] {
        if (!alive.expired() && codeBlock < document.codeBlockCount()) {
            document.setJustCopied(codeBlock, false);
            changed();
        }
    });
}

bool CodeControls::scroll(DocumentLayout& document, std::size_t codeBlock, double distance) {
    const double before = document.scrollRegion(codeBlock).offset;
    document.setScrollOffset(codeBlock, before + distance);
    if (document.scrollRegion(codeBlock).offset == before) {
        return false;
    }
    changed();
    return true;
}

void CodeControls::setFocusedButton(std::optional<std::size_t> codeBlock) {
    if (focusedButton_ != codeBlock) {
        focusedButton_ = codeBlock;
        changed();
    }
}

std::map<std::size_t, CodeBlockLook> CodeControls::looks() const {
    std::map<std::size_t, CodeBlockLook> looks;
    for (const auto& [block, share] : buttonFade_.shares()) {
        looks[block].buttonHover = share;
    }
    for (const auto& [block, share] : barFade_.shares()) {
        looks[block].barHover = share;
    }
    if (pressedButton_ && isPressedInside_) {
        looks[*pressedButton_].isButtonPressed = true;
    }
    if (draggedBar_) {
        looks[draggedBar_->codeBlock].isBarDragged = true;
    }
    if (focusedButton_) {
        looks[*focusedButton_].isButtonFocused = true;
    }
    return looks;
}

} // namespace quillmoth::markdown
