#include "Platform/Linux/AtSpi/AccessibilityBus.h"

#include <atspi/atspi-constants.h>

#include <array>
#include <string_view>
#include <utility>

namespace quillmoth::platform {

namespace {

constexpr int kCallLimitMilliseconds = 250;
// The service that starts the accessibility bus may have to be started itself.
constexpr int kActivationLimitMilliseconds = 900;
constexpr const char* kDaemonName = "org.freedesktop.DBus";
constexpr const char* kDaemonPath = "/org/freedesktop/DBus";
constexpr const char* kLauncherName = "org.a11y.Bus";
constexpr const char* kLauncherPath = "/org/a11y/bus";
constexpr const char* kProperties = "org.freedesktop.DBus.Properties";
constexpr const char* kWindowEvents = "org.a11y.atspi.Event.Window";

bool isOpen(GDBusConnection* connection) {
    return connection != nullptr && g_dbus_connection_is_closed(connection) == FALSE;
}

GLibPointer<GDBusConnection> connect(const std::string& address, GCancellable* cancellable) {
    constexpr auto kFlags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                              G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    ErrorSlot error;
    return GLibPointer<GDBusConnection>(
        g_dbus_connection_new_for_address_sync(address.c_str(), kFlags, nullptr, cancellable, error));
}

} // namespace

AccessibilityBus::AccessibilityBus(SignalHandler handler) : handler_(std::move(handler)) {}

AccessibilityBus::~AccessibilityBus() {
    disconnect();
}

GDBusConnection* AccessibilityBus::connection(GCancellable* cancellable) {
    if (isOpen(bus_.get()))
        return bus_.get();
    disconnect();
    const std::string where = address(cancellable);
    if (!where.empty())
        bus_ = connect(where, cancellable);
    if (bus_)
        listen();
    return bus_.get();
}

bool AccessibilityBus::answers(GCancellable* cancellable) {
    GDBusConnection* bus = connection(cancellable);
    if (bus == nullptr)
        return false;
    ErrorSlot error;
    const Variant reply(g_dbus_connection_call_sync(bus, kDaemonName, kDaemonPath, kDaemonName, "GetId",
                                                    nullptr, nullptr, G_DBUS_CALL_FLAGS_NONE,
                                                    kCallLimitMilliseconds, cancellable, error));
    return reply != nullptr;
}

bool AccessibilityBus::isEnabled(GCancellable* cancellable) {
    GDBusConnection* bus = session(cancellable);
    if (bus == nullptr)
        return false;
    ErrorSlot error;
    const Variant reply(g_dbus_connection_call_sync(bus, kLauncherName, kLauncherPath, kProperties, "Get",
                                                    g_variant_new("(ss)", "org.a11y.Status", "IsEnabled"),
                                                    G_VARIANT_TYPE("(v)"), G_DBUS_CALL_FLAGS_NONE,
                                                    kActivationLimitMilliseconds, cancellable, error));
    if (!reply)
        return false;
    const Variant boxed(g_variant_get_child_value(reply.get(), 0));
    const Variant value(g_variant_get_variant(boxed.get()));
    return g_variant_is_of_type(value.get(), G_VARIANT_TYPE_BOOLEAN) && g_variant_get_boolean(value.get());
}

bool AccessibilityBus::setEnabled(GCancellable* cancellable) {
    GDBusConnection* bus = session(cancellable);
    if (bus == nullptr)
        return false;
    ErrorSlot error;
    const Variant reply(g_dbus_connection_call_sync(
        bus, kLauncherName, kLauncherPath, kProperties, "Set",
        g_variant_new("(ssv)", "org.a11y.Status", "IsEnabled", g_variant_new_boolean(TRUE)), nullptr,
        G_DBUS_CALL_FLAGS_NONE, kActivationLimitMilliseconds, cancellable, error));
    return reply != nullptr;
}

GDBusConnection* AccessibilityBus::session(GCancellable* cancellable) {
    if (isOpen(session_.get()))
        return session_.get();
    ErrorSlot error;
    const GLibPointer<gchar> where(g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, cancellable, error));
    // A connection of our own: the process-wide one ends the process when the bus goes.
    session_ = where ? connect(where.get(), cancellable) : nullptr;
    return session_.get();
}

std::string AccessibilityBus::address(GCancellable* cancellable) {
    if (const gchar* given = g_getenv("AT_SPI_BUS_ADDRESS"); given != nullptr && *given != '\0')
        return given;
    GDBusConnection* bus = session(cancellable);
    if (bus == nullptr)
        return {};
    ErrorSlot error;
    const Variant reply(g_dbus_connection_call_sync(
        bus, kLauncherName, kLauncherPath, kLauncherName, "GetAddress", nullptr, G_VARIANT_TYPE("(s)"),
        G_DBUS_CALL_FLAGS_NONE, kActivationLimitMilliseconds, cancellable, error));
    const gchar* where = "";
    if (reply)
        g_variant_get(reply.get(), "(&s)", &where);
    return where;
}

void AccessibilityBus::listen() {
    struct Match {
        const char* interface;
        const char* member;
        const char* argument;
    };

    constexpr std::array<Match, 4> kMatches = {{
        {ATSPI_DBUS_INTERFACE_EVENT_OBJECT, "StateChanged", "focused"},
        {kWindowEvents, "Activate", nullptr},
        {kWindowEvents, "Deactivate", nullptr},
        {kDaemonName, "NameOwnerChanged", nullptr},
    }};
    for (const Match& match : kMatches) {
        subscriptions_.push_back(g_dbus_connection_signal_subscribe(
            bus_.get(), nullptr, match.interface, match.member, nullptr, match.argument,
            G_DBUS_SIGNAL_FLAGS_NONE, &AccessibilityBus::onSignal, this, nullptr));
    }
    registerEvents();
}

void AccessibilityBus::registerEvents() {
    // Applications send only what somebody has registered for. Nothing waits for the answer.
    for (const char* event : {"object:state-changed:focused", "window:activate", "window:deactivate"}) {
        g_dbus_connection_call(bus_.get(), ATSPI_DBUS_NAME_REGISTRY, ATSPI_DBUS_PATH_REGISTRY,
                               ATSPI_DBUS_INTERFACE_REGISTRY, "RegisterEvent", g_variant_new("(s)", event),
                               nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr, nullptr);
    }
}

void AccessibilityBus::disconnect() {
    for (const guint subscription : std::exchange(subscriptions_, {}))
        g_dbus_connection_signal_unsubscribe(bus_.get(), subscription);
    if (isOpen(bus_.get()))
        g_dbus_connection_close_sync(bus_.get(), nullptr, nullptr);
    bus_.reset();
}

void AccessibilityBus::onSignal(GDBusConnection*, const gchar* sender, const gchar* path,
                                const gchar* interface, const gchar* name, GVariant* parameters,
                                gpointer self) {
    auto& bus = *static_cast<AccessibilityBus*>(self);
    if (std::string_view(name) == "NameOwnerChanged" &&
        g_variant_is_of_type(parameters, G_VARIANT_TYPE("(sss)"))) {
        const gchar* changed = nullptr;
        const gchar* owner = nullptr;
        g_variant_get(parameters, "(&s&s&s)", &changed, nullptr, &owner);
        // A registry that has been started again knows nothing of us.
        if (std::string_view(changed) == ATSPI_DBUS_NAME_REGISTRY && *owner != '\0')
            bus.registerEvents();
    }
    bus.handler_(sender != nullptr ? sender : "", path, std::string(interface) + "." + name, parameters);
}

} // namespace quillmoth::platform
