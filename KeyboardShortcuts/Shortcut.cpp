#include "KeyboardShortcuts/Shortcut.h"

#include "Foundation/JSONWriter.h"

#include <limits>
#include <nlohmann/json.hpp>

namespace quillmoth::KeyboardShortcuts {

namespace {

std::optional<std::int64_t> integerMember(const nlohmann::json& object, const char* name) {
    const auto member = object.find(name);
    if (member == object.end() || !member->is_number_integer())
        return std::nullopt;
    const bool fits = !member->is_number_unsigned() || member->get<std::uint64_t>() <= INT64_MAX;
    return fits ? std::optional(member->get<std::int64_t>()) : std::nullopt;
}

} // namespace

Shortcut::Shortcut(Key key, ModifierFlags modifiers)
    : carbonKeyCode(key.rawValue), carbonModifiers(KeyboardShortcuts::carbonModifiers(modifiers)) {}

Shortcut::Shortcut(std::int64_t keyCode, CarbonModifiers modifiers)
    : Shortcut(Key(keyCode), modifierFlags(modifiers)) {}

std::optional<Shortcut> Shortcut::fromEvent(const KeyEvent& event) {
    if (event.type != KeyEvent::kKeyDown && event.type != KeyEvent::kKeyUp)
        return std::nullopt;
    return Shortcut(Key(event.keyCode), event.modifierFlags);
}

std::optional<Shortcut> Shortcut::fromJSON(std::string_view text) {
    const auto object = nlohmann::json::parse(text, nullptr, false);
    if (!object.is_object())
        return std::nullopt;
    const auto keyCode = integerMember(object, "carbonKeyCode");
    const auto modifiers = integerMember(object, "carbonModifiers");
    if (!keyCode || !modifiers || *keyCode < 0 || *keyCode > std::numeric_limits<std::uint16_t>::max())
        return std::nullopt;
    return Shortcut(*keyCode, *modifiers);
}

std::string Shortcut::toJSON() const {
    std::string text;
    JSONWriter writer(text);
    writer.beginObject();
    writer.key("carbonKeyCode");
    writer.value(carbonKeyCode);
    writer.key("carbonModifiers");
    writer.value(carbonModifiers);
    writer.endObject();
    return text;
}

} // namespace quillmoth::KeyboardShortcuts
