#pragma once

#include "Quillmoth/Shell/Panel/PanelContent.h"

#include <optional>

namespace quillmoth {

/// The panel's window itself: its outline, and moving and resizing it. Main thread.
class PanelSurface final : public QWidget {
public:
    /// An ordinary window is moved and resized by the desktop, and takes the keyboard with the activation.
    explicit PanelSurface(std::unique_ptr<PanelContent> content, bool isOrdinaryWindow = false);

    [[nodiscard]] PanelContent& content() const { return *content_; }

    /// Whether the keyboard is here; without it the outline and the content are quieter.
    void setActive(bool active);

    [[nodiscard]] bool isActive() const { return active_; }

    /// Whether the desktop blends windows. Without it the corners are cut out.
    void setCompositing(bool compositing);

    /// The size that the user chose. The window is larger while its content needs more.
    void setFrame(const QRect& frame);
    [[nodiscard]] QRect frame() const;

    /// The pointer was pressed anywhere in the panel.
    std::function<void()> onPressed;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Drag {
        QPoint from;
        QRect frame;
        Qt::Edges edges;
    };

    [[nodiscard]] QSize leastSize() const;
    void beginDrag(QPoint globalPosition, Qt::Edges edges);
    void drag(QPoint globalPosition);
    bool handleKey(const QKeyEvent& event);
    void openMenu();
    void showEdgeCursor(Qt::Edges edges);
    void applyMask();
    void applySize();
    void paintRim(QPainter& painter) const;

    PanelContent* content_;
    bool isOrdinaryWindow_;
    QSize chosenSize_;
    std::optional<Drag> drag_;
    Qt::Edges pointedEdges_;
    bool active_ = true;
    bool compositing_ = true;
};

} // namespace quillmoth
