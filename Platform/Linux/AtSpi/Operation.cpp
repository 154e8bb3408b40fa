#include "Platform/Linux/AtSpi/Operation.h"

#include <atspi/atspi-constants.h>

#include <algorithm>

namespace quillmoth::platform {

namespace {

/// What a failed call says about the object that was asked.
AXError errorOf(const GError& error) {
    if (error.domain == G_IO_ERROR)
        return error.code == G_IO_ERROR_CLOSED ? kAXErrorAPIDisabled : kAXErrorFailure;
    if (error.domain != G_DBUS_ERROR)
        return kAXErrorFailure;
    switch (error.code) {
    case G_DBUS_ERROR_DISCONNECTED:
        return kAXErrorAPIDisabled;
    case G_DBUS_ERROR_SERVICE_UNKNOWN:
    case G_DBUS_ERROR_NAME_HAS_NO_OWNER:
    case G_DBUS_ERROR_NO_REPLY:
    case G_DBUS_ERROR_UNKNOWN_OBJECT:
        return kAXErrorInvalidUIElement;
    case G_DBUS_ERROR_UNKNOWN_METHOD:
    case G_DBUS_ERROR_UNKNOWN_INTERFACE:
    case G_DBUS_ERROR_UNKNOWN_PROPERTY:
    case G_DBUS_ERROR_NOT_SUPPORTED:
        return kAXErrorAttributeUnsupported;
    default:
        return kAXErrorFailure;
    }
}

} // namespace

bool ObjectReference::isNull() const {
    return name.empty() || path.empty() || path == ATSPI_DBUS_PATH_NULL;
}

Operation::Operation(GDBusConnection* bus, GCancellable* cancellable, Clock::time_point deadline)
    : bus_(bus), cancellable_(cancellable), deadline_(deadline) {}

Variant Operation::call(const ObjectReference& object, const char* interface, const char* method,
                        GVariant* parameters, const char* replyType, Milliseconds limit) {
    const Variant owned(parameters != nullptr ? g_variant_ref_sink(parameters) : nullptr);
    const auto remaining = std::chrono::ceil<Milliseconds>(deadline_ - Clock::now());
    if (!isOver_ && remaining.count() <= 0)
        end(kAXErrorCannotComplete);
    if (isOver_)
        return nullptr;
    if (object.isNull()) {
        error_ = kAXErrorInvalidUIElement;
        return nullptr;
    }
    ErrorSlot error;
    Variant reply(g_dbus_connection_call_sync(
        bus_, object.name.c_str(), object.path.c_str(), interface, method, owned.get(),
        replyType != nullptr ? G_VARIANT_TYPE(replyType) : nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START,
        static_cast<int>(std::min(limit, remaining).count()), cancellable_, error));
    if (!reply)
        fail(*error.get(), object.name);
    return reply;
}

Variant Operation::property(const ObjectReference& object, const char* interface, const char* name,
                            const char* type) {
    const Variant reply =
        call(object, "org.freedesktop.DBus.Properties", "Get", g_variant_new("(ss)", interface, name), "(v)");
    if (!reply)
        return nullptr;
    const Variant boxed(g_variant_get_child_value(reply.get(), 0));
    Variant value(g_variant_get_variant(boxed.get()));
    if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE(type)))
        return value;
    error_ = kAXErrorFailure;
    return nullptr;
}

void Operation::fail(const GError& error, const std::string& name) {
    const bool timedOut = g_error_matches(&error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT) ||
                          g_error_matches(&error, G_DBUS_ERROR, G_DBUS_ERROR_TIMEOUT);
    if (timedOut)
        unresponsive_ = name;
    if (timedOut || g_error_matches(&error, G_IO_ERROR, G_IO_ERROR_CANCELLED))
        return end(kAXErrorCannotComplete);
    error_ = errorOf(error);
    isOver_ = error_ == kAXErrorAPIDisabled;
}

void Operation::end(AXError error) {
    error_ = error;
    isOver_ = true;
}

std::vector<ObjectReference> objectsIn(GVariant* reply) {
    std::vector<ObjectReference> objects;
    const Variant list(g_variant_get_child_value(reply, 0));
    const gsize count = g_variant_n_children(list.get());
    objects.reserve(count);
    for (gsize index = 0; index < count; ++index) {
        const gchar* name = nullptr;
        const gchar* path = nullptr;
        g_variant_get_child(list.get(), index, "(&s&o)", &name, &path);
        objects.push_back({.name = name, .path = path});
    }
    return objects;
}

ObjectReference objectIn(GVariant* reply) {
    const gchar* name = nullptr;
    const gchar* path = nullptr;
    g_variant_get(reply, "((&s&o))", &name, &path);
    return {.name = name, .path = path};
}

} // namespace quillmoth::platform
