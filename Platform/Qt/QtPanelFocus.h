#pragma once

#include "Platform/PanelFocus.h"

#include <QObject>

class QWindow;

namespace quillmoth::platform {

/// The keyboard as the desktop gives it to an ordinary window: another application loses its activation for
/// it. Main thread.
class QtPanelFocus final : public PanelFocus {
public:
    QtPanelFocus();
    ~QtPanelFocus() override;
    QtPanelFocus(const QtPanelFocus&) = delete;
    QtPanelFocus& operator=(const QtPanelFocus&) = delete;

    [[nodiscard]] bool isImmediate() const override { return false; }

    /// Asks for it; the desktop may refuse.
    void acquire(WindowIdentifier window) override;

    /// The desktop gives it back when the window has gone, which it learns here.
    void release() override;

    [[nodiscard]] bool isHeld() const override { return isHeld_; }

    Subscription onTurnedElsewhere(std::function<void(Turn)> subscriber) override {
        return turns_.subscribe(std::move(subscriber));
    }

private:
    void follow(const QWindow* focused);

    WindowIdentifier window_ = 0;
    bool isHeld_ = false;
    /// The toolkit has not learned yet that a window that has gone has lost the keyboard.
    bool isPast_ = false;
    QObject context_;
    Signal<Turn> turns_;
};

} // namespace quillmoth::platform
