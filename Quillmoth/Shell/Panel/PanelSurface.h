#pragma once

#include "Quillmoth/Shell/Panel/PanelContent.h"

#include <optional>

namespace quillmoth {

/// The panel's window itself: its outline, and moving and resizing it. Main thread.
class PanelSurface final : public QWidget {
public:
    /// An ordinary window is moved and resized by the desktop, and takes the keyboard with the activation.
    explicit PanelSurface(std::unique_ptr<PanelContent> content, bool isOrdinaryWindow = false);
    /// A panel that stands on `stage`, a window that does not move, and has its frame there.
    PanelSurface(std::unique_ptr<PanelContent> content, QWidget& stage);

    [[nodiscard]] PanelContent& content() const { return *content_; }

    /// Whether the keyboard is here; without it the outline and the content are quieter.
    void setActive(bool active);

    [[nodiscard]] bool isActive() const { return active_; }

    /// The desktop moves or resizes the window, and has the keyboard meanwhile.
    [[nodiscard]] bool isBeingMoved() const { return isBeingMoved_; }

    /// Whether the desktop blends windows. Without it the corners are cut out.
    void setCompositing(bool compositing);

    /// What the user chose. The window is larger while its content needs more, and is shown smaller or
    /// elsewhere while it would not fit on a screen.
    void setFrame(const QRect& frame);

    [[nodiscard]] QRect frame() const { return chosen_; }

    /// The user has had the desktop move or resize the window so.
    void noteFrame(const QRect& frame) { chosen_ = frame; }

    /// Where on the screens there are it is to be.
    [[nodiscard]] QRect place() const;

    /// To be called when the screens have changed.
    void followScreens();

    /// What can be shown on. Without it, anywhere.
    std::function<QList<QRect>()> screens;

    /// The pointer was pressed anywhere in the panel.
    std::function<void()> onPressed;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Drag {
        QPoint from;
        QRect frame;
        /// In the window.
        QPoint grip;
        Qt::Edges edges;
    };

    void fill();
    [[nodiscard]] QSize leastSize() const;
    void beginDrag(const QMouseEvent& press, Qt::Edges edges);
    void endDrag();
    void drag(QPoint globalPosition);
    bool handleKey(const QKeyEvent& event);
    void openMenu();
    void showEdgeCursor(Qt::Edges edges);
    void applyMask();
    void moveTo(const QRect& place);
    void applySize();
    void paintRim(QPainter& painter) const;

    PanelContent* content_;
    bool isOrdinaryWindow_;
    bool isBeingMoved_ = false;
    QRect chosen_;
    std::optional<Drag> drag_;
    Qt::Edges pointedEdges_;
    bool active_ = true;
    bool compositing_ = true;
};

} // namespace quillmoth
