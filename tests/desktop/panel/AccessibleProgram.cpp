#include "tests/desktop/panel/AccessibleProgram.h"

#include <stdexcept>
#include <utility>

namespace quillmoth::test {

namespace {

using namespace quillmoth::platform;

// A busy machine is no reason to see nothing.
constexpr Operation::Milliseconds kPatience{2000};

std::string nameOf(Operation& operation, const ObjectReference& object) {
    const Variant value = operation.property(object, ATSPI_DBUS_INTERFACE_ACCESSIBLE, "Name", "s");
    return value ? g_variant_get_string(value.get(), nullptr) : "";
}

std::string roleNameOf(Operation& operation, const ObjectReference& object) {
    const Variant reply =
        operation.call(object, ATSPI_DBUS_INTERFACE_ACCESSIBLE, "GetRoleName", nullptr, "(s)", kPatience);
    const gchar* role = "";
    if (reply)
        g_variant_get(reply.get(), "(&s)", &role);
    return role;
}

bool isAnswerTrue(const Variant& reply) {
    gboolean answer = FALSE;
    if (reply)
        g_variant_get(reply.get(), "(b)", &answer);
    return answer != FALSE;
}

} // namespace

AccessibleProgram::AccessibleProgram(std::int64_t process) : bus_([](const auto&...) {}), process_(process) {
    GDBusConnection* bus = bus_.connection(nullptr);
    if (bus == nullptr)
        throw std::runtime_error("no accessibility bus");
    subscription_ = g_dbus_connection_signal_subscribe(
        bus, nullptr, ATSPI_DBUS_INTERFACE_EVENT_OBJECT, "StateChanged", nullptr, "showing",
        G_DBUS_SIGNAL_FLAGS_NONE, &AccessibleProgram::onSignal, this, nullptr);
    // Programs send only what somebody has registered for.
    ErrorSlot error;
    const Variant reply(g_dbus_connection_call_sync(bus, ATSPI_DBUS_NAME_REGISTRY, ATSPI_DBUS_PATH_REGISTRY,
                                                    ATSPI_DBUS_INTERFACE_REGISTRY, "RegisterEvent",
                                                    g_variant_new("(s)", "object:state-changed:showing"),
                                                    nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, error));
}

AccessibleProgram::~AccessibleProgram() {
    if (GDBusConnection* bus = bus_.connection(nullptr))
        g_dbus_connection_signal_unsubscribe(bus, subscription_);
}

Operation AccessibleProgram::operation() {
    return {bus_.connection(nullptr), nullptr, Operation::Clock::now() + std::chrono::seconds(5)};
}

void AccessibleProgram::onSignal(GDBusConnection*, const gchar* sender, const gchar* path, const gchar*,
                                 const gchar*, GVariant* parameters, gpointer self) {
    const Variant second(g_variant_get_child_value(parameters, 1));
    if (g_variant_is_of_type(second.get(), G_VARIANT_TYPE_INT32) && g_variant_get_int32(second.get()) == 1)
        static_cast<AccessibleProgram*>(self)->appeared_.push_back({sender, path});
}

void AccessibleProgram::collect(Operation& operation, const ObjectReference& object,
                                std::vector<AccessibleObject>& into) {
    const auto states = statesOf(operation, object);
    if (!states)
        return;
    into.push_back({.reference = object,
                    .role = roleNameOf(operation, object),
                    .name = nameOf(operation, object),
                    .states = *states});
    for (const ObjectReference& child : childrenOf(operation, object)) {
        if (!child.isNull() && statesOf(operation, child).value_or(States()).has(ATSPI_STATE_SHOWING))
            collect(operation, child, into);
    }
}

std::vector<AccessibleObject> AccessibleProgram::showing() {
    std::vector<AccessibleObject> all;
    Operation operation = this->operation();
    for (const ObjectReference& root : applications_.rootsOf(operation, process_))
        collect(operation, root, all);
    return all;
}

std::optional<AccessibleObject> AccessibleProgram::find(std::string_view role, std::string_view name) {
    for (const AccessibleObject& object : showing())
        if (object.role == role && object.name.starts_with(name))
            return object;
    return std::nullopt;
}

std::vector<std::string> AccessibleProgram::names(std::string_view role) {
    std::vector<std::string> found;
    for (const AccessibleObject& object : showing())
        if (object.role == role)
            found.push_back(object.name);
    return found;
}

std::string AccessibleProgram::focus() {
    std::string innermost;
    for (const AccessibleObject& object : showing())
        if (object.has(ATSPI_STATE_FOCUSED) && object.role != "list item")
            innermost = object.role + " " + object.name;
    return innermost;
}

bool AccessibleProgram::press(const AccessibleObject& object) {
    Operation operation = this->operation();
    return isAnswerTrue(operation.call(object.reference, ATSPI_DBUS_INTERFACE_ACTION, "DoAction",
                                       g_variant_new("(i)", 0), "(b)", kPatience));
}

std::string AccessibleProgram::text(const AccessibleObject& object) {
    Operation operation = this->operation();
    const TextElement element(operation, object.reference, Toolkit::qt);
    const auto content = element.content();
    return content ? content->text : "";
}

bool AccessibleProgram::setText(const AccessibleObject& object, const std::string& text) {
    Operation operation = this->operation();
    return isAnswerTrue(operation.call(object.reference, ATSPI_DBUS_INTERFACE_EDITABLE_TEXT,
                                       "SetTextContents", g_variant_new("(s)", text.c_str()), "(b)",
                                       kPatience));
}

std::string AccessibleProgram::selection(const AccessibleObject& object) {
    Operation operation = this->operation();
    const TextElement element(operation, object.reference, Toolkit::other);
    if (element.selectionCount().value_or(0) == 0)
        return {};
    const auto range = element.selection(0);
    return range ? element.text(*range).value_or("") : "";
}

DesktopRectangle AccessibleProgram::extents(const AccessibleObject& object) {
    Operation operation = this->operation();
    const Variant reply =
        operation.call(object.reference, ATSPI_DBUS_INTERFACE_COMPONENT, "GetExtents",
                       g_variant_new("(u)", ATSPI_COORD_TYPE_SCREEN), "((iiii))", kPatience);
    DesktopRectangle place;
    if (reply)
        g_variant_get(reply.get(), "((iiii))", &place.x, &place.y, &place.width, &place.height);
    return place;
}

std::vector<std::string> AccessibleProgram::takeMessages() {
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
    }
    std::vector<std::string> messages;
    Operation operation = this->operation();
    for (const ObjectReference& object : std::exchange(appeared_, {}))
        if (roleNameOf(operation, object) == "notification")
            messages.push_back(nameOf(operation, object));
    return messages;
}

std::string AccessibleProgram::described() {
    std::string lines;
    for (const AccessibleObject& object : showing()) {
        lines += object.role + " \"" + object.name.substr(0, 60) + '"';
        const std::pair<AtspiStateType, const char*> told[] = {
            {ATSPI_STATE_FOCUSED, " focused"},   {ATSPI_STATE_SELECTED, " selected"},
            {ATSPI_STATE_CHECKED, " checked"},   {ATSPI_STATE_ACTIVE, " active"},
            {ATSPI_STATE_EDITABLE, " editable"}, {ATSPI_STATE_MULTI_LINE, " multi-line"}};
        for (const auto& [state, name] : told)
            if (object.has(state))
                lines += name;
        lines += '\n';
    }
    return lines;
}

} // namespace quillmoth::test
