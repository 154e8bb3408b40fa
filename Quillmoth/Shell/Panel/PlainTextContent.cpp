#include "Quillmoth/Shell/Panel/PlainTextContent.h"

#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Looks/Palette.h"
#include "Quillmoth/Shell/Panel/PanelMenu.h"

#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTextBoundaryFinder>
#include <QtMath>

#include <algorithm>

namespace quillmoth {

PlainTextContent::PlainTextContent(QWidget* parent) : MessageContent(parent), color_(kPanelTheme.text) {
    setCursor(Qt::IBeamCursor);
    setFocusPolicy(Qt::NoFocus);
    applyStyle();
}

void PlainTextContent::setColor(const QColor& color) {
    color_ = color;
    update();
}

void PlainTextContent::setAlignment(Qt::Alignment alignment) {
    alignment_ = alignment;
    applyStyle();
}

void PlainTextContent::setLineHeight(int pixels) {
    lineHeight_ = pixels;
    applyStyle();
}

void PlainTextContent::applyStyle() {
    column_.setStyle({.font = textFont(fontSize_),
                      .lineHeight = lineHeight_ > 0 ? lineHeight_ : textLineHeight(fontSize_),
                      .alignment = alignment_});
    update();
}

void PlainTextContent::setText(const std::string& text) {
    anchor_ = position_ = 0;
    column_.setText(QString::fromStdString(text));
    update();
}

void PlainTextContent::appendText(const std::string& more) {
    column_.append(QString::fromStdString(more));
    update();
}

void PlainTextContent::setFontSize(double pixelSize) {
    fontSize_ = pixelSize;
    applyStyle();
}

int PlainTextContent::heightForWidth(int width) const {
    column_.setWidth(width);
    setRestLater();
    return qCeil(column_.height());
}

void PlainTextContent::setRestLater() const {
    if (!column_.isComplete() && !rest_.isActive())
        rest_.start(0, const_cast<PlainTextContent*>(this));
}

void PlainTextContent::timerEvent(QTimerEvent* event) {
    if (event->timerId() != rest_.timerId())
        return MessageContent::timerEvent(event);
    column_.layOutMore();
    if (column_.isComplete())
        rest_.stop();
    if (qCeil(column_.height()) != height() && onHeightChanged)
        onHeightChanged();
}

int PlainTextContent::naturalWidth(int available) const {
    column_.setWidth(available);
    // A text that is set in slices is not set twice.
    if (column_.text().size() > TextColumn::kSlice)
        return available;
    return std::min(available, qCeil(column_.usedWidth()) + 1);
}

double PlainTextContent::firstLineMiddle() const {
    return column_.lineRectAt(0).height() / 2;
}

QString PlainTextContent::selectedText() const {
    const int start = std::min(anchor_, position_);
    return column_.text().mid(start, std::max(anchor_, position_) - start);
}

void PlainTextContent::clearSelection() {
    select(0, 0);
}

void PlainTextContent::select(int anchor, int position) {
    anchor_ = anchor;
    position_ = position;
    update();
}

void PlainTextContent::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    column_.setWidth(width());
    if (!column_.isComplete()) {
        column_.ensureLaidOut(event->rect().bottom());
        // Who places this is told of the height, though all may be set now.
        rest_.start(0, this);
    }
    column_.paint(painter, event->rect(), color_, std::min(anchor_, position_), std::max(anchor_, position_));
}

void PlainTextContent::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    if (onSelectionBegun)
        onSelectionBegun();
    const int position = column_.positionAt(event->position());
    if (clicks_.countPress(*event) == 3)
        selectParagraph(position);
    else
        select(event->modifiers() & Qt::ShiftModifier ? anchor_ : position, position);
}

void PlainTextContent::mouseMoveEvent(QMouseEvent* event) {
    if (!(event->buttons() & Qt::LeftButton) || clicks_.count() > 1)
        return;
    select(anchor_, column_.positionAt(event->position()));
    const QRectF line = column_.lineRectAt(position_);
    if (onReveal)
        onReveal(qFloor(line.top()), qCeil(line.bottom()));
}

void PlainTextContent::mouseDoubleClickEvent(QMouseEvent* event) {
    clicks_.countPress(*event);
    selectWord(column_.positionAt(event->position()));
}

void PlainTextContent::contextMenuEvent(QContextMenuEvent* event) {
    openSelectionMenu(*this, event->globalPos(), selectedText(), [this] {
        if (onSelectionBegun)
            onSelectionBegun();
        select(0, static_cast<int>(column_.text().size()));
    });
}

void PlainTextContent::selectWord(int position) {
    // A word is looked for near the pointer only: the text may be long.
    constexpr qsizetype kReach = 200;
    const qsizetype first = std::max<qsizetype>(0, position - kReach);
    const QString around = column_.text().mid(first, 2 * kReach);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, around);
    finder.setPosition(std::min<qsizetype>(position - first + 1, around.size()));
    const qsizetype start = finder.toPreviousBoundary();
    const qsizetype end = finder.toNextBoundary();
    if (start >= 0 && end > start)
        select(static_cast<int>(first + start), static_cast<int>(first + end));
}

void PlainTextContent::selectParagraph(int position) {
    const QString& text = column_.text();
    const qsizetype before = position > 0 ? text.lastIndexOf(QLatin1Char('\n'), position - 1) : -1;
    const qsizetype after = text.indexOf(QLatin1Char('\n'), position);
    select(static_cast<int>(before + 1), static_cast<int>(after < 0 ? text.size() : after));
}

} // namespace quillmoth
