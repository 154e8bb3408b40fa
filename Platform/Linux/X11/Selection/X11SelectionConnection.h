#pragma once

#include "Platform/Linux/X11/Server/X11Atoms.h"
#include "Platform/Linux/X11/Server/X11Reply.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <xcb/xcb.h>

namespace quillmoth::platform {

/// A connection to the X server with an unseen window, for asking and answering about selections without an
/// event loop. One thread at a time; only `wake` may be called from any other.
class X11SelectionConnection {
public:
    using Clock = std::chrono::steady_clock;
    using Event = xcb_generic_event_t;
    using Handler = std::function<void(const Event&)>;

    X11SelectionConnection();
    ~X11SelectionConnection();
    X11SelectionConnection(const X11SelectionConnection&) = delete;
    X11SelectionConnection& operator=(const X11SelectionConnection&) = delete;

    /// False where there is no X server, or no more.
    [[nodiscard]] bool isOpen() const;

    [[nodiscard]] xcb_connection_t* get() const { return connection_.get(); }

    [[nodiscard]] xcb_window_t window() const { return window_; }

    [[nodiscard]] xcb_window_t root() const { return root_; }

    /// Another window like it, for as long as the connection lives.
    [[nodiscard]] xcb_window_t makeWindow();

    [[nodiscard]] xcb_atom_t atom(const std::string& name) { return atoms_.atom(name); }

    [[nodiscard]] const std::string& atomName(xcb_atom_t atom) { return atoms_.name(atom); }

    /// The server's clock now, which the protocol wants in place of "current".
    [[nodiscard]] xcb_timestamp_t serverTime();

    /// Gets every event that nobody waits for.
    void setHandler(Handler handler) { handler_ = std::move(handler); }

    /// Waits for an event that is `wanted`. Null at the deadline, when `isInterrupted` says so after a call
    /// of `wake`, or when the server has gone.
    X11Reply<Event> await(const std::function<bool(const Event&)>& wanted, Clock::time_point deadline);

    /// Handles the events that have come by now.
    bool handleWaitingEvents();

    /// Handles the events that are there; where there are none, waits for some, for the deadline or for a
    /// call of `wake`.
    void handleEvents(Clock::time_point deadline);

    /// Ends a `handleEvents`, and lets an `await` ask whether it is interrupted.
    void wake() const;

    std::function<bool()> isInterrupted = [] { return false; };

private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    /// False at the deadline or where the server has gone.
    bool waitForInput(Clock::time_point deadline, bool& isWoken) const;

    std::unique_ptr<xcb_connection_t, Disconnect> connection_;
    X11Atoms atoms_;
    xcb_window_t root_ = XCB_WINDOW_NONE;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    Handler handler_;
    int wakeFile_ = -1;
};

} // namespace quillmoth::platform
