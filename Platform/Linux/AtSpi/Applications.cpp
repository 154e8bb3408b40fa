#include "Platform/Linux/AtSpi/Applications.h"

#include "Foundation/ASCII.h"

#include <atspi/atspi-constants.h>

#include <algorithm>
#include <array>

namespace quillmoth::platform {

namespace {

Toolkit toolkitNamed(std::string name) {
    // In small letters it is an older one.
    if (name == "GTK")
        return Toolkit::gtk4;

    struct Known {
        std::string_view part;
        Toolkit toolkit;
    };

    constexpr std::array<Known, 7> kKnown = {{
        {"gtk", Toolkit::other},
        {"vcl", Toolkit::other},
        {"webkit", Toolkit::other},
        {"qt", Toolkit::qt},
        {"gecko", Toolkit::gecko},
        {"chrom", Toolkit::chromium},
        {"electron", Toolkit::chromium},
    }};
    name = lowercasedASCII(name);
    const auto* found = std::find_if(kKnown.begin(), kKnown.end(),
                                     [&name](const Known& each) { return name.starts_with(each.part); });
    return found == kKnown.end() ? Toolkit::unknown : found->toolkit;
}

} // namespace

std::int64_t Applications::processOf(Operation& operation, const std::string& name) {
    if (const auto known = processes_.find(name); known != processes_.end())
        return known->second;
    static const ObjectReference kDaemon{.name = "org.freedesktop.DBus", .path = "/org/freedesktop/DBus"};
    const Variant reply = operation.call(kDaemon, "org.freedesktop.DBus", "GetConnectionUnixProcessID",
                                         g_variant_new("(s)", name.c_str()), "(u)");
    if (!reply)
        return 0;
    guint32 process = 0;
    g_variant_get(reply.get(), "(u)", &process);
    return processes_[name] = process;
}

Toolkit Applications::toolkitOf(Operation& operation, const std::string& name) {
    if (const auto known = toolkits_.find(name); known != toolkits_.end())
        return known->second;
    const Variant value = operation.property({.name = name, .path = ATSPI_DBUS_PATH_ROOT},
                                             ATSPI_DBUS_INTERFACE_APPLICATION, "ToolkitName", "s");
    if (!value)
        return Toolkit::other;
    return toolkits_[name] = toolkitNamed(g_variant_get_string(value.get(), nullptr));
}

std::vector<ObjectReference> Applications::roots(Operation& operation) {
    static const ObjectReference kDesktop{.name = ATSPI_DBUS_NAME_REGISTRY, .path = ATSPI_DBUS_PATH_ROOT};
    auto roots = childrenOf(operation, kDesktop);
    std::erase_if(roots, [](const ObjectReference& root) { return root.isNull(); });
    return roots;
}

std::vector<ObjectReference> Applications::rootsOf(Operation& operation, std::int64_t process) {
    auto found = roots(operation);
    std::erase_if(found,
                  [&](const ObjectReference& root) { return processOf(operation, root.name) != process; });
    return found;
}

void Applications::forget(const std::string& name) {
    processes_.erase(name);
    toolkits_.erase(name);
}

ObjectReference parentOf(Operation& operation, const ObjectReference& object) {
    const Variant value = operation.property(object, ATSPI_DBUS_INTERFACE_ACCESSIBLE, "Parent", "(so)");
    if (!value)
        return {};
    const gchar* name = "";
    const gchar* path = "";
    g_variant_get(value.get(), "(&s&o)", &name, &path);
    return {.name = name, .path = path};
}

std::vector<ObjectReference> childrenOf(Operation& operation, const ObjectReference& object) {
    const Variant reply =
        operation.call(object, ATSPI_DBUS_INTERFACE_ACCESSIBLE, "GetChildren", nullptr, "(a(so))");
    return reply ? objectsIn(reply.get()) : std::vector<ObjectReference>{};
}

} // namespace quillmoth::platform
