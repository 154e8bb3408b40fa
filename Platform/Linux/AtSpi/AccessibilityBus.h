#pragma once

#include "Platform/Linux/AtSpi/GLibPointers.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quillmoth::platform {

/// The connections to the accessibility bus and to the session bus that tells where it is. Both are made when
/// first needed, and again when they were lost. The accessibility thread, whose context gets the signals.
///
/// GDBus and not libatspi, whose calls share one timeout and cannot be cancelled: here every call has what is
/// left of its operation's time.
class AccessibilityBus {
public:
    /// Any signal of the accessible events that the program listens to, or a change of a name's owner.
    using SignalHandler = std::function<void(const std::string& sender, const std::string& path,
                                             const std::string& interface, GVariant* parameters)>;

    explicit AccessibilityBus(SignalHandler handler);
    ~AccessibilityBus();
    AccessibilityBus(const AccessibilityBus&) = delete;
    AccessibilityBus& operator=(const AccessibilityBus&) = delete;

    /// The connection to the accessibility bus; null where there is none to be had.
    GDBusConnection* connection(GCancellable* cancellable);

    /// True when the accessibility bus answers now.
    [[nodiscard]] bool answers(GCancellable* cancellable);

    /// Whether assistive programs are welcome on this desktop (org.a11y.Status, "IsEnabled"); false too where
    /// nobody answers.
    [[nodiscard]] bool isEnabled(GCancellable* cancellable);
    bool setEnabled(GCancellable* cancellable);

private:
    GDBusConnection* session(GCancellable* cancellable);
    std::string address(GCancellable* cancellable);
    void listen();
    void registerEvents();
    void disconnect();
    static void onSignal(GDBusConnection* connection, const gchar* sender, const gchar* path,
                         const gchar* interface, const gchar* name, GVariant* parameters, gpointer self);

    SignalHandler handler_;
    GLibPointer<GDBusConnection> session_;
    GLibPointer<GDBusConnection> bus_;
    std::vector<guint> subscriptions_;
};

} // namespace quillmoth::platform
