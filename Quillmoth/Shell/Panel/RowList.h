#pragma once

#include "Quillmoth/Assistant/FloatingViewController.h"

#include <QString>
#include <QWidget>

#include <optional>

namespace quillmoth {

/// A list of equally high rows, each a pictograph and a name. One widget, which asks for and paints only the
/// rows that are seen, so its length costs nothing.
class RowList : public QWidget {
public:
    using Mark = FloatingViewController::RowMark;

    struct Row {
        QString pictograph;
        QString name;

        /// What a screen reader says.
        [[nodiscard]] QString spoken() const { return name; }
    };

    explicit RowList(QWidget* parent);

    [[nodiscard]] virtual int rowCount() const = 0;
    [[nodiscard]] virtual Row row(int position) const = 0;
    [[nodiscard]] virtual Mark mark(int position) const = 0;
    /// The position of the selected row, -1 where it is not in the list.
    [[nodiscard]] virtual int selectedPosition() const = 0;
    virtual void clicked(int position) = 0;
    virtual void doubleClicked(int position) = 0;
    /// The pointer is on a row: at each of its moves, and when another row has come beneath it.
    virtual void entered(int position) = 0;

    void setFontSize(double pixelSize);

    /// Paints again, and tells a screen reader where the selection has moved.
    void refresh();
    /// To be called when the rows, or the list itself, may have moved beneath the pointer.
    void followPointer();

    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QRect rowRect(int position) const;
    /// The row at a height, -1 between rows and outside of them.
    [[nodiscard]] int rowAt(int y) const;

    /// How many rows the last paint has drawn.
    [[nodiscard]] int paintedRows() const { return paintedRows_; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    [[nodiscard]] int rowHeight() const;
    [[nodiscard]] int pitch() const;
    void paintRow(QPainter& painter, int position) const;

    double fontSize_ = 16;
    int paintedRows_ = 0;
    /// Where the pointer has last moved over the list, on the screen.
    std::optional<QPoint> pointer_;
    int spokenRow_ = -1;
};

} // namespace quillmoth
