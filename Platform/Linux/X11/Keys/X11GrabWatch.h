#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <xcb/record.h>
#include <xcb/xcb.h>

class QSocketNotifier;

namespace quillmoth::platform {

/// Tells each time that some program grabs keys the core way (GrabKey requests, by the RECORD
/// extension 1.13): who grabs last comes first. And each time that one asks for the whole keyboard
/// (GrabKeyboard, or XIGrabDevice of a keyboard), which the server refuses while another has it. Nothing else
/// is recorded. Main thread; silent where the server has no RECORD.
class X11GrabWatch {
public:
    struct Callbacks {
        /// With the keycode, 0 for a grab of all keys; the grab itself may still be about to happen, but
        /// comes before any request made then.
        std::function<void(xcb_keycode_t)> grabbedKey;
        /// With the base of the resource numbers of who asked.
        std::function<void(std::uint32_t)> askedForKeyboard;
    };

    explicit X11GrabWatch(Callbacks callbacks);
    ~X11GrabWatch();
    X11GrabWatch(const X11GrabWatch&) = delete;
    X11GrabWatch& operator=(const X11GrabWatch&) = delete;

private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    void record();
    void drain();
    void read(const xcb_record_enable_context_reply_t& reply);
    [[nodiscard]] bool asksForKeyboard(std::span<const std::uint8_t> request, bool swapped) const;

    Callbacks callbacks_;
    std::unique_ptr<xcb_connection_t, Disconnect> connection_;
    std::uint8_t inputOpcode_ = 0;
    unsigned int sequence_ = 0;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace quillmoth::platform
