#include "MarkdownView.h"

#include "MarkdownUI/Qt/AccessibleDocument.h"
#include "MarkdownUI/Qt/AccessibleMarkdown.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QTimer>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace quillmoth::markdown {

namespace {

constexpr double kPadding = 30;
constexpr double kWheelStep = 60; // for one notch
constexpr double kNotch = 120;
constexpr double kKeyScroll = 40;
constexpr double kPageOverlap = 40;
constexpr int kAutoScrollInterval = 16;
constexpr double kAutoScrollShare = 0.2; // of the distance beyond the edge

/// Teaches Qt's accessibility about MarkdownView.
void installAccessibleMarkdown() {
    static const bool isInstalled = [] {
        QAccessible::installFactory(
            [](const QString& /*className*/, QObject* object) -> QAccessibleInterface* {
                auto* view = dynamic_cast<MarkdownView*>(object);
                if (view == nullptr)
                    return nullptr;
                return new AccessibleDocument(*view, view->item(), [view] { // owned by Qt's cache
                    return view->mapToGlobal(view->itemOrigin().toPoint());
                });
            });
        return true;
    }();
    (void)isInstalled;
}

} // namespace

MarkdownView::MarkdownView(MarkdownServices& services, QWidget* parent)
    : QWidget(parent), services_(services), item_(services, *this),
      bar_(services.palette, [this] { update(); }) {
    installAccessibleMarkdown();
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

MarkdownView::~MarkdownView() = default;

void MarkdownView::setMarkdown(std::string_view markdown) {
    scroll_ = 0;
    item_.setForm(TextForm::markdown);
    item_.setText(markdown);
}

QPointF MarkdownView::itemOrigin() const {
    return {kPadding, kPadding - scroll_};
}

ScrollBar::Extent MarkdownView::extent() const {
    return {size(), item_.height() + 2 * kPadding, scroll_};
}

void MarkdownView::setScrollPosition(double position) {
    scroll_ = std::clamp(position, 0.0, extent().greatestScroll());
    layOutVisible();
    update();
}

/// What comes into view for the first time gets its true height, which can move it; so look again.
void MarkdownView::layOutVisible() {
    constexpr int kMostPasses = 4;
    isLayingOut_ = true;
    for (int pass = 0; pass < kMostPasses; ++pass) {
        const double top = scroll_ - kPadding;
        scroll_ += item_.ensureLaidOut(top, top + height());
        const double inside = std::clamp(scroll_, 0.0, extent().greatestScroll());
        if (std::exchange(scroll_, inside) == top + kPadding && inside == top + kPadding)
            break;
    }
    isLayingOut_ = false;
}

void MarkdownView::paintEvent(QPaintEvent* event) {
    layOutVisible();
    QPainter painter(this);
    painter.fillRect(event->rect(), services_.palette.base);
    const QPointF origin = itemOrigin();
    item_.paint(painter, QRectF(event->rect()).translated(-origin), origin);
    bar_.paint(painter, extent());
}

void MarkdownView::resizeEvent(QResizeEvent* /*event*/) {
    item_.setWidth(std::max(width() - 2 * kPadding, 1.0));
    setScrollPosition(scroll_);
}

void MarkdownView::dragBarTo(double y) {
    setScrollPosition(bar_.scrollAt(extent(), y));
}

void MarkdownView::mousePressEvent(QMouseEvent* event) {
    press(event);
}

void MarkdownView::mouseDoubleClickEvent(QMouseEvent* event) {
    press(event);
}

void MarkdownView::press(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    if (bar_.isAt(extent(), event->position())) {
        bar_.grab(extent(), event->position().y());
        return dragBarTo(event->position().y());
    }
    item_.mousePress(toItem(event->position()), clicks_.countPress(*event), event->modifiers());
}

void MarkdownView::mouseMoveEvent(QMouseEvent* event) {
    pointer_ = event->position();
    if (bar_.isGrabbed())
        return dragBarTo(pointer_.y());
    const bool isPressed = event->buttons().testFlag(Qt::LeftButton);
    item_.mouseMove(toItem(pointer_), isPressed);
    if (isPressed) {
        const bool isBeyond = pointer_.y() < 0 || pointer_.y() >= height();
        if (isBeyond && !autoScroll_.isActive())
            autoScroll_.start(kAutoScrollInterval, this);
        else if (!isBeyond)
            autoScroll_.stop();
        return;
    }
    const bool isOnBar = bar_.isAt(extent(), pointer_);
    bar_.setHovered(isOnBar);
    setCursor(isOnBar ? Qt::ArrowCursor : item_.cursorAt(toItem(pointer_)));
}

void MarkdownView::mouseReleaseEvent(QMouseEvent* event) {
    autoScroll_.stop();
    if (event->button() != Qt::LeftButton)
        return;
    if (bar_.isGrabbed()) {
        bar_.release();
        return update();
    }
    item_.mouseRelease(toItem(event->position()));
}

void MarkdownView::timerEvent(QTimerEvent* event) {
    if (event->timerId() != autoScroll_.timerId())
        return QWidget::timerEvent(event);
    const double beyond = pointer_.y() < 0 ? pointer_.y() : std::max(pointer_.y() - height(), 0.0);
    setScrollPosition(scroll_ + beyond * kAutoScrollShare);
    item_.mouseMove(toItem(pointer_), true);
}

void MarkdownView::leaveEvent(QEvent* /*event*/) {
    item_.leave();
    bar_.setHovered(false);
}

void MarkdownView::wheelEvent(QWheelEvent* event) {
    if (item_.wheel(*event, toItem(event->position())))
        return event->accept();
    const double distance = event->pixelDelta().isNull() ? event->angleDelta().y() / kNotch * kWheelStep
                                                         : static_cast<double>(event->pixelDelta().y());
    setScrollPosition(scroll_ - distance);
    event->accept();
}

void MarkdownView::keyPressEvent(QKeyEvent* event) {
    if (item_.keyPress(*event)) {
        if (event->modifiers().testFlag(Qt::ShiftModifier))
            showCaret();
    } else if (!scrollByKey(*event)) {
        QWidget::keyPressEvent(event);
    }
}

bool MarkdownView::scrollByKey(const QKeyEvent& event) {
    const double page = std::max(height() - kPageOverlap, kKeyScroll);
    switch (event.key()) {
    case Qt::Key_Up:
        setScrollPosition(scroll_ - kKeyScroll);
        return true;
    case Qt::Key_Down:
        setScrollPosition(scroll_ + kKeyScroll);
        return true;
    case Qt::Key_PageUp:
        setScrollPosition(scroll_ - page);
        return true;
    case Qt::Key_PageDown:
    case Qt::Key_Space:
        setScrollPosition(scroll_ + page);
        return true;
    case Qt::Key_Home:
        setScrollPosition(0);
        return true;
    case Qt::Key_End:
        setScrollPosition(extent().greatestScroll());
        return true;
    default:
        return false;
    }
}

void MarkdownView::showCaret() {
    showFrame(item_.caretRectangle());
}

/// Scrolls as little as shows `frame`, which is the item's.
void MarkdownView::showFrame(const QRectF& frame) {
    const QRectF shown = frame.translated(itemOrigin());
    if (shown.top() < 0)
        setScrollPosition(scroll_ + shown.top());
    else if (shown.bottom() > height())
        setScrollPosition(scroll_ + shown.bottom() - height());
}

bool MarkdownView::focusNextPrevChild(bool isNext) {
    if (!item_.focusNextControl(isNext))
        return QWidget::focusNextPrevChild(isNext);
    const double margin = kKeyScroll / 2;
    showFrame(item_.focusedFrame().value_or(QRectF()).adjusted(0, -margin, 0, margin));
    announceFocusedPart(*this, item_);
    return true;
}

void MarkdownView::focusOutEvent(QFocusEvent* event) {
    const bool returns =
        event->reason() == Qt::PopupFocusReason || event->reason() == Qt::ActiveWindowFocusReason;
    if (!returns)
        item_.clearFocus();
    QWidget::focusOutEvent(event);
}

/// The menu key opens the menu where the focus is.
void MarkdownView::contextMenuEvent(QContextMenuEvent* event) {
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    const QPointF point =
        isByKey ? item_.focusedFrame().value_or(item_.caretRectangle()).center() : toItem(event->pos());
    const QPoint place = isByKey ? mapToGlobal((point + itemOrigin()).toPoint()) : event->globalPos();
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    item_.addActions(*menu, point);
    menu->popup(place);
}

void MarkdownView::itemChanged(const QRectF& area) {
    if (area.isNull())
        update();
    else
        update(area.translated(itemOrigin()).toAlignedRect());
}

void MarkdownView::itemResized() {
    if (!isLayingOut_)
        update();
}

void MarkdownView::openLink(const QString& url) {
    if (onLinkActivated)
        onLinkActivated(url);
}

void MarkdownView::copyText(const QString& text) {
    if (onCopy)
        onCopy(text);
    else
        QGuiApplication::clipboard()->setText(text);
}

void MarkdownView::copyButtonRenamed(std::size_t codeBlock) {
    announceCopyButton(*this, item_, codeBlock);
}

void MarkdownView::callAfter(std::chrono::milliseconds delay, std::function<void()> work) {
    QTimer::singleShot(delay, this, std::move(work));
}

} // namespace quillmoth::markdown
