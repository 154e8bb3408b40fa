#include "tests/desktop/wayland/WlrootsInput.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <linux/input-event-codes.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <sys/mman.h>
#include <unistd.h>
#include <virtual-keyboard-unstable-v1.h>
#include <wayland-client.h>
#include <wlr-virtual-pointer-unstable-v1.h>
#include <xkbcommon/xkbcommon.h>

namespace quillmoth::test {

namespace {

struct Globals {
    wl_seat* seat = nullptr;
    zwp_virtual_keyboard_manager_v1* keyboards = nullptr;
    zwlr_virtual_pointer_manager_v1* pointers = nullptr;
};

Globals globalsOf(wl_display* display) {
    static constexpr wl_registry_listener kListener = {
        .global =
            [](void* data, wl_registry* registry, std::uint32_t name, const char* interface, std::uint32_t) {
                auto& found = *static_cast<Globals*>(data);
                const auto bound = [&](const wl_interface& wanted) -> void* {
                    return std::strcmp(interface, wanted.name) == 0
                               ? wl_registry_bind(registry, name, &wanted, 1)
                               : nullptr;
                };
                if (auto* seat = bound(wl_seat_interface))
                    found.seat = static_cast<wl_seat*>(seat);
                else if (auto* keyboards = bound(zwp_virtual_keyboard_manager_v1_interface))
                    found.keyboards = static_cast<zwp_virtual_keyboard_manager_v1*>(keyboards);
                else if (auto* pointers = bound(zwlr_virtual_pointer_manager_v1_interface))
                    found.pointers = static_cast<zwlr_virtual_pointer_manager_v1*>(pointers);
            },
        .global_remove = [](void*, wl_registry*, std::uint32_t) {},
    };
    Globals globals;
    wl_registry* registry = wl_display_get_registry(display);
    wl_registry_add_listener(registry, &kListener, &globals);
    wl_display_roundtrip(display);
    wl_registry_destroy(registry);
    return globals;
}

void sendKeymap(zwp_virtual_keyboard_v1* keyboard) {
    const std::unique_ptr<xkb_context, void (*)(xkb_context*)> context(xkb_context_new(XKB_CONTEXT_NO_FLAGS),
                                                                       &xkb_context_unref);
    const xkb_rule_names names = {"evdev", "pc105", "us", "", ""};
    const std::unique_ptr<xkb_keymap, void (*)(xkb_keymap*)> keymap(
        xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS), &xkb_keymap_unref);
    const std::unique_ptr<char, void (*)(void*)> text(
        xkb_keymap_get_as_string(keymap.get(), XKB_KEYMAP_FORMAT_TEXT_V1), &std::free);
    const std::size_t size = std::strlen(text.get()) + 1;
    const int file = memfd_create("keymap", MFD_CLOEXEC);
    if (write(file, text.get(), size) != static_cast<ssize_t>(size))
        throw std::runtime_error("no keymap");
    zwp_virtual_keyboard_v1_keymap(keyboard, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file,
                                   static_cast<std::uint32_t>(size));
    close(file);
}

/// The bit of the modifier in every keymap, 0 for other keys.
std::uint32_t modifierBit(int key) {
    switch (key) {
    case KEY_LEFTSHIFT:
        return 1;
    case KEY_LEFTCTRL:
        return 4;
    case KEY_LEFTALT:
        return 8;
    case KEY_LEFTMETA:
        return 64;
    default:
        return 0;
    }
}

} // namespace

WlrootsInput::WlrootsInput(int width, int height)
    : width_(width), height_(height), display_(wl_display_connect(nullptr)) {
    if (display_ == nullptr)
        throw std::runtime_error("no Wayland compositor");
    const Globals globals = globalsOf(display_);
    seat_ = globals.seat;
    keyboards_ = globals.keyboards;
    pointers_ = globals.pointers;
    if (!seat_ || !keyboards_ || !pointers_)
        throw std::runtime_error("the compositor takes no synthetic input");
    keyboard_ = zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(keyboards_, seat_);
    pointer_ = zwlr_virtual_pointer_manager_v1_create_virtual_pointer(pointers_, seat_);
    sendKeymap(keyboard_);
    finish();
}

WlrootsInput::~WlrootsInput() {
    wl_display_disconnect(display_);
}

std::uint32_t WlrootsInput::nextTime() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
    lastTime_ = std::max(lastTime_ + 1, static_cast<std::uint32_t>(milliseconds) + ahead_);
    return lastTime_;
}

void WlrootsInput::finish() {
    if (wl_display_roundtrip(display_) < 0)
        throw std::runtime_error("the compositor has gone");
}

void WlrootsInput::sendKey(int key, bool isDown) {
    zwp_virtual_keyboard_v1_key(keyboard_, nextTime(), static_cast<std::uint32_t>(key), isDown ? 1 : 0);
    if (const auto bit = modifierBit(key)) {
        modifiers_ = isDown ? modifiers_ | bit : modifiers_ & ~bit;
        zwp_virtual_keyboard_v1_modifiers(keyboard_, modifiers_, 0, 0, 0);
    }
    finish();
}

void WlrootsInput::movePointer(int x, int y) {
    zwlr_virtual_pointer_v1_motion_absolute(pointer_, nextTime(), static_cast<std::uint32_t>(x),
                                            static_cast<std::uint32_t>(y), static_cast<std::uint32_t>(width_),
                                            static_cast<std::uint32_t>(height_));
    zwlr_virtual_pointer_v1_frame(pointer_);
    finish();
}

void WlrootsInput::sendButton(bool isDown) {
    zwlr_virtual_pointer_v1_button(pointer_, nextTime(), BTN_LEFT, isDown ? 1 : 0);
    zwlr_virtual_pointer_v1_frame(pointer_);
    finish();
}

void WlrootsInput::letTimePass() {
    constexpr std::uint32_t kApart = 1000;
    ahead_ += kApart;
}

} // namespace quillmoth::test
