#include "Platform/Linux/Wayland/VirtualKeyboardEvents.h"

#include <cstdlib>
#include <linux/input-event-codes.h>
#include <sys/mman.h>
#include <unistd.h>
#include <virtual-keyboard-unstable-v1.h>

namespace quillmoth::platform {

namespace {

/// X keycodes begin behind the kernel's.
constexpr std::uint32_t kKeycodeOffset = 8;

FileDescriptor fileWith(const std::string& text) {
    FileDescriptor file(memfd_create("quillmoth-keymap", MFD_CLOEXEC));
    // With its null.
    const auto size = static_cast<ssize_t>(text.size() + 1);
    return file && write(file.get(), text.c_str(), text.size() + 1) == size ? std::move(file)
                                                                            : FileDescriptor();
}

} // namespace

std::unique_ptr<VirtualKeyboardEvents> VirtualKeyboardEvents::create(WaylandConnection& connection,
                                                                     const WaylandKeyboardLayout& layout) {
    auto* manager =
        connection.bind<zwp_virtual_keyboard_manager_v1>(zwp_virtual_keyboard_manager_v1_interface, 1);
    if (manager == nullptr || connection.seat() == nullptr)
        return nullptr;
    return std::unique_ptr<VirtualKeyboardEvents>(new VirtualKeyboardEvents(connection, layout, manager));
}

VirtualKeyboardEvents::VirtualKeyboardEvents(WaylandConnection& connection,
                                             const WaylandKeyboardLayout& layout,
                                             zwp_virtual_keyboard_manager_v1* manager)
    : WaylandKeyboardEvents(connection, layout), manager_(manager) {}

VirtualKeyboardEvents::~VirtualKeyboardEvents() {
    if (keyboard_ != nullptr)
        zwp_virtual_keyboard_v1_destroy(keyboard_);
    wl_proxy_destroy(reinterpret_cast<wl_proxy*>(manager_));
}

bool VirtualKeyboardEvents::makeReady() {
    const auto keymap = layout_.keymap();
    const std::unique_ptr<char, void (*)(void*)> text(
        keymap ? xkb_keymap_get_as_string(keymap.get(), XKB_KEYMAP_FORMAT_TEXT_V1) : nullptr, &std::free);
    if (!text)
        return false;
    if (keyboard_ == nullptr)
        keyboard_ = zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(manager_, connection_.seat());
    if (keymapText_ == text.get())
        return true;
    const FileDescriptor file = fileWith(text.get());
    if (!file)
        return false;
    keymapText_ = text.get();
    const auto bitOf = [&keymap](const char* modifier) {
        const auto index = xkb_keymap_mod_get_index(keymap.get(), modifier);
        return index != XKB_MOD_INVALID ? 1U << index : 0U;
    };
    controlBit_ = bitOf(XKB_MOD_NAME_CTRL);
    shiftBit_ = bitOf(XKB_MOD_NAME_SHIFT);
    zwp_virtual_keyboard_v1_keymap(keyboard_, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file.get(),
                                   static_cast<std::uint32_t>(keymapText_.size() + 1));
    return true;
}

void VirtualKeyboardEvents::send(const Stroke& stroke, bool isDown) {
    const auto sendKey = [this, isDown](std::uint32_t key) {
        zwp_virtual_keyboard_v1_key(keyboard_, time_++, key,
                                    isDown ? WL_KEYBOARD_KEY_STATE_PRESSED : WL_KEYBOARD_KEY_STATE_RELEASED);
    };
    const std::uint32_t key = stroke.keycode - kKeycodeOffset;
    const auto sendHeld = [&] {
        if (stroke.control)
            sendKey(KEY_LEFTCTRL);
        if (stroke.shift)
            sendKey(KEY_LEFTSHIFT);
    };
    if (isDown) {
        sendHeld();
        sendModifiers((stroke.control ? controlBit_ : 0) | (stroke.shift ? shiftBit_ : 0), stroke.layout);
    }
    sendKey(key);
    if (!isDown)
        sendHeld();
    if (!isDown)
        sendModifiers(0, 0);
}

void VirtualKeyboardEvents::sendModifiers(std::uint32_t depressed, std::uint32_t layout) {
    zwp_virtual_keyboard_v1_modifiers(keyboard_, depressed, 0, 0, layout);
}

} // namespace quillmoth::platform
