#pragma once

#include "Platform/Linux/X11/Server/MainLoopWatchdog.h"
#include "Platform/Linux/X11/Server/X11Connection.h"

#include <QTimer>
#include <functional>
#include <vector>
#include <xcb/xinput.h>

namespace quillmoth::platform {

/// A key event as a window receives it.
struct X11KeyStroke {
    xcb_keycode_t keycode = 0;
    /// The modifiers before the event, and the layout group, as core events put them into one word.
    std::uint32_t modifiers = 0;
    xcb_timestamp_t time = 0;
    bool isPress = false;
};

/// The same of an event of the X Input Extension.
[[nodiscard]] X11KeyStroke strokeOf(const xcb_input_key_press_event_t& key, bool isPress);

/// Has the server send all keys to this connection, as events of the X Input Extension for the root window.
/// Does nothing while another program holds the keyboard.
void grabKeyboard(X11Connection& connection);
/// Gives the keyboard back. The request is not flushed.
void ungrabKeyboard(X11Connection& connection);

/// Keeps the keyboard from the press of a hot key until the panel has come up: what the user types then would
/// replace the selection in the other program. The keys are kept in their order, to be handed on.
///
/// Until a key is struck the other programs notice nothing: the keyboard's focus is theirs, and with it the
/// selection that is being read.
class X11KeyHold {
public:
    struct Callbacks {
        /// The connection has lost its passive grabs and should make them anew. The hold ends only after the
        /// server has handled what this sends.
        std::function<void()> lostGrabs;
        /// The keyboard was given up because no window took it in time.
        std::function<void()> gaveUp;
    };

    /// `connection` outlives the object, and tells its subscribers of the keys.
    X11KeyHold(X11Connection& connection, Callbacks callbacks);

    /// Holds the keyboard until `key` is released, and then for half a second at most.
    void start(xcb_keycode_t key);
    /// To be called when that key is released.
    void keyReleased();
    /// Takes the keyboard by a grab that also wins against another program's passive grabs of single keys.
    /// The program in front sees that it loses the focus then.
    void insist();

    [[nodiscard]] bool isActive() const { return isActive_; }

    /// Whether it holds a grab of all keys. Servers up to 21.1 crash when one key is taken out of it.
    [[nodiscard]] bool hasAllKeys() const { return hasAllKeys_; }

    /// Whether `insist` has been called for this hold.
    [[nodiscard]] bool isForced() const { return isForced_; }

    void add(const X11KeyStroke& stroke) { strokes_.push_back(stroke); }

    /// Gives the keyboard up, and with it all passive grabs of the connection. The keys held so far stay
    /// here. Returns after the server has done so and the connection's subscribers have had all events up to
    /// then.
    void letGo();

    /// Moves the held keys out.
    [[nodiscard]] std::vector<X11KeyStroke> take();

private:
    void ungrab();
    void giveUp();

    X11Connection& connection_;
    Callbacks callbacks_;
    bool isActive_ = false;
    bool hasAllKeys_ = false;
    bool isForced_ = false;
    xcb_keycode_t key_ = 0;
    std::vector<X11KeyStroke> strokes_;
    /// Ends the hold where nobody takes the keyboard.
    QTimer guardTimer_;
    /// While the main loop hangs, no timer of it gives the keys back.
    MainLoopWatchdog watchdog_;
};

} // namespace quillmoth::platform
