#include "Platform/Linux/X11/Selection/X11SelectionConnection.h"

#include <algorithm>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace quillmoth::platform {

namespace {

constexpr std::chrono::milliseconds kTimeLimit{100};

} // namespace

X11SelectionConnection::X11SelectionConnection()
    : connection_(xcb_connect(nullptr, nullptr)), atoms_(get()),
      wakeFile_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (!isOpen())
        return;
    root_ = xcb_setup_roots_iterator(xcb_get_setup(get())).data->root;
    window_ = makeWindow();
}

xcb_window_t X11SelectionConnection::makeWindow() {
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    const xcb_window_t window = xcb_generate_id(get());
    xcb_create_window(get(), XCB_COPY_FROM_PARENT, window, root_, -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    return window;
}

X11SelectionConnection::~X11SelectionConnection() {
    if (wakeFile_ >= 0)
        close(wakeFile_);
}

bool X11SelectionConnection::isOpen() const {
    return xcb_connection_has_error(connection_.get()) == 0;
}

xcb_timestamp_t X11SelectionConnection::serverTime() {
    // A property that gets nothing appended is announced all the same, with the time.
    const xcb_atom_t property = atom("QUILLMOTH_TIME");
    xcb_change_property(get(), XCB_PROP_MODE_APPEND, window_, property, XCB_ATOM_INTEGER, 32, 0, nullptr);
    const auto event = await(
        [property](const Event& candidate) {
            const auto& notice = reinterpret_cast<const xcb_property_notify_event_t&>(candidate);
            return (candidate.response_type & 0x7F) == XCB_PROPERTY_NOTIFY && notice.atom == property;
        },
        Clock::now() + kTimeLimit);
    return event ? reinterpret_cast<const xcb_property_notify_event_t&>(*event).time
                 : static_cast<xcb_timestamp_t>(XCB_CURRENT_TIME);
}

X11Reply<X11SelectionConnection::Event>
X11SelectionConnection::await(const std::function<bool(const Event&)>& wanted, Clock::time_point deadline) {
    xcb_flush(get());
    for (;;) {
        while (auto event = owned(xcb_poll_for_event(get()))) {
            if (wanted(*event))
                return event;
            if (handler_)
                handler_(*event);
        }
        bool isWoken = false;
        if (isInterrupted() || !waitForInput(deadline, isWoken))
            return nullptr;
    }
}

bool X11SelectionConnection::handleWaitingEvents() {
    bool hasHandled = false;
    while (const auto event = owned(xcb_poll_for_event(get()))) {
        hasHandled = true;
        if (handler_)
            handler_(*event);
    }
    xcb_flush(get());
    return hasHandled;
}

void X11SelectionConnection::handleEvents(Clock::time_point deadline) {
    const bool hasHandled = handleWaitingEvents();
    bool isWoken = false;
    if (!hasHandled)
        waitForInput(deadline, isWoken);
}

bool X11SelectionConnection::waitForInput(Clock::time_point deadline, bool& isWoken) const {
    int limit = -1;
    if (deadline != Clock::time_point::max()) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0)
            return false;
        limit = static_cast<int>(std::min<std::int64_t>(left, 3'600'000));
    }
    if (!isOpen())
        return false;
    pollfd entries[] = {{xcb_get_file_descriptor(get()), POLLIN, 0}, {wakeFile_, POLLIN, 0}};
    if (poll(entries, 2, limit) <= 0)
        return deadline == Clock::time_point::max();
    std::uint64_t count = 0;
    isWoken = entries[1].revents != 0 && read(wakeFile_, &count, sizeof count) == sizeof count;
    return true;
}

void X11SelectionConnection::wake() const {
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = write(wakeFile_, &one, sizeof one);
}

} // namespace quillmoth::platform
