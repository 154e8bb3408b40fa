#include "Platform/Linux/Wayland/WaylandKeyboardEvents.h"

#include "Platform/Linux/Shared/Keycodes.h"

#include <cstdlib>
#include <linux/input-event-codes.h>
#include <sys/mman.h>
#include <unistd.h>
#include <virtual-keyboard-unstable-v1.h>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace quillmoth::platform {

namespace {

constexpr std::chrono::milliseconds kSendLimit{250};
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

std::unique_ptr<WaylandKeyboardEvents> WaylandKeyboardEvents::create(WaylandConnection& connection,
                                                                     const WaylandKeyboardLayout& layout) {
    auto* manager =
        connection.bind<zwp_virtual_keyboard_manager_v1>(zwp_virtual_keyboard_manager_v1_interface, 1);
    if (manager == nullptr || connection.seat() == nullptr)
        return nullptr;
    return std::unique_ptr<WaylandKeyboardEvents>(new WaylandKeyboardEvents(connection, layout, manager));
}

WaylandKeyboardEvents::WaylandKeyboardEvents(WaylandConnection& connection,
                                             const WaylandKeyboardLayout& layout,
                                             zwp_virtual_keyboard_manager_v1* manager)
    : connection_(connection), layout_(layout), manager_(manager) {}

WaylandKeyboardEvents::~WaylandKeyboardEvents() {
    if (keyboard_ != nullptr)
        zwp_virtual_keyboard_v1_destroy(keyboard_);
    wl_proxy_destroy(reinterpret_cast<wl_proxy*>(manager_));
}

std::optional<CGKeyboardEvent> WaylandKeyboardEvents::createKeyboardEvent(std::uint16_t keyCode,
                                                                          bool keyDown) {
    if (!keycodeForVirtualKeyCode(keyCode))
        return std::nullopt;
    return CGKeyboardEvent{keyCode, keyDown, 0};
}

void WaylandKeyboardEvents::post(const CGKeyboardEvent& event) {
    const auto keycode = keycodeForVirtualKeyCode(event.keyCode);
    const bool isCommand = (event.flags & keys::kFlagCommand) != 0;
    const bool isForbidden = isForbidden_ && isCommand && event.keyDown && isForbidden_();
    if (!keycode || isForbidden)
        return;
    const Stroke stroke{.keycode = *keycode, .layout = 0, .control = isCommand};
    connection_.ask<bool>(
        [this, stroke, isDown = event.keyDown] {
            if (!makeReady())
                return false;
            send(stroke, isDown);
            return connection_.synchronize();
        },
        WaylandConnection::Clock::now() + kSendLimit);
}

bool WaylandKeyboardEvents::postPaste() {
    const auto stroke = strokeFor(XKB_KEY_v, true);
    return stroke && strike(*stroke);
}

bool WaylandKeyboardEvents::postDelete() {
    const auto stroke = strokeFor(XKB_KEY_Delete, false);
    return stroke && strike(*stroke);
}

std::optional<WaylandKeyboardEvents::Stroke> WaylandKeyboardEvents::strokeFor(xkb_keysym_t keysym,
                                                                              bool control) const {
    const auto keymap = layout_.keymap();
    if (!keymap)
        return std::nullopt;
    // What chords go by is the first of the user's layouts that has the letter.
    for (xkb_layout_index_t layout = 0; layout < xkb_keymap_num_layouts(keymap.get()); ++layout) {
        for (auto key = xkb_keymap_min_keycode(keymap.get()); key <= xkb_keymap_max_keycode(keymap.get());
             ++key) {
            const xkb_keysym_t* keysyms = nullptr;
            if (xkb_keymap_key_get_syms_by_level(keymap.get(), key, layout, 0, &keysyms) == 1 &&
                keysyms[0] == keysym)
                return Stroke{.keycode = key, .layout = layout, .control = control};
        }
    }
    return std::nullopt;
}

bool WaylandKeyboardEvents::strike(const Stroke& stroke) {
    return connection_
        .ask<bool>(
            [this, stroke] {
                if (!makeReady())
                    return false;
                send(stroke, true);
                send(stroke, false);
                return connection_.synchronize();
            },
            WaylandConnection::Clock::now() + kSendLimit)
        .value_or(false);
}

bool WaylandKeyboardEvents::makeReady() {
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
    controlBit_ = 1U << xkb_keymap_mod_get_index(keymap.get(), XKB_MOD_NAME_CTRL);
    zwp_virtual_keyboard_v1_keymap(keyboard_, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file.get(),
                                   static_cast<std::uint32_t>(keymapText_.size() + 1));
    return true;
}

void WaylandKeyboardEvents::send(const Stroke& stroke, bool isDown) {
    const auto sendKey = [this, isDown](std::uint32_t key) {
        zwp_virtual_keyboard_v1_key(keyboard_, time_++, key,
                                    isDown ? WL_KEYBOARD_KEY_STATE_PRESSED : WL_KEYBOARD_KEY_STATE_RELEASED);
    };
    const std::uint32_t key = stroke.keycode - kKeycodeOffset;
    if (isDown && stroke.control)
        sendKey(KEY_LEFTCTRL);
    if (isDown)
        sendModifiers(stroke.control ? controlBit_ : 0, stroke.layout);
    sendKey(key);
    if (!isDown && stroke.control)
        sendKey(KEY_LEFTCTRL);
    if (!isDown)
        sendModifiers(0, 0);
}

void WaylandKeyboardEvents::sendModifiers(std::uint32_t depressed, std::uint32_t layout) {
    zwp_virtual_keyboard_v1_modifiers(keyboard_, depressed, 0, 0, layout);
}

} // namespace quillmoth::platform
