#pragma once

#include <QAbstractButton>
#include <QMenu>
#include <QPointer>

#include <functional>
#include <memory>
#include <vector>

namespace quillmoth {

/// One line of the menu.
class PanelMenuItem final : public QAbstractButton {
public:
    PanelMenuItem(const QAction& action, QWidget* parent);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    /// The menu has the keys.
    void keyPressEvent(QKeyEvent* event) override;

private:
    QString keys_;
};

/// A context menu inside the panel's own window: one in a window of its own would take the keyboard for
/// itself, and give it to the other application when it closes. It has the focus of the panel while it is
/// open, and goes when something in it is chosen, with Escape, with a press elsewhere and with the panel.
class PanelMenu final : public QWidget {
public:
    /// Opens what `actions` holds with its corner near `place` of the screen, in the window of `owner`, whose
    /// focus comes back afterwards. By the keyboard its first item is marked.
    static void open(QWidget& owner, std::unique_ptr<QMenu> actions, QPoint place, bool byKeyboard);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool isNext) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    PanelMenu(QWidget& window, std::unique_ptr<QMenu> actions);
    void addItems();
    void place(QPoint corner);
    void moveMark(int step);
    void close();

    std::unique_ptr<QMenu> actions_;
    std::vector<PanelMenuItem*> items_;
    std::vector<int> separators_;
    QPointer<QWidget> former_;
    bool closed_ = false;
};

/// The context menu of a text that can be selected: "Copy" of what is selected, and "Select All".
void openSelectionMenu(QWidget& owner, QPoint place, const QString& selected,
                       std::function<void()> selectAll);

} // namespace quillmoth
