#include "Platform/Linux/Tray/TrayWatcher.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QGuiApplication>

#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <xcb/xcb.h>

namespace quillmoth::platform {

namespace {

const QString kWatcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString kWatcherPath = QStringLiteral("/StatusNotifierWatcher");
constexpr int kLongestWaitMilliseconds = 500;

template<class Reply>
using ReplyPointer = std::unique_ptr<Reply, decltype(&std::free)>;

bool hasStatusNotifierHost() {
    const auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected() || !bus.interface()->isServiceRegistered(kWatcherService))
        return false;
    auto query = QDBusMessage::createMethodCall(kWatcherService, kWatcherPath,
                                                QStringLiteral("org.freedesktop.DBus.Properties"),
                                                QStringLiteral("Get"));
    query << kWatcherService << QStringLiteral("IsStatusNotifierHostRegistered");
    const auto reply = bus.call(query, QDBus::Block, kLongestWaitMilliseconds);
    return !reply.arguments().isEmpty() && reply.arguments().front().value<QDBusVariant>().variant().toBool();
}

std::uint32_t internAtom(xcb_connection_t* connection, const std::string& name) {
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
    const ReplyPointer<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr),
                                                      &std::free);
    return reply ? reply->atom : std::uint32_t{XCB_ATOM_NONE};
}

} // namespace

TrayWatcher::TrayWatcher() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11)
        return;
    connection_ = x11->connection();
    // Qt has one virtual desktop and so one X screen, which is the first one in all but museums.
    rootWindow_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    selectionAtom_ = internAtom(connection_, "_NET_SYSTEM_TRAY_S0");
    managerAtom_ = internAtom(connection_, "MANAGER");
}

TrayWatcher::~TrayWatcher() = default;

bool TrayWatcher::isTrayAvailable() const {
    if (hasStatusNotifierHost())
        return true;
    if (!connection_)
        return false;
    const auto cookie = xcb_get_selection_owner(connection_, selectionAtom_);
    const ReplyPointer<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(connection_, cookie, nullptr), &std::free);
    return reply && reply->owner != XCB_WINDOW_NONE;
}

void TrayWatcher::waitForTray(std::function<void()> appeared) {
    appeared_ = std::move(appeared);
    watchBus();
    if (connection_)
        watchRootWindow();
    // It may have come up between the question and the watch.
    QMetaObject::invokeMethod(this, &TrayWatcher::look, Qt::QueuedConnection);
}

void TrayWatcher::watchBus() {
    auto bus = QDBusConnection::sessionBus();
    auto* owner =
        new QDBusServiceWatcher(kWatcherService, bus, QDBusServiceWatcher::WatchForRegistration, this);
    connect(owner, &QDBusServiceWatcher::serviceRegistered, this, &TrayWatcher::look);
    bus.connect(kWatcherService, kWatcherPath, kWatcherService,
                QStringLiteral("StatusNotifierHostRegistered"), this, SLOT(look()));
}

void TrayWatcher::watchRootWindow() {
    const auto cookie = xcb_get_window_attributes(connection_, rootWindow_);
    const ReplyPointer<xcb_get_window_attributes_reply_t> reply(
        xcb_get_window_attributes_reply(connection_, cookie, nullptr), &std::free);
    // On top of what Qt has asked for on this connection.
    const std::uint32_t mask =
        (reply ? reply->your_event_mask : 0) | static_cast<std::uint32_t>(XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    xcb_change_window_attributes(connection_, rootWindow_, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(connection_);
    qGuiApp->installNativeEventFilter(this);
}

bool TrayWatcher::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
    if (type != "xcb_generic_event_t")
        return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & 0x7F) != XCB_CLIENT_MESSAGE)
        return false;
    // ICCCM 2.8: who becomes a manager says so to the root window.
    const auto* client = reinterpret_cast<const xcb_client_message_event_t*>(event);
    if (client->type == managerAtom_ && client->data.data32[1] == selectionAtom_)
        QMetaObject::invokeMethod(this, &TrayWatcher::look, Qt::QueuedConnection);
    return false;
}

void TrayWatcher::look() {
    if (!appeared_ || !isTrayAvailable())
        return;
    qGuiApp->removeNativeEventFilter(this);
    std::exchange(appeared_, nullptr)();
}

} // namespace quillmoth::platform
