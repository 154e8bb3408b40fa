#include "Platform/Linux/X11/X11GrabWatch.h"

#include "Platform/Linux/X11/X11Reply.h"

#include <QSocketNotifier>
#include <cstring>
#include <span>
#include <utility>
#include <xcb/xcbext.h>

namespace quillmoth::platform {

namespace {

/// The category of recorded data that a client sent (Record Extension Protocol, "FromClient").
constexpr std::uint8_t kFromClient = 1;

} // namespace

X11GrabWatch::X11GrabWatch(std::function<void(xcb_keycode_t)> onGrab)
    : onGrab_(std::move(onGrab)), connection_(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(connection_.get()) ||
        !xcb_get_extension_data(connection_.get(), &xcb_record_id)->present)
        return;
    record();
    notifier_ =
        std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(connection_.get()), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { drain(); });
}

X11GrabWatch::~X11GrabWatch() = default;

void X11GrabWatch::record() {
    auto* connection = connection_.get();
    const auto versionCookie = xcb_record_query_version(connection, 1, 13);
    owned(xcb_record_query_version_reply(connection, versionCookie, nullptr)).reset();
    const xcb_record_client_spec_t everybody = XCB_RECORD_CS_ALL_CLIENTS;
    xcb_record_range_t range = {};
    range.core_requests = {XCB_GRAB_KEY, XCB_GRAB_KEY};
    const auto context = xcb_generate_id(connection);
    xcb_record_create_context(connection, context, 0, 1, 1, &everybody, &range);
    sequence_ = xcb_record_enable_context(connection, context).sequence;
    xcb_flush(connection);
}

void X11GrabWatch::drain() {
    void* reply = nullptr;
    xcb_generic_error_t* error = nullptr;
    // One request, any number of replies.
    while (xcb_poll_for_reply(connection_.get(), sequence_, &reply, &error) && reply) {
        const auto recorded = owned(static_cast<xcb_record_enable_context_reply_t*>(reply));
        read(*recorded);
    }
    const auto ownedError = owned(error);
    if (ownedError || xcb_connection_has_error(connection_.get()))
        notifier_->setEnabled(false);
}

void X11GrabWatch::read(const xcb_record_enable_context_reply_t& reply) {
    if (reply.category != kFromClient)
        return;
    std::span data(xcb_record_enable_context_data(&reply),
                   static_cast<std::size_t>(xcb_record_enable_context_data_length(&reply)));
    while (data.size() >= sizeof(xcb_grab_key_request_t)) {
        // The keycode is a single byte: the same in either byte order.
        xcb_grab_key_request_t request = {};
        std::memcpy(&request, data.data(), sizeof request);
        if (request.major_opcode != XCB_GRAB_KEY)
            return;
        onGrab_(request.key);
        data = data.subspan(sizeof request);
    }
}

} // namespace quillmoth::platform
