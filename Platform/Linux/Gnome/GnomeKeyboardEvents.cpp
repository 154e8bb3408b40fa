#include "Platform/Linux/Gnome/GnomeKeyboardEvents.h"

#include "Platform/Linux/Gnome/MutterKeys.h"
#include "Platform/Linux/Shared/Keycodes.h"

#include <linux/input-event-codes.h>

#include <utility>

namespace quillmoth::platform {

namespace {

/// X keycodes begin behind the kernel's.
constexpr std::uint32_t kBehindKernels = 8;

std::vector<KeyStep> strokeOf(std::uint32_t key, bool withControl) {
    std::vector<KeyStep> steps = {{.key = key, .isDown = true}, {.key = key, .isDown = false}};
    if (withControl) {
        steps.insert(steps.begin(), {.key = KEY_LEFTCTRL, .isDown = true});
        steps.push_back({.key = KEY_LEFTCTRL, .isDown = false});
    }
    return steps;
}

} // namespace

GnomeKeyboardEvents::GnomeKeyboardEvents(
    GnomeExtension& extension, std::function<std::optional<std::uint32_t>(const std::string& name)> keycodeOf)
    : extension_(extension), keycodeOf_(std::move(keycodeOf)), hasMutter_(hasMutterKeys()) {}

std::optional<CGKeyboardEvent> GnomeKeyboardEvents::createKeyboardEvent(std::uint16_t keyCode, bool keyDown) {
    if (!extension_.isThere() || !keycodeForVirtualKeyCode(keyCode))
        return std::nullopt;
    return CGKeyboardEvent{keyCode, keyDown, 0};
}

void GnomeKeyboardEvents::post(const CGKeyboardEvent& event) {
    const auto keycode = keycodeForVirtualKeyCode(event.keyCode);
    const bool isCommand = (event.flags & keys::kFlagCommand) != 0;
    if (!keycode || event.keyDown || (isCommand && isForbidden_ && isForbidden_()))
        return;
    extension_.sendKeys(strokeOf(*keycode - kBehindKernels, isCommand));
}

bool GnomeKeyboardEvents::canPaste() const {
    return extension_.isThere() || hasMutter_;
}

bool GnomeKeyboardEvents::send(const std::vector<KeyStep>& steps) {
    return extension_.isThere() ? extension_.sendKeys(steps) : hasMutter_ && sendMutterKeys(steps);
}

bool GnomeKeyboardEvents::postPaste() {
    const auto keycode = keycodeOf_("v");
    return keycode && send(strokeOf(*keycode - kBehindKernels, true));
}

bool GnomeKeyboardEvents::postDelete() {
    return send(strokeOf(KEY_DELETE, false));
}

} // namespace quillmoth::platform
