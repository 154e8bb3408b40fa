#include "Quillmoth/Shell/Panel/MarkdownMessage.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <QWheelEvent>
#include <QtMath>

#include <utility>

namespace quillmoth {

MarkdownMessage::MarkdownMessage(markdown::MarkdownServices& services, OpenLink openLink, QWidget* parent)
    : MessageContent(parent), openLink_(std::move(openLink)), item_(services, *this) {
    setMouseTracking(true);
    setFocusPolicy(Qt::NoFocus);
}

void MarkdownMessage::setText(const std::string& text) {
    text_ = text;
    item_.setMarkdown(text_);
    setAccessibleName(QString::fromStdString(text_));
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
    return qCeil(item_.height());
}

double MarkdownMessage::firstLineMiddle() const {
    return item_.firstLineCenter();
}

QString MarkdownMessage::selectedText() const {
    return item_.selectedText();
}

void MarkdownMessage::clearSelection() {
    item_.clearSelection();
}

void MarkdownMessage::paintEvent(QPaintEvent* event) {
    const QRectF exposed = event->rect();
    item_.setWidth(width());
    item_.ensureLaidOut(exposed.top(), exposed.bottom());
    QPainter painter(this);
    item_.paint(painter, exposed, {0, 0});
}

void MarkdownMessage::press(QMouseEvent* event, int clicks) {
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
    press(event, 1);
}

void MarkdownMessage::mouseDoubleClickEvent(QMouseEvent* event) {
    press(event, 2);
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

void MarkdownMessage::callAfter(std::chrono::milliseconds delay, std::function<void()> work) {
    QTimer::singleShot(delay, this, std::move(work));
}

MessageContentFactory markdownMessages(markdown::MarkdownServices& services,
                                       MarkdownMessage::OpenLink openLink) {
    return [&services, openLink = std::move(openLink)](QWidget* parent) -> MessageContent* {
        return new MarkdownMessage(services, openLink, parent);
    };
}

} // namespace quillmoth
