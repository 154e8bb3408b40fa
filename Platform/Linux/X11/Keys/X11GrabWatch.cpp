#include "Platform/Linux/X11/Keys/X11GrabWatch.h"

#include "Platform/Linux/X11/Server/X11Reply.h"

#include <QSocketNotifier>
#include <cstddef>
#include <utility>
#include <xcb/xcbext.h>
#include <xcb/xinput.h>

namespace quillmoth::platform {

namespace {

/// The category of recorded data that a client sent (Record Extension Protocol, "FromClient").
constexpr std::uint8_t kFromClient = 1;

/// The first pair of master devices has these numbers on every server.
constexpr std::uint16_t kCorePointer = 2;

constexpr std::size_t kSmallestRequest = 4;

std::uint16_t shortAt(std::span<const std::uint8_t> bytes, std::size_t offset, bool swapped) {
    const std::size_t low = swapped ? offset + 1 : offset;
    const std::size_t high = swapped ? offset : offset + 1;
    return static_cast<std::uint16_t>(bytes[low] | bytes[high] << 8);
}

} // namespace

X11GrabWatch::X11GrabWatch(Callbacks callbacks)
    : callbacks_(std::move(callbacks)), connection_(xcb_connect(nullptr, nullptr)) {
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
    xcb_record_range_t ranges[2] = {};
    // With the release of the keyboard, which lies between the two.
    ranges[0].core_requests = {XCB_GRAB_KEYBOARD, XCB_GRAB_KEY};
    const auto* input = xcb_get_extension_data(connection, &xcb_input_id);
    inputOpcode_ = input->present ? input->major_opcode : 0;
    ranges[1].ext_requests = {{inputOpcode_, inputOpcode_},
                              {XCB_INPUT_XI_GRAB_DEVICE, XCB_INPUT_XI_GRAB_DEVICE}};
    const auto context = xcb_generate_id(connection);
    xcb_record_create_context(connection, context, 0, 1, inputOpcode_ ? 2 : 1, &everybody, ranges);
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
    const bool swapped = reply.client_swapped != 0;
    while (data.size() >= kSmallestRequest) {
        const std::size_t length =
            std::size_t{4} * shortAt(data, offsetof(xcb_grab_key_request_t, length), swapped);
        if (length < kSmallestRequest || length > data.size())
            return;
        const auto request = data.first(length);
        if (request[0] == XCB_GRAB_KEY && length >= sizeof(xcb_grab_key_request_t))
            callbacks_.grabbedKey(request[offsetof(xcb_grab_key_request_t, key)]);
        else if (asksForKeyboard(request, swapped))
            callbacks_.askedForKeyboard(reply.xid_base);
        data = data.subspan(length);
    }
}

bool X11GrabWatch::asksForKeyboard(std::span<const std::uint8_t> request, bool swapped) const {
    constexpr std::size_t kDevice = offsetof(xcb_input_xi_grab_device_request_t, deviceid);
    if (request[0] == XCB_GRAB_KEYBOARD)
        return true;
    return inputOpcode_ != 0 && request[0] == inputOpcode_ && request.size() >= kDevice + 2 &&
           shortAt(request, kDevice, swapped) != kCorePointer;
}

} // namespace quillmoth::platform
