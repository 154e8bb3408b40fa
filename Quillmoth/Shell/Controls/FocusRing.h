#pragma once

#include <QPointer>
#include <QWidget>

#include <vector>

namespace quillmoth {

/// The ring around the control that has the focus, three pixels wide and outside of it. Takes no clicks.
class FocusRing final : public QWidget {
public:
    explicit FocusRing(QWidget* window);

    /// Null takes the ring away.
    void surround(QWidget* control);

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void place();

    QWidget* window_;
    QPointer<QWidget> control_;
    // The control and what it lies in, up to what scrolls with it.
    std::vector<QPointer<QWidget>> watched_;
};

} // namespace quillmoth
