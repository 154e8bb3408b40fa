#include "Quillmoth/Shell/Editor/PresetListView.h"

#include "Quillmoth/Shell/Editor/PresetListModel.h"
#include "Quillmoth/Shell/Editor/PresetRowDelegate.h"
#include "Quillmoth/Shell/Looks/Lengths.h"
#include "Quillmoth/Shell/Looks/OwnKeys.h"
#include "Quillmoth/Shell/Looks/Palette.h"
#include "Quillmoth/Shell/Looks/ThinScrollBar.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>

namespace quillmoth {

namespace {

// Near the upper or lower edge a drag scrolls by a third of a row each 16 ms.
constexpr int kScrollZone = 20;
constexpr int kScrollMilliseconds = 16;
constexpr int kScrollStep = 10;

} // namespace

PresetListView::PresetListView(PresetListModel& rows, Callbacks callbacks)
    : rows_(rows), callbacks_(std::move(callbacks)) {
    setModel(&rows);
    setItemDelegate(new PresetRowDelegate(*this));
    setFrameShape(NoFrame);
    setUniformItemSizes(true);
    setVerticalScrollMode(ScrollPerPixel);
    setVerticalScrollBar(new ThinScrollBar(ThinScrollBar::Place::window));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Maximum);
    setEditTriggers(NoEditTriggers);
    viewport()->setAutoFillBackground(false);
    viewport()->setAttribute(Qt::WA_Hover);
    setMouseTracking(true);
}

void PresetListView::refresh() {
    isRefreshing_ = true;
    const int scrolled = verticalScrollBar()->value();
    const int formerCount = rows_.rowCount();
    // -1 for none, as of an index that is not valid.
    const int formerRow = currentIndex().row();
    // What the pointer holds may be another row now.
    if (rows_.refresh())
        endDrag();
    const QModelIndex row = rows_.selectedRow();
    if (row.isValid())
        selectionModel()->setCurrentIndex(row, QItemSelectionModel::ClearAndSelect);
    else
        selectionModel()->clear();
    if (rows_.rowCount() != formerCount)
        updateGeometry();
    verticalScrollBar()->setValue(scrolled);
    if (row.isValid() && row.row() != formerRow)
        scrollTo(row);
    isRefreshing_ = false;
}

QSize PresetListView::sizeHint() const {
    return {window::kRowHeight, rows_.rowCount() * kRowPitch};
}

QSize PresetListView::minimumSizeHint() const {
    return {window::kRowHeight, std::min(3, rows_.rowCount()) * kRowPitch};
}

void PresetListView::paintEvent(QPaintEvent* event) {
    QListView::paintEvent(event);
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    const WindowTheme& theme = windowTheme(palette());
    if (isDragging_) {
        const double y = std::max(1.0, topOfRows() + gap_ * double{kRowPitch} - 0.5);
        painter.setPen(QPen(theme.indigoText, 2, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(QPointF(3, y), QPointF(viewport()->width() - 3, y));
    }
}

bool PresetListView::moveByKey(const QKeyEvent& event) {
    const bool isUp = isOwnKey(event, OwnKey::movePresetUp);
    if (isUp || isOwnKey(event, OwnKey::movePresetDown)) {
        const int row = currentIndex().row();
        if (currentIndex().isValid() && (isUp ? row > 0 : row + 1 < rows_.rowCount()))
            callbacks_.move(row, isUp ? row - 1 : row + 2);
        return true;
    }
    return false;
}

void PresetListView::keyPressEvent(QKeyEvent* event) {
    if (isDragging_ && event->key() == Qt::Key_Escape) {
        endDrag();
        return;
    }
    if (moveByKey(*event))
        return;
    if (!currentIndex().isValid())
        return QListView::keyPressEvent(event);
    switch (event->key()) {
    case Qt::Key_Delete:
        if (!event->isAutoRepeat())
            callbacks_.remove();
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        callbacks_.edit();
        break;
    default:
        QListView::keyPressEvent(event);
    }
}

void PresetListView::mousePressEvent(QMouseEvent* event) {
    QListView::mousePressEvent(event);
    const QModelIndex row = indexAt(event->position().toPoint());
    if (event->button() != Qt::LeftButton || !row.isValid())
        return;
    pressedRow_ = row.row();
    pressedAt_ = event->position().toPoint();
}

void PresetListView::mouseMoveEvent(QMouseEvent* event) {
    // The release does not come to a window that was hidden meanwhile.
    if (!event->buttons().testFlag(Qt::LeftButton))
        endDrag();
    if (!pressedRow_)
        return QListView::mouseMoveEvent(event);
    const QPoint position = event->position().toPoint();
    if (!isDragging_ && (position - pressedAt_).manhattanLength() < QApplication::startDragDistance())
        return;
    if (!isDragging_)
        scrollTimer_.start(kScrollMilliseconds, this);
    isDragging_ = true;
    dragTo(position.y());
}

void PresetListView::mouseReleaseEvent(QMouseEvent* event) {
    const std::optional<int> row = draggedRow();
    const int gap = gap_;
    endDrag();
    QListView::mouseReleaseEvent(event);
    if (row)
        callbacks_.move(*row, gap);
}

void PresetListView::timerEvent(QTimerEvent* event) {
    if (event->timerId() != scrollTimer_.timerId())
        return QListView::timerEvent(event);
    const int y = viewport()->mapFromGlobal(QCursor::pos()).y();
    const int step = y < kScrollZone                          ? -kScrollStep
                     : y > viewport()->height() - kScrollZone ? kScrollStep
                                                              : 0;
    const int former = verticalScrollBar()->value();
    verticalScrollBar()->setValue(former + step);
    if (verticalScrollBar()->value() != former)
        dragTo(y);
}

void PresetListView::focusInEvent(QFocusEvent* event) {
    // The base makes the first row the current one where there is none; the keyboard alone chooses nothing
    // here.
    isRefreshing_ = true;
    QListView::focusInEvent(event);
    if (!rows_.selectedRow().isValid())
        selectionModel()->clear();
    isRefreshing_ = false;
}

void PresetListView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QListView::currentChanged(current, previous);
    if (!isRefreshing_ && current.isValid())
        callbacks_.choose(current.row());
}

QItemSelectionModel::SelectionFlags PresetListView::selectionCommand(const QModelIndex& index,
                                                                     const QEvent* event) const {
    // A press beside the rows changes nothing.
    return index.isValid() ? QListView::selectionCommand(index, event) : QItemSelectionModel::NoUpdate;
}

int PresetListView::topOfRows() const {
    return -verticalScrollBar()->value();
}

int PresetListView::gapAt(int y) const {
    return std::clamp(qRound((y - topOfRows()) / double{kRowPitch}), 0, rows_.rowCount());
}

void PresetListView::dragTo(int y) {
    gap_ = gapAt(y);
    viewport()->update();
}

void PresetListView::endDrag() {
    scrollTimer_.stop();
    pressedRow_.reset();
    isDragging_ = false;
    viewport()->update();
}

} // namespace quillmoth
