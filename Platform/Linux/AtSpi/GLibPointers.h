#pragma once

#include <gio/gio.h>

#include <memory>

/// Owning pointers to GLib's values.
namespace quillmoth::platform {

struct GLibRelease {
    void operator()(GVariant* variant) const { g_variant_unref(variant); }

    void operator()(GError* error) const { g_error_free(error); }

    void operator()(gchar* text) const { g_free(text); }

    /// The list only; its strings belong to another value.
    void operator()(const gchar** list) const { g_free(list); }

    void operator()(GMainContext* context) const { g_main_context_unref(context); }

    void operator()(GDBusConnection* connection) const { g_object_unref(connection); }

    void operator()(GCancellable* cancellable) const { g_object_unref(cancellable); }
};

template<class T>
using GLibPointer = std::unique_ptr<T, GLibRelease>;

using Variant = GLibPointer<GVariant>;

/// For the GError** parameter of a GLib function.
class ErrorSlot {
public:
    ErrorSlot() = default;
    ErrorSlot(const ErrorSlot&) = delete;
    ErrorSlot& operator=(const ErrorSlot&) = delete;

    ~ErrorSlot() { g_clear_error(&error_); }

    operator GError**() { return &error_; }

    const GError* operator->() const { return error_; }

    [[nodiscard]] const GError* get() const { return error_; }

private:
    GError* error_ = nullptr;
};

} // namespace quillmoth::platform
