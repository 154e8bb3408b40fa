#include "Quillmoth/Shell/Panel/RowList.h"

#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Looks/Lengths.h"
#include "Quillmoth/Shell/Looks/Palette.h"
#include "Quillmoth/Shell/Looks/Pictograph.h"

#include <QAccessible>
#include <QFontMetricsF>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>

namespace quillmoth {

namespace {

constexpr double kLinePerFont = 1.25;
constexpr double kColumnPerFont = 1.375;
constexpr int kGapBehindPictograph = 8;
// More than any panel shows; measuring a longer text would only take time.
constexpr int kLongestShownName = 600;

const QColor* fillFor(RowList::Mark mark) {
    switch (mark) {
    case RowList::Mark::selected:
        return &kPanelTheme.rowSelected;
    case RowList::Mark::hovered:
        return &kPanelTheme.rowHovered;
    case RowList::Mark::none:
        break;
    }
    return nullptr;
}

QString oneLine(const QString& text) {
    return text.left(kLongestShownName).simplified();
}

} // namespace

RowList::RowList(QWidget* parent) : QWidget(parent) {
    setMouseTracking(true);
    setFocusPolicy(Qt::NoFocus);
}

void RowList::setFontSize(double pixelSize) {
    if (pixelSize == fontSize_)
        return;
    fontSize_ = pixelSize;
    updateGeometry();
    update();
}

void RowList::refresh() {
    update();
    const int selected = selectedPosition();
    if (selected == spokenRow_)
        return;
    spokenRow_ = selected;
    if (!QAccessible::isActive() || selected < 0 || !isVisible())
        return;
    for (const auto type : {QAccessible::Selection, QAccessible::Focus}) {
        QAccessibleEvent event(this, type);
        event.setChild(selected);
        QAccessible::updateAccessibility(&event);
    }
}

int RowList::rowHeight() const {
    return qRound(fontSize_ * kLinePerFont) + 2 * panel::kRowPadding;
}

int RowList::pitch() const {
    return rowHeight() + panel::kRowGap;
}

int RowList::heightForWidth(int) const {
    const int count = rowCount();
    return count > 0 ? qMin(count * pitch() - panel::kRowGap, QWIDGETSIZE_MAX) : 0;
}

QRect RowList::rowRect(int position) const {
    return {0, position * pitch(), width(), rowHeight()};
}

int RowList::rowAt(int y) const {
    if (y < 0 || y % pitch() >= rowHeight())
        return -1;
    const int position = y / pitch();
    return position < rowCount() ? position : -1;
}

void RowList::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRect seen = event->rect();
    const int first = seen.top() / pitch();
    const int last = qMin(seen.bottom() / pitch(), rowCount() - 1);
    for (int position = first; position <= last; ++position)
        paintRow(painter, position);
    paintedRows_ = qMax(0, last - first + 1);
}

void RowList::paintRow(QPainter& painter, int position) const {
    const QRect whole = rowRect(position);
    const Mark marked = mark(position);
    if (const QColor* fill = fillFor(marked)) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(*fill);
        painter.drawRoundedRect(whole, panel::kRowRadius, panel::kRowRadius);
    }
    painter.setPen(marked == Mark::selected ? kPanelTheme.white : kPanelTheme.text);
    const Row content = row(position);
    const QRect inside = whole.adjusted(panel::kRowPadding, 0, -panel::kRowPadding, 0);
    const int column = qRound(fontSize_ * kColumnPerFont);
    const QRect picture(inside.left(), inside.top(), column, inside.height());
    const QRect text = inside.adjusted(column + kGapBehindPictograph, 0, 0, 0);

    if (!content.pictograph.isEmpty()) {
        const QFont pictures =
            startsWithPictograph(content.pictograph) ? emojiFont(fontSize_) : textFont(fontSize_);
        drawPictograph(painter, QStyle::visualRect(layoutDirection(), whole, picture), Qt::AlignCenter,
                       pictures, content.pictograph);
    }
    const QFont font = textFont(fontSize_);
    painter.setFont(font);
    const QString name = QFontMetricsF(font).elidedText(oneLine(content.name), Qt::ElideRight, text.width());
    const auto side = QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter);
    painter.drawText(QStyle::visualRect(layoutDirection(), whole, text),
                     static_cast<int>((side | Qt::AlignAbsolute).toInt()) | Qt::TextSingleLine, name);
}

void RowList::mousePressEvent(QMouseEvent* event) {
    const int position = rowAt(event->position().toPoint().y());
    if (position < 0 || event->button() != Qt::LeftButton)
        event->ignore();
    else
        clicked(position);
}

void RowList::mouseDoubleClickEvent(QMouseEvent* event) {
    const int position = rowAt(event->position().toPoint().y());
    if (position < 0 || event->button() != Qt::LeftButton)
        event->ignore();
    else
        doubleClicked(position);
}

void RowList::mouseMoveEvent(QMouseEvent* event) {
    pointer_ = mapToGlobal(event->position().toPoint());
    followPointer();
    event->ignore();
}

void RowList::followPointer() {
    const int position = pointer_ ? rowAt(mapFromGlobal(*pointer_).y()) : -1;
    if (position >= 0)
        entered(position);
}

void RowList::leaveEvent(QEvent*) {
    pointer_.reset();
}

void RowList::hideEvent(QHideEvent*) {
    pointer_.reset();
}

} // namespace quillmoth
