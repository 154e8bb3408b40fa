#include "Platform/Linux/AtSpi/TextElement.h"

#include "Foundation/Limits.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace quillmoth::platform {

namespace {

gint32 int32(std::int64_t value) {
    return static_cast<gint32>(std::clamp<std::int64_t>(value, std::numeric_limits<gint32>::min(),
                                                        std::numeric_limits<gint32>::max()));
}

} // namespace

std::optional<States> statesOf(Operation& operation, const ObjectReference& object) {
    const Variant reply =
        operation.call(object, ATSPI_DBUS_INTERFACE_ACCESSIBLE, "GetState", nullptr, "(au)");
    if (!reply)
        return std::nullopt;
    const Variant words(g_variant_get_child_value(reply.get(), 0));
    gsize count = 0;
    const auto* values =
        static_cast<const guint32*>(g_variant_get_fixed_array(words.get(), &count, sizeof(guint32)));
    return States(count > 0 ? values[0] : 0, count > 1 ? values[1] : 0);
}

std::optional<AtspiRole> roleOf(Operation& operation, const ObjectReference& object) {
    const Variant reply = operation.call(object, ATSPI_DBUS_INTERFACE_ACCESSIBLE, "GetRole", nullptr, "(u)");
    if (!reply)
        return std::nullopt;
    guint32 role = 0;
    g_variant_get(reply.get(), "(u)", &role);
    return static_cast<AtspiRole>(role);
}

std::optional<Interfaces> interfacesOf(Operation& operation, const ObjectReference& object) {
    const Variant reply =
        operation.call(object, ATSPI_DBUS_INTERFACE_ACCESSIBLE, "GetInterfaces", nullptr, "(as)");
    if (!reply)
        return std::nullopt;
    const Variant list(g_variant_get_child_value(reply.get(), 0));
    const GLibPointer<const gchar*> names(g_variant_get_strv(list.get(), nullptr));
    const auto offers = [&names](const char* name) { return g_strv_contains(names.get(), name) != FALSE; };
    return Interfaces{.text = offers(ATSPI_DBUS_INTERFACE_TEXT),
                      .editableText = offers(ATSPI_DBUS_INTERFACE_EDITABLE_TEXT),
                      .hypertext = offers(ATSPI_DBUS_INTERFACE_HYPERTEXT)};
}

bool hasOwnText(const Interfaces& interfaces, AtspiRole role, States states) {
    const bool isCell = role == ATSPI_ROLE_TABLE_CELL || role == ATSPI_ROLE_LIST_ITEM;
    return interfaces.text && (!isCell || states.has(ATSPI_STATE_EDITABLE));
}

TextElement::TextElement(Operation& operation, ObjectReference object, Toolkit toolkit)
    : operation_(operation), object_(std::move(object)), toolkit_(toolkit) {}

std::optional<std::int64_t> TextElement::characterCount() const {
    return number("CharacterCount");
}

std::optional<std::int64_t> TextElement::caret() const {
    return number("CaretOffset");
}

std::optional<std::int64_t> TextElement::selectionCount() const {
    const Variant reply =
        operation_.call(object_, ATSPI_DBUS_INTERFACE_TEXT, "GetNSelections", nullptr, "(i)");
    if (!reply)
        return std::nullopt;
    gint32 count = 0;
    g_variant_get(reply.get(), "(i)", &count);
    return std::clamp<std::int64_t>(count, 0, limits::kSelectedStretches);
}

std::optional<TextRange> TextElement::selection(std::int64_t index) const {
    const Variant reply = operation_.call(object_, ATSPI_DBUS_INTERFACE_TEXT, "GetSelection",
                                          g_variant_new("(i)", int32(index)), "(ii)");
    if (!reply)
        return std::nullopt;
    gint32 start = 0;
    gint32 end = 0;
    g_variant_get(reply.get(), "(ii)", &start, &end);
    return start <= end ? TextRange{.start = start, .end = end} : TextRange{.start = end, .end = start};
}

