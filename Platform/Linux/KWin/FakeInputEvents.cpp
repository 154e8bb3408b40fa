#include "Platform/Linux/KWin/FakeInputEvents.h"

#include <fake-input.h>
#include <linux/input-event-codes.h>
#include <utility>

namespace quillmoth::platform {

namespace {

/// The first one with keys.
constexpr std::uint32_t kFakeInputVersion = 4;
/// KWin looks through all desktop entries then.
constexpr std::chrono::milliseconds kConnectLimit{1000};
constexpr std::chrono::seconds kTryInterval{30};
/// It looks for new entries each one and a half seconds at most, and only behind the answer to who asks then.
constexpr std::chrono::seconds kBetweenTries{2};
constexpr int kTries = 4;
/// X keycodes begin behind the kernel's.
constexpr std::uint32_t kFirstKeycode = 8;

constexpr std::uint32_t kModifierKeys[] = {KEY_LEFTALT,   KEY_RIGHTALT,   KEY_LEFTMETA, KEY_RIGHTMETA,
                                           KEY_LEFTSHIFT, KEY_RIGHTSHIFT, KEY_LEFTCTRL, KEY_RIGHTCTRL};

} // namespace

FakeInputEvents::FakeInputEvents(WaylandConnection& connection, const WaylandKeyboardLayout& layout)
    : WaylandKeyboardEvents(connection, layout) {
    take(connection);
}

FakeInputEvents::~FakeInputEvents() {
    letGo();
}

void FakeInputEvents::take(WaylandConnection& from) {
    input_ = from.bind<org_kde_kwin_fake_input>(org_kde_kwin_fake_input_interface, kFakeInputVersion);
    if (input_ != nullptr && org_kde_kwin_fake_input_get_version(input_) < kFakeInputVersion)
        letGo();
    if (input_ != nullptr)
        org_kde_kwin_fake_input_authenticate(input_, "Quillmoth", "Answers are pasted into other programs.");
}

void FakeInputEvents::letGo() {
    if (input_ != nullptr)
        org_kde_kwin_fake_input_destroy(input_.exchange(nullptr));
    own_.reset();
}

bool FakeInputEvents::canSend() {
    return connection_
        .ask<bool>([this] { return makeReady(); }, WaylandConnection::Clock::now() + kConnectLimit)
        .value_or(false);
}

void FakeInputEvents::expectOffer() {
    triesLeft_ = kTries;
    tries_.callOnTimeout([this] {
        connection_.post([this] { connect(); });
        if (--triesLeft_ == 0 || input_ != nullptr)
            tries_.stop();
    });
    tries_.start(kBetweenTries);
}

std::optional<CGKeyboardEvent> FakeInputEvents::createKeyboardEvent(std::uint16_t keyCode, bool keyDown) {
    return canSend() ? WaylandKeyboardEvents::createKeyboardEvent(keyCode, keyDown) : std::nullopt;
}

bool FakeInputEvents::makeReady() {
    const bool mayTry = input_ == nullptr && WaylandConnection::Clock::now() >= nextTry_;
    return mayTry ? connect() : input_ != nullptr;
}

bool FakeInputEvents::connect() {
    if (input_ != nullptr)
        return true;
    nextTry_ = WaylandConnection::Clock::now() + kTryInterval;
    auto opened = WaylandConnection::open();
    if (!opened)
        return false;
    take(**opened);
    if (input_ != nullptr)
        own_ = std::move(*opened);
    return input_ != nullptr;
}

bool FakeInputEvents::finish() {
    return own_ ? own_->synchronize() : connection_.synchronize();
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
    const auto sendHeld = [&] {
        if (stroke.control)
            sendKey(KEY_LEFTCTRL, isDown);
        if (stroke.shift)
            sendKey(KEY_LEFTSHIFT, isDown);
    };
    if (isDown)
        sendHeld();
    sendKey(stroke.keycode - kFirstKeycode, isDown);
    if (!isDown)
        sendHeld();
}

} // namespace quillmoth::platform
