#include "Platform/Linux/X11/X11Selection.h"

#include "Foundation/Text.h"
#include "Platform/Linux/X11/X11Reply.h"

#include <memory>
#include <poll.h>
#include <string_view>
#include <xcb/xcb.h>

namespace quillmoth::platform {

namespace {

using Clock = std::chrono::steady_clock;

std::string utf8FromLatin1(std::string_view bytes) {
    std::string text;
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        if (code < 0x80) {
            text += byte;
        } else {
            text += static_cast<char>(0xC0 | (code >> 6));
            text += static_cast<char>(0x80 | (code & 0x3F));
        }
    }
    return text;
}

class Requestor {
public:
    explicit Requestor(std::chrono::milliseconds deadline)
        : connection_(xcb_connect(nullptr, nullptr)), end_(Clock::now() + deadline) {
        if (xcb_connection_has_error(connection_.get()))
            return;
        const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection_.get())).data->root;
        const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        window_ = xcb_generate_id(connection_.get());
        xcb_create_window(connection_.get(), XCB_COPY_FROM_PARENT, window_, root, -1, -1, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
        property_ = atom("QUILLMOTH_SELECTION");
        incremental_ = atom("INCR");
        utf8_ = atom("UTF8_STRING");
    }

    std::optional<std::string> text(xcb_atom_t selection) {
        if (window_ == XCB_WINDOW_NONE)
            return std::nullopt;
        if (auto unicode = content(selection, utf8_))
            return sanitizedUTF8(*unicode);
        if (const auto latin = content(selection, XCB_ATOM_STRING))
            return utf8FromLatin1(*latin);
        return std::nullopt;
    }

private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    struct Piece {
        xcb_atom_t type = XCB_ATOM_NONE;
        std::string bytes;
    };

    xcb_atom_t atom(std::string_view name) {
        const auto cookie =
            xcb_intern_atom(connection_.get(), 0, static_cast<std::uint16_t>(name.size()), name.data());
        const auto reply = owned(xcb_intern_atom_reply(connection_.get(), cookie, nullptr));
        return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
    }

    std::optional<std::string> content(xcb_atom_t selection, xcb_atom_t target) {
        xcb_convert_selection(connection_.get(), window_, selection, target, property_, XCB_CURRENT_TIME);
        const auto answer = await(XCB_SELECTION_NOTIFY);
        if (!answer)
            return std::nullopt;
        const auto& notice = reinterpret_cast<const xcb_selection_notify_event_t&>(*answer);
        if (notice.property == XCB_ATOM_NONE)
            return std::nullopt;
        auto piece = takeProperty();
        if (piece.type != incremental_)
            return std::move(piece.bytes);
        return pieces();
    }

    /// ICCCM 2.7.2: each removal of the property asks for the next piece; an empty one is the end.
    std::optional<std::string> pieces() {
        std::string text;
        while (const auto event = await(XCB_PROPERTY_NOTIFY)) {
            const auto& notice = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
            if (notice.atom != property_ || notice.state != XCB_PROPERTY_NEW_VALUE)
                continue;
            const auto piece = takeProperty();
            if (piece.bytes.empty())
                return text;
            text += piece.bytes;
        }
        return std::nullopt;
    }

    Piece takeProperty() {
        constexpr std::uint32_t kWholeLength = 0x1FFFFFFF;
        const auto cookie =
            xcb_get_property(connection_.get(), 1, window_, property_, XCB_ATOM_ANY, 0, kWholeLength);
        const auto reply = owned(xcb_get_property_reply(connection_.get(), cookie, nullptr));
        if (!reply)
            return {};
        return {reply->type,
                {static_cast<const char*>(xcb_get_property_value(reply.get())),
                 static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))}};
    }

    X11Reply<xcb_generic_event_t> await(int type) {
        xcb_flush(connection_.get());
        for (;;) {
            while (auto event = owned(xcb_poll_for_event(connection_.get()))) {
                if ((event->response_type & 0x7F) == type)
                    return event;
            }
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end_ - Clock::now());
            pollfd entry = {xcb_get_file_descriptor(connection_.get()), POLLIN, 0};
            if (left.count() <= 0 || xcb_connection_has_error(connection_.get()) ||
                poll(&entry, 1, static_cast<int>(left.count())) <= 0)
                return nullptr;
        }
    }

    std::unique_ptr<xcb_connection_t, Disconnect> connection_;
    Clock::time_point end_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    xcb_atom_t property_ = XCB_ATOM_NONE;
    xcb_atom_t incremental_ = XCB_ATOM_NONE;
    xcb_atom_t utf8_ = XCB_ATOM_NONE;
};

} // namespace

std::optional<std::string> selectionText(std::uint32_t selection, std::chrono::milliseconds deadline) {
    return Requestor(deadline).text(selection);
}

} // namespace quillmoth::platform
