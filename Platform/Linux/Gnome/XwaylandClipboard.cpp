#include "Platform/Linux/Gnome/XwaylandClipboard.h"

#include "Platform/Linux/X11/Selection/X11Selection.h"
#include "Platform/Linux/X11/Server/X11Reply.h"
#include "Platform/Linux/X11/Server/X11Windows.h"

#include <utility>
#include <xcb/xfixes.h>

namespace quillmoth::platform {

namespace {

/// A selection that is drawn with the pointer changes all the time.
constexpr int kQuietMilliseconds = 60;
constexpr std::chrono::milliseconds kPrimaryLimit{200};
/// For the compositor, which keeps what is on the clipboard for when its owner ends.
constexpr std::chrono::milliseconds kKeepingTime{40};

} // namespace

std::unique_ptr<XwaylandClipboard> XwaylandClipboard::create() {
    if (qEnvironmentVariableIsEmpty("DISPLAY"))
        return nullptr;
    auto connection = X11Connection::open();
    if (!connection || !(*connection)->isBesideWayland())
        return nullptr;
    const auto manager = (*connection)->numbers((*connection)->root(), "_NET_SUPPORTING_WM_CHECK");
    if (manager.empty() || manager.front() == XCB_WINDOW_NONE)
        return nullptr;
    return std::unique_ptr<XwaylandClipboard>(new XwaylandClipboard(std::move(*connection), manager.front()));
}

XwaylandClipboard::XwaylandClipboard(std::unique_ptr<X11Connection> connection, xcb_window_t compositor)
    : connection_(std::move(connection)), compositor_(compositor) {
    primaryTimer_.setSingleShot(true);
    primaryTimer_.setInterval(kQuietMilliseconds);
    QObject::connect(&primaryTimer_, &QTimer::timeout, &primaryTimer_, [this] {
        if (onPrimaryChange)
            onPrimaryChange();
    });
    watchPrimary();
}

void XwaylandClipboard::watchPrimary() {
    auto* server = connection_->get();
    const auto* fixes = xcb_get_extension_data(server, &xcb_xfixes_id);
    if (fixes == nullptr || fixes->present == 0)
        return;
    primaryEvent_ = static_cast<std::uint8_t>(fixes->first_event + XCB_XFIXES_SELECTION_NOTIFY);
    owned(xcb_xfixes_query_version_reply(server, xcb_xfixes_query_version(server, 2, 0), nullptr)).reset();
    xcb_xfixes_select_selection_input(server, connection_->root(), XCB_ATOM_PRIMARY,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
    xcb_flush(server);
    events_ = connection_->onEvent([this](const xcb_generic_event_t& event) {
        if ((event.response_type & 0x7F) == primaryEvent_)
            primaryTimer_.start();
    });
}

std::optional<std::string> XwaylandClipboard::primary() {
    return selectionText(XCB_ATOM_PRIMARY, kPrimaryLimit);
}

PasteOutcome XwaylandClipboard::paste(const std::string& text, std::int64_t process,
                                      X11Pasteboard::PasteKeys keys,
                                      std::chrono::steady_clock::time_point deadline) {
    X11Application application{.window = compositor_, .processes = {process}};
    if (const auto compositor = clientProcessIdentifier(connection_->get(), compositor_))
        application.processes.push_back(*compositor);
    keys.quietTime = kKeepingTime;
    return pasteboard_.paste(text, application, keys, deadline);
}

} // namespace quillmoth::platform
