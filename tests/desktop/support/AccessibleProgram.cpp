#include "tests/desktop/support/AccessibleProgram.h"

#include <gio/gio.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <utility>

namespace quillmoth::test {

namespace {

constexpr int kBusMilliseconds = 5000;
constexpr const char* kRegistry = "org.a11y.atspi.Registry";

AccessibleElement::Bus connected(const std::string& address) {
    constexpr auto kClient = static_cast<GDBusConnectionFlags>(
        G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    GDBusConnection* made =
        g_dbus_connection_new_for_address_sync(address.c_str(), kClient, nullptr, nullptr, nullptr);
    if (!made)
        throw std::runtime_error("no bus at " + address);
    return {made, g_object_unref};
}

/// The session bus tells where it is.
AccessibleElement::Bus accessibilityBus() {
    const char* session = std::getenv("DBUS_SESSION_BUS_ADDRESS"); // NOLINT(concurrency-mt-unsafe)
    const auto bus = connected(session ? session : "");
    GVariant* reply = g_dbus_connection_call_sync(bus.get(), "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus",
                                                  "GetAddress", nullptr, G_VARIANT_TYPE("(s)"),
                                                  G_DBUS_CALL_FLAGS_NONE, kBusMilliseconds, nullptr, nullptr);
    if (!reply)
        throw std::runtime_error("no accessibility bus");
    const gchar* address = nullptr;
    g_variant_get(reply, "(&s)", &address);
    const std::string found = address;
    g_variant_unref(reply);
    return connected(found);
}

/// Remembers an object that came on screen.
void onAppearance(GDBusConnection*, const gchar* sender, const gchar* path, const gchar*, const gchar*,
                  GVariant* parameters, gpointer appeared) {
    GVariant* isOn = g_variant_get_child_value(parameters, 1);
    if (g_variant_is_of_type(isOn, G_VARIANT_TYPE_INT32) && g_variant_get_int32(isOn) == 1)
        static_cast<std::vector<std::pair<std::string, std::string>>*>(appeared)->emplace_back(sender, path);
    g_variant_unref(isOn);
}

void collect(const AccessibleElement& element, std::vector<AccessibleElement>& all) {
    all.push_back(element);
    for (const AccessibleElement& child : element.children())
        if (child.has(ATSPI_STATE_SHOWING))
            collect(child, all);
}

} // namespace

AccessibleProgram::AccessibleProgram(pid_t process) : process_(process), bus_(accessibilityBus()) {
    subscription_ = g_dbus_connection_signal_subscribe(
        bus_.get(), nullptr, "org.a11y.atspi.Event.Object", "StateChanged", nullptr, "showing",
        G_DBUS_SIGNAL_FLAGS_NONE, &onAppearance, &appeared_, nullptr);
    // Programs send only what somebody has registered for.
    GVariant* reply =
        g_dbus_connection_call_sync(bus_.get(), kRegistry, "/org/a11y/atspi/registry", kRegistry,
                                    "RegisterEvent", g_variant_new("(s)", "object:state-changed:showing"),
                                    nullptr, G_DBUS_CALL_FLAGS_NONE, kBusMilliseconds, nullptr, nullptr);
    if (reply)
        g_variant_unref(reply);
}

AccessibleProgram::~AccessibleProgram() {
    g_dbus_connection_signal_unsubscribe(bus_.get(), subscription_);
}

std::vector<AccessibleElement> AccessibleProgram::showing() const {
    std::vector<AccessibleElement> all;
    const AccessibleElement desktop(bus_, kRegistry, "/org/a11y/atspi/accessible/root");
    for (const AccessibleElement& application : desktop.children())
        if (application.process() == process_)
            collect(application, all);
    return all;
}

std::optional<AccessibleElement> AccessibleProgram::find(std::string_view role, std::string_view name) const {
    for (const AccessibleElement& element : showing())
        if (element.role() == role && element.name().starts_with(name))
            return element;
    return std::nullopt;
}

bool AccessibleProgram::shows(std::string_view text) const {
    const auto all = showing();
    return std::any_of(all.begin(), all.end(), [&](const AccessibleElement& element) {
        return element.name().find(text) != std::string::npos ||
               element.text().find(text) != std::string::npos;
    });
}

std::vector<std::string> AccessibleProgram::names(std::string_view role) const {
    std::vector<std::string> found;
    for (const AccessibleElement& element : showing())
        if (element.role() == role)
            found.push_back(element.name());
    return found;
}

std::vector<std::string> AccessibleProgram::focused() const {
    std::vector<std::string> all;
    for (const AccessibleElement& element : showing())
        if (element.isFocused() && element.role() != "list item")
            all.push_back(element.role() + ' ' + element.name());
    return all;
}

std::vector<std::string> AccessibleProgram::takeMessages() {
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
    }
    std::vector<std::string> messages;
    for (const auto& [sender, path] : std::exchange(appeared_, {})) {
        const AccessibleElement element(bus_, sender, path);
        if (element.role() == "notification" && element.process() == process_)
            messages.push_back(element.name());
    }
    return messages;
}

std::string AccessibleProgram::described() const {
    constexpr std::pair<AtspiStateType, const char*> kTold[] = {{ATSPI_STATE_FOCUSED, " focused"},
                                                                {ATSPI_STATE_SELECTED, " selected"},
                                                                {ATSPI_STATE_CHECKED, " checked"},
                                                                {ATSPI_STATE_ACTIVE, " active"}};
    std::string lines;
    for (const AccessibleElement& element : showing()) {
        lines += element.role() + " \"" + element.name() + '"';
        for (const auto& [state, name] : kTold)
            if (element.has(state))
                lines += name;
        if (const std::string description = element.description(); !description.empty())
            lines += " (" + description + ')';
        if (const std::string text = element.text(); !text.empty() && text != element.name())
            lines += ": " + text;
        lines += '\n';
    }
    return lines;
}

} // namespace quillmoth::test
