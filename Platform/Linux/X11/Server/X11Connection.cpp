#include "Platform/Linux/X11/Server/X11Connection.h"

#include "Platform/Linux/X11/Server/X11Reply.h"
#include "Platform/Linux/X11/Server/XkbProtocol.h"

#include <QAbstractEventDispatcher>
#include <QSocketNotifier>
#include <algorithm>
#include <cstring>
#include <string_view>
#include <xcb/randr.h>
#include <xcb/xinput.h>
#include <xcb/xtest.h>

namespace quillmoth::platform {

Result<std::unique_ptr<X11Connection>> X11Connection::open() {
    std::unique_ptr<X11Connection> connection(new X11Connection);
    if (const auto ready = connection->setUp(); !ready)
        return ready.error();
    connection->listen();
    return connection;
}

bool X11Connection::isBesideWayland() const {
    constexpr std::string_view kExtension = "XWAYLAND";
    const auto extension = owned(xcb_query_extension_reply(
        connection_, xcb_query_extension(connection_, kExtension.size(), kExtension.data()), nullptr));
    if (extension && extension->present)
        return true;
    // Before release 23.1 only the names of its outputs tell.
    const auto* randr = xcb_get_extension_data(connection_, &xcb_randr_id);
    if (randr == nullptr || !randr->present)
        return false;
    const auto resources = owned(xcb_randr_get_screen_resources_current_reply(
        connection_, xcb_randr_get_screen_resources_current(connection_, root_), nullptr));
    if (!resources)
        return false;
    const auto* outputs = xcb_randr_get_screen_resources_current_outputs(resources.get());
    const auto count = xcb_randr_get_screen_resources_current_outputs_length(resources.get());
    return std::any_of(outputs, outputs + count, [this, &resources](xcb_randr_output_t output) {
        const auto info = owned(xcb_randr_get_output_info_reply(
            connection_, xcb_randr_get_output_info(connection_, output, resources->config_timestamp),
            nullptr));
        if (!info)
            return false;
        const auto* name = reinterpret_cast<const char*>(xcb_randr_get_output_info_name(info.get()));
        return std::string_view(name, info->name_len).starts_with("XWAYLAND");
    });
}

bool X11Connection::hasServer() {
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const bool isThere = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return isThere;
}

X11Connection::X11Connection() : connection_(xcb_connect(nullptr, nullptr)), atoms_(connection_) {}

X11Connection::~X11Connection() {
    notifier_.reset();
    xcb_disconnect(connection_);
}

Result<void> X11Connection::setUp() {
    if (xcb_connection_has_error(connection_))
        return Error{"There is no X server to connect to."};
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;

    xcb_prefetch_extension_data(connection_, &xcb_input_id);
    xcb_prefetch_extension_data(connection_, &xcb_xkb_id);
    const auto* input = xcb_get_extension_data(connection_, &xcb_input_id);
    const auto* xkb = xcb_get_extension_data(connection_, &xcb_xkb_id);
    if (!input || !input->present || !xkb || !xkb->present)
        return Error{"The X server lacks the X Input Extension or XKB."};
    inputOpcode_ = input->major_opcode;
    xkbEvent_ = xkb->first_event;

    const auto versionCookie = xcb_input_xi_query_version(connection_, 2, 2);
    const auto xkbCookie = xcb_xkb_use_extension(connection_, 1, 0);
    const auto version = owned(xcb_input_xi_query_version_reply(connection_, versionCookie, nullptr));
    const auto xkbReply = owned(xcb_xkb_use_extension_reply(connection_, xkbCookie, nullptr));
    if (!version || version->major_version < 2 || !xkbReply || !xkbReply->supported)
        return Error{"The X server's X Input Extension or XKB is too old."};
    return {};
}

void X11Connection::listen() {
    notifier_ =
        std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(connection_), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { drain(true); });
    // Waiting for a reply takes events off the socket too; those must not lie until the next one.
    if (auto* dispatcher = QAbstractEventDispatcher::instance())
        QObject::connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, notifier_.get(),
                         [this] { drain(false); });
}

void X11Connection::drain(bool readSocket) {
    if (readSocket && xcb_connection_has_error(connection_)) {
        // The server has gone; a socket at its end would wake us for ever.
        notifier_->setEnabled(false);
        return;
    }
    for (;;) {
        const auto event =
            owned(readSocket ? xcb_poll_for_event(connection_) : xcb_poll_for_queued_event(connection_));
        if (!event)
            break;
        events_.emit(*event);
    }
    xcb_flush(connection_);
}

std::string X11Connection::bytes(xcb_window_t window, const std::string& property) {
    const auto cookie = xcb_get_property(connection_, 0, window, atom(property), XCB_ATOM_ANY, 0, 65536);
    const auto reply = owned(xcb_get_property_reply(connection_, cookie, nullptr));
    if (!reply)
        return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

std::vector<std::uint32_t> X11Connection::numbers(xcb_window_t window, const std::string& property) {
    const auto text = bytes(window, property);
    std::vector<std::uint32_t> values(text.size() / sizeof(std::uint32_t));
    if (!values.empty())
        std::memcpy(values.data(), text.data(), values.size() * sizeof(std::uint32_t));
    return values;
}

void X11Connection::selectEvents(xcb_window_t window, std::uint32_t mask) {
    auto& known = masks_[window];
    known |= mask;
    xcb_change_window_attributes(connection_, window, XCB_CW_EVENT_MASK, &known);
    xcb_flush(connection_);
}

void X11Connection::selectInputEvents(std::uint16_t device, std::uint32_t mask) {
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } request = {{device, 1}, mask};

    xcb_input_xi_select_events(connection_, root_, 1, &request.head);
    xcb_flush(connection_);
}

bool X11Connection::takesKeys() const {
    const auto* test = xcb_get_extension_data(connection_, &xcb_test_id);
    return test != nullptr && test->present;
}

void X11Connection::strike(std::uint8_t type, xcb_keycode_t keycode) {
    if (takesKeys())
        xcb_test_fake_input(connection_, type, keycode, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
}

void X11Connection::synchronize() {
    owned(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr)).reset();
}

} // namespace quillmoth::platform
