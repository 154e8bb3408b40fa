#include "Quillmoth/Shell/Panel/MarkdownMessage.h"

#include "MarkdownUI/Qt/AccessibleDocument.h"
#include "MarkdownUI/Qt/AccessibleMarkdown.h"
#include "Quillmoth/Shell/Looks/Palette.h"
#include "Quillmoth/Shell/Panel/PanelMenu.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <QWheelEvent>
#include <QtMath>

#include <utility>

namespace quillmoth {

namespace {

/// So much is seen above and below what the Tab key leads to.
constexpr int kFocusMargin = 20;

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    auto* message = dynamic_cast<MarkdownMessage*>(object);
    if (!message)
        return nullptr;
    return new markdown::AccessibleDocument(*message, message->item(),
                                            [message] { return message->mapToGlobal(QPoint()); });
}

void installAccessibility() {
    static const bool installed = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    Q_UNUSED(installed);
}

} // namespace

MarkdownMessage::MarkdownMessage(markdown::MarkdownServices& services, OpenLink openLink, QWidget* parent)
    : MessageContent(parent), openLink_(std::move(openLink)), item_(services, *this) {
    setMouseTracking(true);
    // A click is not to take the keyboard from the field; the Tab key leads to links and copy buttons.
    setFocusPolicy(Qt::TabFocus);
}

void MarkdownMessage::setText(const std::string& text) {
    text_ = text;
    item_.setMarkdown(text_);
    update();
}

void MarkdownMessage::appendText(const std::string& more) {
    setText(text_ + more);
}

void MarkdownMessage::setFontSize(double pixelSize) {
    item_.setFontSize(pixelSize);
    update();
}

int MarkdownMessage::heightForWidth(int width) const {
    item_.setWidth(width);
    toldHeight_ = qCeil(item_.height());
    return toldHeight_;
}

double MarkdownMessage::firstLineMiddle() const {
    return item_.firstLineCenter();
}

int MarkdownMessage::prepareToShow(int top, int bottom) {
    return qRound(layOut(top, bottom));
}

/// What is not laid out has an estimated height, and so has an image that has come.
double MarkdownMessage::layOut(double top, double bottom) {
    const double moved = item_.ensureLaidOut(top, bottom);
    if (qCeil(item_.height()) != toldHeight_)
        itemResized();
    return moved;
}

QString MarkdownMessage::selectedText() const {
    return item_.selectedText();
}

void MarkdownMessage::clearSelection() {
    item_.clearSelection();
}

void MarkdownMessage::showEvent(QShowEvent* event) {
    MessageContent::showEvent(event);
    item_.retryImages();
}

