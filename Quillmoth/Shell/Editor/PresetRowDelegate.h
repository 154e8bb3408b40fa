#pragma once

#include <QStyledItemDelegate>

namespace quillmoth {

class PresetListView;

/// Paints a row of the list: the emoji directly followed by the name.
class PresetRowDelegate final : public QStyledItemDelegate {
public:
    /// Belongs to `view`.
    explicit PresetRowDelegate(PresetListView& view);

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

private:
    void paintFill(QPainter& painter, const QStyleOptionViewItem& option, const QRectF& row) const;

    PresetListView& view_;
};

} // namespace quillmoth
