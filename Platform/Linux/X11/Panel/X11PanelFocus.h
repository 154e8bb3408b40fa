#pragma once

#include "Platform/Linux/X11/Keys/X11HotKeyCenter.h"
#include "Platform/Linux/X11/Keys/X11HotKeyProbe.h"
#include "Platform/Linux/X11/Panel/SessionLockWatch.h"
#include "Platform/Linux/X11/Panel/X11KeyDrain.h"
#include "Platform/Linux/X11/Panel/X11TurnWatch.h"
#include "Platform/PanelFocus.h"

#include <QAbstractNativeEventFilter>
#include <QTimer>
#include <memory>
#include <optional>

namespace quillmoth::platform {

/// The keyboard for a window by a grab on the toolkit's connection: the active window, the input focus and
/// the highlighted selection stay with the other application. Where another client holds a grab for longer
/// than half a second, the input focus is moved instead, and given back.
///
/// A program that asks for the whole keyboard gets it, such as a locker of the screen or a dialog for a
/// password. That is told as a turn to another window, though the window manager may not know its window.
///
/// The keyboard has been given up when the subscribers are called; a click into the window takes it again. A
/// combination that belongs to the window manager is then struck again, so that it takes effect. A key that
/// is still held when the window gives the keyboard back does not reach the other application, nor do its
/// repeats.
///
/// Where the main loop hangs, the keyboard goes back to the other application after two seconds, and the loop
/// tells of it as of another window's activation when it runs again. A process that is stopped as a whole
/// keeps it.
class X11PanelFocus : public PanelFocus, private QAbstractNativeEventFilter {
public:
    /// Needs a Qt application on X11. `connection` is for watching, and `hotKeys` is offered each key first;
    /// both outlive the object.
    X11PanelFocus(X11Connection& connection, X11HotKeyCenter& hotKeys);
    ~X11PanelFocus() override;

    void prepare() override;

    void acquire(WindowIdentifier window) override;
    void release() override;

    [[nodiscard]] bool isHeld() const override { return means_ != Means::none; }

    Subscription onTurnedElsewhere(std::function<void(Turn)> subscriber) override {
        return turned_.subscribe(std::move(subscriber));
    }

    /// Runs `work` while no grab of ours keeps keys from other programs; afterwards the grab is back.
    void withoutGrab(const std::function<void()>& work);

    /// `freeToolkit` ends the toolkit's own grabs. It is called before a window gets the keyboard: both kinds
    /// use one connection, so a toolkit's grab that ended later would end this one too.
    void setFreeToolkit(std::function<void()> freeToolkit) { freeToolkit_ = std::move(freeToolkit); }

    /// How long the keyboard is held without a key; one minute. Tests shorten it.
    void setIdleTime(std::chrono::milliseconds time) { idleTimer_.setInterval(time); }

    /// How long the main loop may hang with the keyboard held; two seconds. Tests shorten it.
    void setHangLimit(std::chrono::milliseconds limit) { watchdog_.setLimit(limit); }

private:
    enum class Means { none, grab, inputFocus };

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    void handleToolkitPress(const xcb_generic_event_t& event);
    void handleFocusOut(const xcb_focus_out_event_t& event);
    void handleOwnPress(xcb_timestamp_t time);
    void handlePressOutside(xcb_timestamp_t time);
    void handleForeignGrab(std::uint32_t client);
    bool handleKey(const X11KeyStroke& stroke);
    [[nodiscard]] bool belongsToDesktop(const X11KeyStroke& stroke) const;
    void handOnHeldKeys();
    void tryToGrab();
    [[nodiscard]] bool grab();
    void moveInputFocus();
    void giveUp();
    void giveKeyboardBack();
    void turn(Turn kind);
    void strikeAgain(const X11KeyStroke& stroke);

    X11Connection& connection_;
    X11HotKeyCenter& hotKeys_;
    X11HotKeyProbe probe_;
    xcb_connection_t* toolkit_;
    std::function<void()> freeToolkit_ = [] {};
    X11TurnWatch watch_;
    SessionLockWatch lockWatch_;
    X11KeyDrain drain_;
    /// The key pressed last in the window.
    xcb_keycode_t lastKey_ = 0;
    xcb_window_t window_ = 0;
    Means means_ = Means::none;
    xcb_window_t formerFocus_ = 0;
    int attempts_ = 0;
    /// Of the last press of the pointer in the window, as the toolkit tells it.
    xcb_timestamp_t ownPressTime_ = 0;
    /// Of one that seems to have been elsewhere.
    std::optional<xcb_timestamp_t> outsidePressTime_;
    QTimer pressTimer_;
    QTimer retryTimer_;
    QTimer idleTimer_;
    MainLoopWatchdog watchdog_;
    Signal<Turn> turned_;
    Subscription foreignGrabs_;
};

} // namespace quillmoth::platform