std::optional<std::string> TextElement::text(TextRange range) const {
    const Variant reply = operation_.call(object_, ATSPI_DBUS_INTERFACE_TEXT, "GetText",
                                          g_variant_new("(ii)", int32(range.start), int32(range.end)), "(s)");
    if (!reply)
        return std::nullopt;
    const gchar* text = "";
    g_variant_get(reply.get(), "(&s)", &text);
    return toolkit_ == Toolkit::gecko ? withoutFillers(text) : std::string(text);
}

std::optional<TextElement::Content> TextElement::content() const {
    const auto count = characterCount();
    auto text = count ? this->text({.start = 0, .end = *count}) : std::nullopt;
    if (!text)
        return std::nullopt;
    const bool countsUnits = toolkit_ == Toolkit::qt || toolkit_ == Toolkit::gecko;
    const OffsetUnit usual = countsUnits ? OffsetUnit::utf16 : OffsetUnit::codePoint;
    const bool isConsistent =
        lengthIn(OffsetUnit::codePoint, *text) == *count || lengthIn(OffsetUnit::utf16, *text) == *count;
    // The bridge of Java hands out an empty text where an emoji is in it.
    if (toolkit_ == Toolkit::unknown && !isConsistent)
        return std::nullopt;
    const OffsetUnit unit = unitOfCount(*text, *count).value_or(usual);
    return Content{.text = std::move(*text), .unit = unit};
}

bool TextElement::setCaret(std::int64_t offset) const {
    return command(ATSPI_DBUS_INTERFACE_TEXT, "SetCaretOffset", g_variant_new("(i)", int32(offset)));
}

bool TextElement::select(TextRange range) const {
    const auto count = selectionCount();
    if (!count)
        return false;
    for (std::int64_t index = *count - 1; index > 0; --index)
        command(ATSPI_DBUS_INTERFACE_TEXT, "RemoveSelection", g_variant_new("(i)", int32(index)));
    if (*count > 0)
        return command(ATSPI_DBUS_INTERFACE_TEXT, "SetSelection",
                       g_variant_new("(iii)", 0, int32(range.start), int32(range.end)));
    return command(ATSPI_DBUS_INTERFACE_TEXT, "AddSelection",
                   g_variant_new("(ii)", int32(range.start), int32(range.end)));
}

bool TextElement::insert(std::int64_t offset, const std::string& text) const {
    // ATK counts bytes here; Qt cuts or pads its own string to that many UTF-16 units.
    const std::int64_t length =
        toolkit_ == Toolkit::qt ? lengthIn(OffsetUnit::utf16, text) : static_cast<std::int64_t>(text.size());
    return command(ATSPI_DBUS_INTERFACE_EDITABLE_TEXT, "InsertText",
                   g_variant_new("(isi)", int32(offset), text.c_str(), int32(length)));
}

bool TextElement::remove(TextRange range) const {
    return command(ATSPI_DBUS_INTERFACE_EDITABLE_TEXT, "DeleteText",
                   g_variant_new("(ii)", int32(range.start), int32(range.end)));
}

std::optional<std::int64_t> TextElement::number(const char* property) const {
    const Variant value = operation_.property(object_, ATSPI_DBUS_INTERFACE_TEXT, property, "i");
    return value ? std::optional<std::int64_t>(g_variant_get_int32(value.get())) : std::nullopt;
}

bool TextElement::command(const char* interface, const char* method, GVariant* parameters) const {
    const Variant reply = operation_.call(object_, interface, method, parameters, nullptr);
    if (!reply)
        return false;
    if (!g_variant_is_of_type(reply.get(), G_VARIANT_TYPE("(b)")))
        return true;
    gboolean accepted = FALSE;
    g_variant_get(reply.get(), "(b)", &accepted);
    return accepted != FALSE;
}

} // namespace quillmoth::platform
