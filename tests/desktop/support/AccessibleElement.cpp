#include "tests/desktop/support/AccessibleElement.h"

#include <gio/gio.h>

#include <utility>

namespace quillmoth::test {

namespace {

constexpr int kAnswerMilliseconds = 3000;
constexpr const char* kAccessible = "org.a11y.atspi.Accessible";
constexpr const char* kText = "org.a11y.atspi.Text";

std::shared_ptr<GVariant> ownedVariant(GVariant* variant) {
    return {variant, [](GVariant* last) {
                if (last)
                    g_variant_unref(last);
            }};
}

/// The value in the reply, or a value of nothing.
template<class Value>
Value unpacked(const std::shared_ptr<GVariant>& reply, const char* format) {
    Value value{};
    if (reply)
        g_variant_get(reply.get(), format, &value);
    return value;
}

std::string unpackedText(const std::shared_ptr<GVariant>& reply, const char* format) {
    const auto* text = unpacked<const gchar*>(reply, format);
    return text ? text : "";
}

} // namespace

AccessibleElement::AccessibleElement(Bus bus, std::string sender, std::string path)
    : bus_(std::move(bus)), sender_(std::move(sender)), path_(std::move(path)) {}

AccessibleElement::Reply AccessibleElement::call(const char* interface, const char* method,
                                                 GVariant* arguments, const char* replyType) const {
    return ownedVariant(g_dbus_connection_call_sync(
        bus_.get(), sender_.c_str(), path_.c_str(), interface, method, arguments, G_VARIANT_TYPE(replyType),
        G_DBUS_CALL_FLAGS_NONE, kAnswerMilliseconds, nullptr, nullptr));
}

AccessibleElement::Reply AccessibleElement::property(const char* interface, const char* name) const {
    const Reply reply =
        call("org.freedesktop.DBus.Properties", "Get", g_variant_new("(ss)", interface, name), "(v)");
    return ownedVariant(unpacked<GVariant*>(reply, "(v)"));
}

std::string AccessibleElement::role() const {
    return unpackedText(call(kAccessible, "GetRoleName", nullptr, "(s)"), "(&s)");
}

std::string AccessibleElement::name() const {
    return unpackedText(property(kAccessible, "Name"), "&s");
}

std::string AccessibleElement::description() const {
    return unpackedText(property(kAccessible, "Description"), "&s");
}

std::string AccessibleElement::textBetween(int start, int end) const {
    return unpackedText(call(kText, "GetText", g_variant_new("(ii)", start, end), "(s)"), "(&s)");
}

std::string AccessibleElement::text() const {
    const int count = unpacked<gint32>(property(kText, "CharacterCount"), "i");
    return count > 0 ? textBetween(0, count) : "";
}

std::string AccessibleElement::selection() const {
    if (unpacked<gint32>(call(kText, "GetNSelections", nullptr, "(i)"), "(i)") < 1)
        return {};
    int start = 0;
    int end = 0;
    if (const Reply reply = call(kText, "GetSelection", g_variant_new("(i)", 0), "(ii)"))
        g_variant_get(reply.get(), "(ii)", &start, &end);
    return textBetween(start, end);
}

DesktopRectangle AccessibleElement::bounds() const {
    const Reply reply = call("org.a11y.atspi.Component", "GetExtents",
                             g_variant_new("(u)", ATSPI_COORD_TYPE_SCREEN), "((iiii))");
    DesktopRectangle place;
    if (reply)
        g_variant_get(reply.get(), "((iiii))", &place.x, &place.y, &place.width, &place.height);
    return place;
}

pid_t AccessibleElement::process() const {
    const AccessibleElement bus(bus_, "org.freedesktop.DBus", "/");
    const Reply reply = bus.call("org.freedesktop.DBus", "GetConnectionUnixProcessID",
                                 g_variant_new("(s)", sender_.c_str()), "(u)");
    return static_cast<pid_t>(unpacked<guint32>(reply, "(u)"));
}

std::vector<AccessibleElement> AccessibleElement::children() const {
    std::vector<AccessibleElement> all;
    const Reply reply = call(kAccessible, "GetChildren", nullptr, "(a(so))");
    if (!reply)
        return all;
    GVariantIter* references = nullptr;
    g_variant_get(reply.get(), "(a(so))", &references);
    const gchar* sender = nullptr;
    const gchar* path = nullptr;
    while (g_variant_iter_next(references, "(&s&o)", &sender, &path))
        all.emplace_back(bus_, sender, path);
    g_variant_iter_free(references);
    return all;
}

bool AccessibleElement::has(AtspiStateType state) const {
    const Reply reply = call(kAccessible, "GetState", nullptr, "(au)");
    if (!reply)
        return false;
    const auto words = ownedVariant(g_variant_get_child_value(reply.get(), 0));
    gsize count = 0;
    const auto* bits =
        static_cast<const guint32*>(g_variant_get_fixed_array(words.get(), &count, sizeof(guint32)));
    const auto place = static_cast<gsize>(state);
    return place / 32 < count && (bits[place / 32] >> (place % 32) & 1U) != 0;
}

bool AccessibleElement::press() const {
    const Reply reply = call("org.a11y.atspi.Action", "DoAction", g_variant_new("(i)", 0), "(b)");
    return unpacked<gboolean>(reply, "(b)") != FALSE;
}

bool AccessibleElement::setText(const std::string& text) const {
    const Reply reply =
        call("org.a11y.atspi.EditableText", "SetTextContents", g_variant_new("(s)", text.c_str()), "(b)");
    return unpacked<gboolean>(reply, "(b)") != FALSE;
}

} // namespace quillmoth::test
