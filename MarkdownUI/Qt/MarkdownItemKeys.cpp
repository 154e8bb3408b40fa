// The half of MarkdownItem for keys, wheel, menu and selection.

#include "MarkdownUI/Qt/MarkdownItem.h"

#include <QAction>
#include <QKeyEvent>
#include <QMenu>
#include <QWheelEvent>

#include <array>
#include <cmath>

namespace quillmoth::markdown {

namespace {

constexpr double kKeyScroll = 40;
constexpr double kWheelStep = 60; // for one notch
constexpr double kNotch = 120;    // of angleDelta

struct KeyMove {
    QKeySequence::StandardKey key;
    CaretMove move;
};

constexpr std::array kKeyMoves{
    KeyMove{QKeySequence::SelectPreviousChar, CaretMove::previousCharacter},
    KeyMove{QKeySequence::SelectNextChar, CaretMove::nextCharacter},
    KeyMove{QKeySequence::SelectPreviousWord, CaretMove::previousWord},
    KeyMove{QKeySequence::SelectNextWord, CaretMove::nextWord},
    KeyMove{QKeySequence::SelectPreviousLine, CaretMove::lineAbove},
    KeyMove{QKeySequence::SelectNextLine, CaretMove::lineBelow},
    KeyMove{QKeySequence::SelectStartOfLine, CaretMove::lineStart},
    KeyMove{QKeySequence::SelectEndOfLine, CaretMove::lineEnd},
    KeyMove{QKeySequence::SelectStartOfDocument, CaretMove::documentStart},
    KeyMove{QKeySequence::SelectEndOfDocument, CaretMove::documentEnd},
};

/// How far a turn of the wheel goes sideways, in pixels.
double sidewaysOf(const QWheelEvent& event) {
    const bool isTurned = event.modifiers().testFlag(Qt::ShiftModifier);
    const auto along = [isTurned](QPoint delta) {
        return delta.x() != 0 ? delta.x() : isTurned ? delta.y() : 0;
    };
    if (!event.pixelDelta().isNull())
        return -along(event.pixelDelta());
    return -along(event.angleDelta()) / kNotch * kWheelStep;
}

bool isMoreSideways(const QWheelEvent& event) {
    const QPoint delta = event.pixelDelta().isNull() ? event.angleDelta() : event.pixelDelta();
    return event.modifiers().testFlag(Qt::ShiftModifier) || std::abs(delta.x()) > std::abs(delta.y());
}

} // namespace

bool MarkdownItem::wheel(const QWheelEvent& event, const QPointF& point) {
    DocumentLayout* const document = shownDocument();
    if (document == nullptr || !isMoreSideways(event))
        return false;
    const auto region = document->scrollRegionAt({point.x(), point.y()});
    return region && controls_->scroll(*document, region->group, sidewaysOf(event));
}

bool MarkdownItem::keyPress(const QKeyEvent& event) {
    if (event.matches(QKeySequence::SelectAll)) {
        selectAll();
        return true;
    }
    if (event.matches(QKeySequence::Copy) && hasSelection()) {
        copySelection();
        return true;
    }
    return activateByKey(event) || moveByKey(event) || scrollByKey(event);
}

bool MarkdownItem::activateByKey(const QKeyEvent& event) {
    const bool isReturn = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    if (!focusedPart_ || *focusedPart_ >= parts().size() || modifiers != Qt::NoModifier)
        return false;
    const bool isSpace =
        event.key() == Qt::Key_Space &&
        (controls_->focusedButton() || parts()[*focusedPart_].isPressable); // else it scrolls
    if (!isReturn && !isSpace)
        return false;
    activate(parts()[*focusedPart_]);
    return true;
}

void MarkdownItem::activate(const PartInfo& part) {
    if (part.kind == PartInfo::Kind::copyButton)
        controls_->copy(*shownDocument(), part.place);
    else if (part.isPressable)
        services().images.load(std::string(part.source)); // the part changes with it
    else if (part.acts())
        host().openLink(QString::fromStdString(part.destination));
}

std::optional<ImagePlaceholder> MarkdownItem::placeholderOf(const PartInfo& part) const {
    return part.kind == PartInfo::Kind::image ? services().images.placeholder(part.source) : std::nullopt;
}

void MarkdownItem::alwaysLoad(const PartInfo& part) {
    services().images.alwaysLoad(std::string(part.source));
}

QString MarkdownItem::focusedTarget() const {
    if (!focusedPart_ || *focusedPart_ >= parts().size())
        return {};
    const PartInfo& part = parts()[*focusedPart_];
    return QString::fromStdString(part.isPressable ? part.source : part.destination);
}

bool MarkdownItem::moveByKey(const QKeyEvent& event) {
    for (const KeyMove& candidate : kKeyMoves) {
        if (event.matches(candidate.key)) {
            selection_.extend(content(), candidate.move);
            hasCaret_ = true;
            host().itemChanged({});
            showParsed();
            return true;
        }
    }
    return false;
}

/// Left and Right scroll the code block or table that holds the caret, or the block whose button has the
/// focus.
bool MarkdownItem::scrollByKey(const QKeyEvent& event) {
    DocumentLayout* const document = shownDocument();
    const bool isSideways = event.key() == Qt::Key_Left || event.key() == Qt::Key_Right;
    if (document == nullptr || !isSideways || event.modifiers() != Qt::NoModifier)
        return false;
    std::optional<std::size_t> group;
    if (const auto block = controls_->focusedButton()) {
        group = document->groupOfCodeBlock(*block);
    } else if (hasCaret_) {
        const Rect caret = content().caretRectangle(selection_.caret());
        const double middle = caret.y + caret.height / 2;
        auto region = document->scrollRegionAt({caret.x, middle});
        if (!region) { // the caret itself may be scrolled out of sight
            region = document->scrollRegionAt({options().width / 2, middle});
        }
        group = region ? std::optional(region->group) : std::nullopt;
    }
    return group &&
           controls_->scroll(*document, *group, event.key() == Qt::Key_Left ? -kKeyScroll : kKeyScroll);
}

bool MarkdownItem::focusNextControl(bool isForward) {
    const std::size_t count = parts().size();
    const std::size_t step = isForward ? 1 : static_cast<std::size_t>(-1); // below zero is beyond the last
    std::size_t next = focusedPart_ ? *focusedPart_ + step : isForward ? 0 : count - 1;
    while (next < count && !parts()[next].acts())
        next += step;
    setFocusedPart(next < count ? std::optional(next) : std::nullopt);
    return focusedPart_.has_value();
}

void MarkdownItem::setFocusedPart(std::optional<std::size_t> part) {
    if (focusedPart_ == part)
        return;
    focusedPart_ = part;
    const bool isButton = part && parts()[*part].kind == PartInfo::Kind::copyButton;
    controls_->setFocusedButton(isButton ? std::optional(parts()[*part].place) : std::nullopt);
    host().itemChanged({});
}

void MarkdownItem::clearFocus() {
    setFocusedPart(std::nullopt);
}

std::optional<QRectF> MarkdownItem::focusedFrame() {
    if (!focusedPart_)
        return std::nullopt;
    QRectF frame;
    for (const Rect& rect : shownDocument()->rectanglesOf(parts()[*focusedPart_]))
        frame |= QRectF(rect.x, rect.y, rect.width, rect.height);
    return frame;
}

/// The parts are the same ones: that which has the focus keeps it.
void MarkdownItem::imagesChanged() {
    DocumentLayout* const document = keptDocument();
    if (document == nullptr)
        return;
    if (document != shownDocument())
        return document->imagesChanged({});
    auto kept = selection_.ranges();
    document->imagesChanged(kept);
    selection_.setRanges(kept);
    parts_.reset();
    hoveredLink_.reset();
    host().itemResized();
    host().itemChanged({});
}

void MarkdownItem::retryImages() {
    if (keptDocument() != nullptr && keptDocument()->isMissingImages())
        imagesChanged();
}

void MarkdownItem::addImageActions(QMenu& menu, const QPointF& point) {
    const std::string url = heldImageAt(point);
    const auto placeholder = url.empty() ? std::nullopt : services().images.placeholder(url);
    if (!placeholder)
        return;
    DefaultImageLoader& images = services().images;
    QObject::connect(menu.addAction(QStringLiteral("Load Image")), &QAction::triggered, &menu,
                     [&images, url] { images.load(url); });
    if (placeholder->canAlwaysLoad) {
        const QString name = kAlwaysLoad.arg(placeholder->host).replace('&', QStringLiteral("&&"));
        QObject::connect(menu.addAction(name), &QAction::triggered, &menu,
                         [&images, url] { images.alwaysLoad(url); });
    }
    menu.addSeparator();
}

void MarkdownItem::addActions(QMenu& menu, const QPointF& point) {
    addImageActions(menu, point);
    const auto add = [&menu](const QString& text, QKeySequence::StandardKey key, bool isEnabled) {
        QAction* action = menu.addAction(text);
        action->setShortcut(key);
        action->setEnabled(isEnabled);
        return action;
    };
    QObject::connect(add(QStringLiteral("Copy"), QKeySequence::Copy, hasSelection()), &QAction::triggered,
                     &menu, [this] { copySelection(); });
    if (const QString link = linkAt(point); !link.isEmpty()) {
        QObject::connect(add(QStringLiteral("Copy Link"), QKeySequence::UnknownKey, true),
                         &QAction::triggered, &menu, [this, link] { host().copyText(link); });
    }
    menu.addSeparator();
    QObject::connect(add(QStringLiteral("Select All"), QKeySequence::SelectAll, true), &QAction::triggered,
                     &menu, [this] { selectAll(); });
}

QString MarkdownItem::selectedText() const {
    return hasSelection() ? QString::fromStdString(content().plainText(selection_.range())) : QString();
}

void MarkdownItem::select(const TextRange& range) {
    selection_.begin(content(), range.begin, SelectionUnit::character);
    selection_.extendTo(content(), range.end);
    hasCaret_ = true;
    host().itemChanged({});
}

void MarkdownItem::selectAll() {
    selection_.selectAll(content());
    hasCaret_ = true;
    host().itemChanged({});
}

void MarkdownItem::clearSelection() {
    if (hasSelection()) {
        selection_.clear();
        host().itemChanged({});
        showParsed();
    }
}

void MarkdownItem::copySelection() {
    host().copyText(selectedText());
}

QRectF MarkdownItem::caretRectangle() {
    const Rect rect = content().caretRectangle(selection_.caret());
    return {rect.x, rect.y, rect.width, rect.height};
}

} // namespace quillmoth::markdown
