#pragma once

#include "Foundation/Result.h"
#include "Foundation/Subscription.h"
#include "Platform/Linux/X11/Server/X11Atoms.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>
#include <xcb/xcb.h>

class QSocketNotifier;

namespace quillmoth::platform {

/// A connection of our own to the X server, apart from the toolkit's. Main thread; needs a running Qt event
/// dispatcher for its events. Costs nothing while the server is silent.
class X11Connection {
public:
    /// To the server of the variable DISPLAY. Fails where there is none or where it lacks the X Input
    /// Extension 2.2 or XKB.
    [[nodiscard]] static Result<std::unique_ptr<X11Connection>> open();

    /// Whether there is a server to connect to. Needs no application object.
    [[nodiscard]] static bool hasServer();

    /// Whether the server is the one beside a Wayland session: it knows nothing of the windows of others, and
    /// keys go where the session likes.
    [[nodiscard]] bool isBesideWayland() const;

    ~X11Connection();
    X11Connection(const X11Connection&) = delete;
    X11Connection& operator=(const X11Connection&) = delete;

    [[nodiscard]] xcb_connection_t* get() const { return connection_; }

    [[nodiscard]] xcb_window_t root() const { return root_; }

    /// Major opcode of the X Input Extension.
    [[nodiscard]] std::uint8_t inputOpcode() const { return inputOpcode_; }

    /// First event code of XKB.
    [[nodiscard]] std::uint8_t xkbEvent() const { return xkbEvent_; }

    [[nodiscard]] xcb_atom_t atom(const std::string& name) { return atoms_.atom(name); }

    [[nodiscard]] std::vector<std::uint32_t> numbers(xcb_window_t window, const std::string& property);
    [[nodiscard]] std::string bytes(xcb_window_t window, const std::string& property);

    /// Adds to what this connection is told about the window.
    void selectEvents(xcb_window_t window, std::uint32_t mask);
    /// Sets which events of the X Input Extension come for the root window, as a set of 1 << event type.
    void selectInputEvents(std::uint16_t device, std::uint32_t mask);

    Subscription onEvent(std::function<void(const xcb_generic_event_t&)> subscriber) {
        return events_.subscribe(std::move(subscriber));
    }

    /// Whether the server takes keys from programs: whether it has the XTEST extension.
    [[nodiscard]] bool takesKeys() const;
    /// Presses or releases a key as if on the keyboard (XCB_KEY_PRESS, XCB_KEY_RELEASE). Nothing where the
    /// server takes none: a request that it does not know would end the connection.
    void strike(std::uint8_t type, xcb_keycode_t keycode);

    /// Returns after the server has handled all requests so far.
    void synchronize();

    /// Tells the subscribers of the events that have been read already.
    void tellQueuedEvents() { drain(false); }

private:
    X11Connection();
    [[nodiscard]] Result<void> setUp();
    void listen();
    void drain(bool readSocket);

    xcb_connection_t* connection_;
    X11Atoms atoms_;
    xcb_window_t root_ = 0;
    std::uint8_t inputOpcode_ = 0;
    std::uint8_t xkbEvent_ = 0;
    std::map<xcb_window_t, std::uint32_t> masks_;
    Signal<const xcb_generic_event_t&> events_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace quillmoth::platform
