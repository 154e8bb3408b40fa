#include "Platform/Linux/Gnome/GnomeKeyboardEvents.h"

#include "Platform/Linux/Shared/Keycodes.h"

#include <linux/input-event-codes.h>

#include <chrono>
#include <thread>
#include <utility>

namespace quillmoth::platform {

namespace {

/// X keycodes begin behind the kernel's.
constexpr std::uint32_t kBehindKernels = 8;

/// The user may still hold one of the keys for Control, and let go of it at any time: the compositor forgets
/// then that it is held here too, and the letter alone would go over the selection. So both are pressed.
std::vector<KeyStep> controlAnd(std::uint32_t key) {
    return {{.key = KEY_LEFTCTRL, .isDown = true},
            {.key = KEY_RIGHTCTRL, .isDown = true},
            {.key = key, .isDown = true},
            {.key = key, .isDown = false}};
}

const std::vector<KeyStep>& controlUp() {
    static const std::vector<KeyStep> steps = {{.key = KEY_RIGHTCTRL, .isDown = false},
                                               {.key = KEY_LEFTCTRL, .isDown = false}};
    return steps;
}

/// For a key on its way through an input method.
constexpr std::chrono::milliseconds kMethodTime{50};

} // namespace

GnomeKeyboardEvents::GnomeKeyboardEvents(
    GnomeExtension& extension, std::function<std::optional<std::uint32_t>(const std::string& name)> keycodeOf)
    : extension_(extension), keycodeOf_(std::move(keycodeOf)), hasMutter_(MutterKeys::areThere()) {}

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
    const std::uint32_t key = *keycode - kBehindKernels;
    if (!isCommand) {
        extension_.sendKeys({{.key = key, .isDown = true}, {.key = key, .isDown = false}});
    } else if (extension_.sendKeys(controlAnd(key))) {
        std::this_thread::sleep_for(kMethodTime);
        extension_.sendKeys(controlUp());
    }
}

bool GnomeKeyboardEvents::canPaste() const {
    return extension_.isThere() || hasMutter_;
}

bool GnomeKeyboardEvents::send(const std::vector<KeyStep>& steps) {
    return extension_.isThere() ? extension_.sendKeys(steps) : hasMutter_ && mutter_.send(steps);
}

bool GnomeKeyboardEvents::pressPaste() {
    const auto keycode = keycodeOf_("v");
    return keycode && send(controlAnd(*keycode - kBehindKernels));
}

void GnomeKeyboardEvents::releasePaste() {
    (void)send(controlUp());
    mutter_.end();
}

bool GnomeKeyboardEvents::postDelete() {
    const bool isSent = send({{.key = KEY_DELETE, .isDown = true}, {.key = KEY_DELETE, .isDown = false}});
    mutter_.end();
    return isSent;
}

} // namespace quillmoth::platform
