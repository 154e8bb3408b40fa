#include "Quillmoth/Shell/Editor/PresetRowDelegate.h"

#include "Quillmoth/Shell/Editor/PresetListModel.h"
#include "Quillmoth/Shell/Editor/PresetListView.h"
#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Looks/Lengths.h"
#include "Quillmoth/Shell/Looks/Palette.h"
#include "Quillmoth/Shell/Looks/Pictograph.h"

#include <QPainter>

namespace quillmoth {

namespace {

constexpr int kPresetInset = 10;
constexpr double kPresetRadius = 6;
// More than a row shows; measuring a longer text would only take time.
constexpr int kLongestDrawn = 600;
constexpr double kDraggedOpacity = 0.42;

/// How wide the drawn text is.
double drawElided(QPainter& painter, const QRectF& place, const QFont& font, const QString& text) {
    const QFontMetricsF metrics(font);
    const QString line =
        metrics.elidedText(text.left(kLongestDrawn).simplified(), Qt::ElideRight, place.width());
    painter.setFont(font);
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextDontClip, line);
    return metrics.horizontalAdvance(line);
}

void drawLabel(QPainter& painter, const QRectF& place, const QFont& font, const QModelIndex& index) {
    const QString emoji = index.data(PresetListModel::kEmojiRole).toString();
    const QString name = index.data(PresetListModel::kNameRole).toString();
    const double taken = startsWithPictograph(emoji) ? drawPictograph(painter, place, Qt::AlignLeft,
                                                                      emojiFont(font.pixelSize()), emoji)
                                                     : drawElided(painter, place, font, emoji);
    drawElided(painter, place.adjusted(taken, 0, 0, 0), font, name);
}

} // namespace

PresetRowDelegate::PresetRowDelegate(PresetListView& view) : QStyledItemDelegate(&view), view_(view) {}

QSize PresetRowDelegate::sizeHint(const QStyleOptionViewItem& /*option*/,
                                  const QModelIndex& /*index*/) const {
    return {window::kRowHeight, PresetListView::kRowPitch};
}

void PresetRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (view_.draggedRow() == index.row())
        painter->setOpacity(kDraggedOpacity);
    const QRectF row(option.rect.x(), option.rect.y(), option.rect.width(), window::kRowHeight);
    paintFill(*painter, option, row);
    painter->setPen(option.palette.color(QPalette::WindowText));
    drawLabel(*painter, row.adjusted(kPresetInset, 0, -kPresetInset, 0), view_.font(), index);
    painter->restore();
}

void PresetRowDelegate::paintFill(QPainter& painter, const QStyleOptionViewItem& option,
                                  const QRectF& row) const {
    const WindowTheme& theme = windowTheme(option.palette);
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    if (!isSelected && !option.state.testFlag(QStyle::State_MouseOver))
        return;
    painter.setPen(Qt::NoPen);
    painter.setBrush(isSelected ? theme.rowSelected : theme.rowHovered);
    painter.drawRoundedRect(row, kPresetRadius, kPresetRadius);
    if (!isSelected || !view_.hasFocus())
        return;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(theme.ring);
    painter.drawRoundedRect(row.adjusted(0.5, 0.5, -0.5, -0.5), kPresetRadius, kPresetRadius);
}

} // namespace quillmoth
