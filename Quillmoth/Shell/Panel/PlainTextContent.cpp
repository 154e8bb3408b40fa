#include "Quillmoth/Shell/Panel/PlainTextContent.h"

#include "Quillmoth/Shell/Panel/PanelTheme.h"

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
    column_.setStyle({.font = panelFont(fontSize_),
                      .lineHeight = lineHeight_ > 0 ? lineHeight_ : textLineHeight(fontSize_),
                      .alignment = alignment_});
    update();
}

void PlainTextContent::setText(const std::string& text) {
    anchor_ = position_ = 0;
    column_.setText(QString::fromStdString(text));
    setAccessibleName(column_.text());
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
    return qCeil(column_.height());
}

int PlainTextContent::naturalWidth(int available) const {
    column_.setWidth(available);
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
    select(event->modifiers() & Qt::ShiftModifier ? anchor_ : position, position);
}

void PlainTextContent::mouseMoveEvent(QMouseEvent* event) {
    if (!(event->buttons() & Qt::LeftButton))
        return;
    select(anchor_, column_.positionAt(event->position()));
    const QRectF line = column_.lineRectAt(position_);
    if (onReveal)
        onReveal(qFloor(line.top()), qCeil(line.bottom()));
}

void PlainTextContent::mouseDoubleClickEvent(QMouseEvent* event) {
    const int position = column_.positionAt(event->position());
    // A word is looked for near the pointer only: the text may be long.
    constexpr int kReach = 200;
    const int first = std::max(0, position - kReach);
    const QString around = column_.text().mid(first, 2 * kReach);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, around);
    finder.setPosition(std::min<qsizetype>(position - first + 1, around.size()));
    const qsizetype start = finder.toPreviousBoundary();
    const qsizetype end = finder.toNextBoundary();
    if (start >= 0 && end > start)
        select(first + static_cast<int>(start), first + static_cast<int>(end));
}

} // namespace quillmoth
