#include "Platform/Linux/KWin/FakeInputEvents.h"

#include <fake-input.h>
#include <linux/input-event-codes.h>
#include <utility>

namespace quillmoth::platform {

namespace {

/// The first one with keys.
constexpr std::uint32_t kFakeInputVersion = 4;
constexpr std::chrono::milliseconds kConnectLimit{250};
/// X keycodes begin behind the kernel's.
constexpr std::uint32_t kFirstKeycode = 8;

constexpr std::uint32_t kModifierKeys[] = {KEY_LEFTALT,   KEY_RIGHTALT,   KEY_LEFTMETA, KEY_RIGHTMETA,
                                           KEY_LEFTSHIFT, KEY_RIGHTSHIFT, KEY_LEFTCTRL, KEY_RIGHTCTRL};

} // namespace

FakeInputEvents::FakeInputEvents(WaylandConnection& connection, const WaylandKeyboardLayout& layout)
    : WaylandKeyboardEvents(connection, layout) {}

FakeInputEvents::~FakeInputEvents() {
    disconnect();
}

bool FakeInputEvents::canSend() {
    return connection_
        .ask<bool>([this] { return makeReady(); }, WaylandConnection::Clock::now() + kConnectLimit)
        .value_or(false);
}

std::optional<CGKeyboardEvent> FakeInputEvents::createKeyboardEvent(std::uint16_t keyCode, bool keyDown) {
    return canSend() ? WaylandKeyboardEvents::createKeyboardEvent(keyCode, keyDown) : std::nullopt;
}

bool FakeInputEvents::makeReady() {
    if (own_ && own_->synchronize())
        return true;
    disconnect();
    auto opened = WaylandConnection::open();
    auto* input = opened ? (*opened)->bind<org_kde_kwin_fake_input>(org_kde_kwin_fake_input_interface,
                                                                    kFakeInputVersion)
                         : nullptr;
    if (input == nullptr)
        return false;
    own_ = std::move(*opened);
    input_ = input;
    if (org_kde_kwin_fake_input_get_version(input_) < kFakeInputVersion) {
        disconnect();
        return false;
    }
    org_kde_kwin_fake_input_authenticate(input_, "Quillmoth", "Answers are pasted into other programs.");
    return true;
}

bool FakeInputEvents::finish() {
    return own_ && own_->synchronize();
}

void FakeInputEvents::disconnect() {
    if (input_ != nullptr)
        org_kde_kwin_fake_input_destroy(std::exchange(input_, nullptr));
    own_.reset();
}

void FakeInputEvents::send(const Stroke& stroke, bool isDown) {
    const auto sendKey = [this](std::uint32_t key, bool goesDown) {
        org_kde_kwin_fake_input_keyboard_key(
            input_, key, goesDown ? WL_KEYBOARD_KEY_STATE_PRESSED : WL_KEYBOARD_KEY_STATE_RELEASED);
    };
    for (const std::uint32_t key : kModifierKeys) {
        if (isDown)
            sendKey(key, false);
    }
    if (isDown && stroke.control)
        sendKey(KEY_LEFTCTRL, true);
    sendKey(stroke.keycode - kFirstKeycode, isDown);
    if (!isDown && stroke.control)
        sendKey(KEY_LEFTCTRL, false);
}

} // namespace quillmoth::platform
