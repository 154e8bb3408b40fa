#pragma once

#include "Quillmoth/Shell/Looks/Lengths.h"

#include <QBasicTimer>
#include <QListView>

#include <functional>
#include <optional>

namespace quillmoth {

class PresetListModel;

/// The presets of a tab. A name that is typed finds its row. A row is moved with the pointer or with Alt and
/// the arrow keys; Escape and any change of the rows give a drag up. As high as its rows where there is room.
class PresetListView final : public QListView {
public:
    static constexpr int kRowPitch = window::kRowHeight + 1;

    struct Callbacks {
        /// The user has chosen another row.
        std::function<void(int row)> choose;
        /// The row goes before the `gap`th one.
        std::function<void(int row, int gap)> move;
        /// Enter: to the form.
        std::function<void()> edit;
        /// Once for a press of the key, however long it is held.
        std::function<void()> remove;
    };

    PresetListView(PresetListModel& rows, Callbacks callbacks);

    /// Takes rows and selection anew.
    void refresh();

    /// The row that the pointer drags.
    [[nodiscard]] std::optional<int> draggedRow() const { return isDragging_ ? pressedRow_ : std::nullopt; }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    [[nodiscard]] QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                                       const QEvent* event) const override;

private:
    [[nodiscard]] int gapAt(int y) const;
    [[nodiscard]] int topOfRows() const;
    bool moveByKey(const QKeyEvent& event);
    void dragTo(int y);
    void endDrag();

    PresetListModel& rows_;
    Callbacks callbacks_;
    bool isRefreshing_ = false;
    std::optional<int> pressedRow_;
    QPoint pressedAt_;
    bool isDragging_ = false;
    int gap_ = 0;
    QBasicTimer scrollTimer_;
};

} // namespace quillmoth
