#pragma once

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

/// Sends all keys to this connection, as events of the X Input Extension for the root window. Where another
/// program has the keyboard it stays there, and nobody is told.
void grabKeyboard(X11Connection& connection);
/// Ends that; the request is not flushed.
void ungrabKeyboard(X11Connection& connection);

/// Keeps the keyboard from the press of a hot key until the panel has come up: what the user types then would
/// replace the selection in the other program. The keys are kept in their order, to be handed on.
///
/// Until a key is struck the other programs notice nothing: the keyboard's focus is theirs, and with it the
/// selection that is being read.
class X11KeyHold {
public:
    struct Callbacks {
        /// The passive grabs of the connection are gone. What it asks for has been done when the hold ends.
        std::function<void()> lostGrabs;
        /// It has let the keyboard go because nobody took it in time.
        std::function<void()> gaveUp;
    };

    /// `connection` outlives the object, and tells its subscribers of the keys.
    X11KeyHold(X11Connection& connection, Callbacks callbacks);

    /// Keeps the keyboard as long as the key is down, and for half a second more at most.
    void start(xcb_keycode_t key);
    /// The key is up.
    void keyReleased();
    /// From now on also where another program holds keys of its own by the same means; but then the other
    /// programs see that they lose the keyboard.
    void insist();

    [[nodiscard]] bool isActive() const { return isActive_; }

    /// Whether it holds a grab of all keys. Servers up to 21.1 crash when one key is taken out of it.
    [[nodiscard]] bool hasAllKeys() const { return hasAllKeys_; }

    /// Whether it had to insist.
    [[nodiscard]] bool isForced() const { return isForced_; }

    void add(const X11KeyStroke& stroke) { strokes_.push_back(stroke); }

    /// Gives the keyboard up, and with it all passive grabs of the connection; what has been kept stays.
    /// Returns after the server has done it, and after all events up to then have been told to the
    /// connection's subscribers.
    void letGo();

    /// What has been kept, and forgets it.
    [[nodiscard]] std::vector<X11KeyStroke> take();

private:
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
};

} // namespace quillmoth::platform
