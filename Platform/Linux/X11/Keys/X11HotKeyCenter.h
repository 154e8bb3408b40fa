#pragma once

#include "Platform/HotKeyCenter.h"
#include "Platform/Linux/X11/Keys/X11GrabWatch.h"
#include "Platform/Linux/X11/Keys/X11KeyHold.h"
#include "Platform/Linux/X11/Keys/X11Modifiers.h"
#include "Platform/Linux/X11/Server/X11Connection.h"

#include <QTimer>
#include <map>
#include <memory>
#include <optional>

namespace quillmoth::platform {

/// Hot keys as passive grabs of the X Input Extension on a connection of their own. They win against the
/// window manager's by being the last: they are taken again whenever somebody grabs the same key. No
/// event comes for the repeats of a held key.
class X11HotKeyCenter : public HotKeyCenter {
public:
    explicit X11HotKeyCenter(std::unique_ptr<X11Connection> connection);
    ~X11HotKeyCenter() override;

    bool hasEventTarget() const override { return true; }

    OSStatus registerEventHotKey(std::uint32_t keyCode, std::uint32_t carbonModifiers, EventHotKeyID id,
                                 Handle& handle) override;
    OSStatus unregisterEventHotKey(Handle handle) override;
    OSStatus installEventHandler(Handler handler) override;

    /// Empty: a combination that a window manager has grabbed can be taken here all the same.
    std::vector<SymbolicHotKey> copySymbolicHotKeys() override { return {}; }

    /// While a window of this program has grabbed the keyboard nothing arrives here; so that window offers
    /// what it receives. True where the event belongs to a hot key and is not for the window.
    bool offer(const X11KeyStroke& stroke);

    /// Holds back the keys that are typed from now on, until letKeysGo. The press of a hot key does so too.
    void holdKeys();

    [[nodiscard]] bool holdsKeys() const { return hold_.isActive(); }

    /// Whether the keys are held by a grab that no window of this program can take over.
    [[nodiscard]] bool holdsKeysByForce() const { return hold_.isForced(); }

    void letKeysGo();

    /// What was typed while the keyboard was held. Nothing more comes once it has been let go.
    [[nodiscard]] std::vector<X11KeyStroke> takeHeldKeys() { return hold_.take(); }

    /// Called when a program asks for the whole keyboard, this one included, with the base of its resource
    /// numbers.
    Subscription onKeyboardAskedFor(std::function<void(std::uint32_t)> subscriber) {
        return keyboardAskedFor_.subscribe(std::move(subscriber));
    }

    /// The connection that holds hot keys and kept keys.
    [[nodiscard]] const X11Connection& connection() const { return *connection_; }

private:
    struct Registration {
        EventHotKeyID identifier;
        xcb_keycode_t keycode = 0;
        std::uint32_t modifiers = 0;
    };

    [[nodiscard]] const Registration* find(xcb_keycode_t keycode, std::uint32_t modifiers) const;
    [[nodiscard]] std::array<std::uint32_t, 4> variants(const Registration& registration) const;
    void handle(const xcb_generic_event_t& event);
    void handleInputEvent(const xcb_ge_generic_event_t& event);
    void handleKey(const X11KeyStroke& stroke);
    void offerAgain(const X11KeyStroke& stroke);
    void press(const Registration& registration);
    void release();
    void handleHeldHotKeys();
    void send(std::uint32_t kind, EventHotKeyID identifier);
    void handleGrabOf(xcb_keycode_t keycode);
    void startGrabbingAgain();
    void grabInSteps();
    void grabAllAgain();
    void grabAgain(const Registration& registration);

    std::unique_ptr<X11Connection> connection_;
    X11KeyHold hold_;
    X11Modifiers modifiers_;
    std::map<Handle, Registration> registrations_;
    Handle lastHandle_ = 0;
    Handler handler_;
    /// The combination that is down now.
    std::optional<Registration> pressed_;
    /// Runs out after an offered release that may be half of a repeat.
    QTimer releaseTimer_;
    xcb_timestamp_t releaseTime_ = 0;
    QTimer grabTimer_;
    std::size_t grabStep_ = 0;
    Signal<std::uint32_t> keyboardAskedFor_;
    X11GrabWatch grabWatch_;
    Subscription events_;
};

} // namespace quillmoth::platform
