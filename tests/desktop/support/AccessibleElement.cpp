#include "tests/desktop/support/AccessibleElement.h"

#include <atspi/atspi.h>

#include <utility>

namespace quillmoth::test {

namespace {

constexpr int kAnswerMilliseconds = 3000;

template<class Object>
std::shared_ptr<Object> owned(Object* object) {
    return {object, [](Object* last) {
                if (last)
                    g_object_unref(last);
            }};
}

std::string taken(gchar* text) {
    std::string result = text ? text : "";
    g_free(text);
    return result;
}

/// Runs a question, whose failure counts as no answer.
template<class Question>
auto asked(Question&& question) {
    GError* error = nullptr;
    auto answer = question(&error);
    g_clear_error(&error);
    return answer;
}

AtspiAccessible* desktop() {
    static AtspiAccessible* const object = [] {
        atspi_init();
        atspi_set_timeout(kAnswerMilliseconds, kAnswerMilliseconds);
        AtspiAccessible* made = atspi_get_desktop(0);
        atspi_accessible_set_cache_mask(made, ATSPI_CACHE_NONE);
        return made;
    }();
    return object;
}

} // namespace

AccessibleElement::AccessibleElement(AtspiAccessible* accessible) : accessible_(owned(accessible)) {}

void AccessibleElement::collect(const AccessibleElement& element, std::vector<AccessibleElement>& all) {
    all.push_back(element);
    AtspiAccessible* parent = element.accessible_.get();
    const gint count = asked([&](GError** error) { return atspi_accessible_get_child_count(parent, error); });
    for (gint index = 0; index < count; ++index) {
        AtspiAccessible* child =
            asked([&](GError** error) { return atspi_accessible_get_child_at_index(parent, index, error); });
        if (!child)
            continue;
        if (const AccessibleElement made(child); made.isShowing())
            collect(made, all);
    }
}

std::vector<AccessibleElement> AccessibleElement::shownBy(pid_t process) {
    std::vector<AccessibleElement> all;
    AtspiAccessible* root = desktop();
    const gint count = asked([&](GError** error) { return atspi_accessible_get_child_count(root, error); });
    for (gint index = 0; index < count; ++index) {
        AtspiAccessible* application =
            asked([&](GError** error) { return atspi_accessible_get_child_at_index(root, index, error); });
        if (!application)
            continue;
        const AccessibleElement made(application);
        const auto owner =
            asked([&](GError** error) { return atspi_accessible_get_process_id(application, error); });
        if (static_cast<pid_t>(owner) == process)
            collect(made, all);
    }
    return all;
}

std::optional<AccessibleElement> AccessibleElement::find(pid_t process, std::string_view role,
                                                         std::string_view name) {
    for (const auto& element : shownBy(process)) {
        if (element.name() == name && element.role() == role)
            return element;
    }
    return std::nullopt;
}

std::string AccessibleElement::role() const {
    return taken(
        asked([&](GError** error) { return atspi_accessible_get_role_name(accessible_.get(), error); }));
}

std::string AccessibleElement::name() const {
    return taken(asked([&](GError** error) { return atspi_accessible_get_name(accessible_.get(), error); }));
}

std::string AccessibleElement::description() const {
    return taken(
        asked([&](GError** error) { return atspi_accessible_get_description(accessible_.get(), error); }));
}

std::string AccessibleElement::text() const {
    const auto text = owned(atspi_accessible_get_text_iface(accessible_.get()));
    if (!text)
        return {};
    const gint count =
        asked([&](GError** error) { return atspi_text_get_character_count(text.get(), error); });
    return taken(asked([&](GError** error) { return atspi_text_get_text(text.get(), 0, count, error); }));
}

bool AccessibleElement::has(int state) const {
    const auto states = owned(atspi_accessible_get_state_set(accessible_.get()));
    return states && atspi_state_set_contains(states.get(), static_cast<AtspiStateType>(state));
}

bool AccessibleElement::isShowing() const {
    return has(ATSPI_STATE_SHOWING);
}

bool AccessibleElement::isFocused() const {
    return has(ATSPI_STATE_FOCUSED);
}

bool AccessibleElement::isFocusable() const {
    return has(ATSPI_STATE_FOCUSABLE);
}

bool AccessibleElement::isChecked() const {
    return has(ATSPI_STATE_CHECKED);
}

bool AccessibleElement::isEnabled() const {
    return has(ATSPI_STATE_ENABLED);
}

DesktopRectangle AccessibleElement::bounds() const {
    const auto component = owned(atspi_accessible_get_component_iface(accessible_.get()));
    AtspiRect* rectangle = component ? asked([&](GError** error) {
        return atspi_component_get_extents(component.get(), ATSPI_COORD_TYPE_SCREEN, error);
    })
                                     : nullptr;
    const DesktopRectangle result =
        rectangle ? DesktopRectangle{rectangle->x, rectangle->y, rectangle->width, rectangle->height}
                  : DesktopRectangle{};
    g_free(rectangle);
    return result;
}

bool AccessibleElement::press() const {
    const auto action = owned(atspi_accessible_get_action_iface(accessible_.get()));
    return action && asked([&](GError** error) { return atspi_action_do_action(action.get(), 0, error); });
}

bool AccessibleElement::setText(const std::string& text) const {
    const auto field = owned(atspi_accessible_get_editable_text_iface(accessible_.get()));
    return field && asked([&](GError** error) {
               return atspi_editable_text_set_text_contents(field.get(), text.c_str(), error);
           });
}

bool AccessibleElement::takeFocus() const {
    const auto component = owned(atspi_accessible_get_component_iface(accessible_.get()));
    return component &&
           asked([&](GError** error) { return atspi_component_grab_focus(component.get(), error); });
}

} // namespace quillmoth::test