void MarkdownMessage::paintEvent(QPaintEvent* event) {
    const QRectF exposed = event->rect();
    item_.setWidth(width());
    layOut(exposed.top(), exposed.bottom());
    QPainter painter(this);
    item_.paint(painter, exposed, {0, 0});
    if (!hasFocus() || item_.focusedPart())
        return;
    painter.setPen(kPanelTheme.accent);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void MarkdownMessage::press(QMouseEvent* event) {
    const int clicks = clicks_.countPress(*event);
    if (event->button() != Qt::LeftButton || !item_.isInteractiveAt(event->position())) {
        // The panel is dragged by what is no text and no control.
        event->ignore();
        return;
    }
    if (onSelectionBegun)
        onSelectionBegun();
    item_.mousePress(event->position(), clicks, event->modifiers());
}

void MarkdownMessage::mousePressEvent(QMouseEvent* event) {
    press(event);
}

void MarkdownMessage::mouseDoubleClickEvent(QMouseEvent* event) {
    press(event);
}

void MarkdownMessage::mouseMoveEvent(QMouseEvent* event) {
    const bool isPressed = event->buttons() & Qt::LeftButton;
    item_.mouseMove(event->position(), isPressed);
    setCursor(item_.cursorAt(event->position()));
    if (isPressed && onReveal)
        onReveal(qFloor(event->position().y()) - 1, qCeil(event->position().y()) + 1);
}

void MarkdownMessage::mouseReleaseEvent(QMouseEvent* event) {
    item_.mouseRelease(event->position());
}

void MarkdownMessage::leaveEvent(QEvent*) {
    item_.leave();
}

void MarkdownMessage::wheelEvent(QWheelEvent* event) {
    if (!item_.wheel(*event, event->position()))
        event->ignore();
}

void MarkdownMessage::keyPressEvent(QKeyEvent* event) {
    if (!item_.keyPress(*event))
        event->ignore();
}

bool MarkdownMessage::focusNextPrevChild(bool isNext) {
    return focusNextControl(isNext) || MessageContent::focusNextPrevChild(isNext);
}

bool MarkdownMessage::focusNextControl(bool isNext) {
    if (!item_.focusNextControl(isNext))
        return false;
    const QRectF frame = item_.focusedFrame().value_or(QRectF());
    if (onReveal)
        onReveal(qFloor(frame.top()) - kFocusMargin, qCeil(frame.bottom()) + kFocusMargin);
    markdown::announceFocusedPart(*this, item_);
    return true;
}

/// The Tab key goes to the first link or copy button at once. Where there is none the answer itself can be
/// selected by keys.
void MarkdownMessage::focusInEvent(QFocusEvent* event) {
    MessageContent::focusInEvent(event);
    const bool isForward = event->reason() == Qt::TabFocusReason;
    if (isForward || event->reason() == Qt::BacktabFocusReason)
        focusNextControl(isForward);
    update();
}

void MarkdownMessage::focusOutEvent(QFocusEvent* event) {
    const bool returns =
        event->reason() == Qt::PopupFocusReason || event->reason() == Qt::ActiveWindowFocusReason;
    if (!returns)
        item_.clearFocus();
    MessageContent::focusOutEvent(event);
    update();
}

void MarkdownMessage::contextMenuEvent(QContextMenuEvent* event) {
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    const QPointF point =
        isByKey ? item_.focusedFrame().value_or(item_.caretRectangle()).center() : QPointF(event->pos());
    auto actions = std::make_unique<QMenu>();
    if (const QString link = item_.linkAt(point); !link.isEmpty())
        QObject::connect(actions->addAction(QStringLiteral("Open Link")), &QAction::triggered, this,
                         [this, link] { openLink(link); });
    item_.addActions(*actions, point);
    PanelMenu::open(*this, std::move(actions), mapToGlobal(point.toPoint()), isByKey);
}

void MarkdownMessage::itemChanged(const QRectF& area) {
    if (area.isNull())
        update();
    else
        update(area.toAlignedRect());
}

void MarkdownMessage::itemResized() {
    // It may come from the midst of a paint or of a question for the height.
    if (std::exchange(resizeTold_, true))
        return;
    QTimer::singleShot(0, this, [this] {
        resizeTold_ = false;
        if (onHeightChanged)
            onHeightChanged();
    });
}

void MarkdownMessage::openLink(const QString& url) {
    if (openLink_)
        openLink_(url);
}

void MarkdownMessage::copyText(const QString& text) {
    QGuiApplication::clipboard()->setText(text);
}

void MarkdownMessage::copyButtonRenamed(std::size_t codeBlock) {
    markdown::announceCopyButton(*this, item_, codeBlock);
}

void MarkdownMessage::callAfter(std::chrono::milliseconds delay, std::function<void()> work) {
    QTimer::singleShot(delay, this, std::move(work));
}

MessageContentFactory markdownMessages(markdown::MarkdownServices& services,
                                       MarkdownMessage::OpenLink openLink) {
    installAccessibility();
    return [&services, openLink = std::move(openLink)](QWidget* parent) -> MessageContent* {
        return new MarkdownMessage(services, openLink, parent);
    };
}

} // namespace quillmoth
