#include "Platform/Linux/Wayland/WaylandKeyboardLayout.h"

#include "Platform/Linux/Shared/Keycodes.h"
#include "Platform/Linux/Shared/KeymapText.h"

#include <sys/mman.h>
#include <utility>

namespace quillmoth::platform {

WaylandKeyboardLayout::WaylandKeyboardLayout(WaylandConnection& connection)
    : seat_(connection.seat()), context_(xkb_context_new(XKB_CONTEXT_NO_FLAGS), &xkb_context_unref) {
    static constexpr wl_seat_listener kListener = {
        .capabilities =
            [](void* data, wl_seat*, std::uint32_t capabilities) {
                static_cast<WaylandKeyboardLayout*>(data)->followSeat(capabilities);
            },
        .name = [](void*, wl_seat*, const char*) {},
    };
    if (seat_ == nullptr || !context_)
        return;
    wl_seat_add_listener(seat_, &kListener, this);
    // The capabilities, and then the keymap.
    connection.synchronize();
    connection.synchronize();
}

WaylandKeyboardLayout::~WaylandKeyboardLayout() {
    if (keyboard_ != nullptr)
        wl_keyboard_destroy(keyboard_);
}

void WaylandKeyboardLayout::followSeat(std::uint32_t capabilities) {
    static constexpr wl_keyboard_listener kListener = {
        .keymap =
            [](void* data, wl_keyboard*, std::uint32_t format, std::int32_t file, std::uint32_t size) {
                static_cast<WaylandKeyboardLayout*>(data)->take(format, FileDescriptor(file), size);
            },
        .enter = [](void*, wl_keyboard*, std::uint32_t, wl_surface*, wl_array*) {},
        .leave = [](void*, wl_keyboard*, std::uint32_t, wl_surface*) {},
        .key = [](void*, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t) {},
        .modifiers = [](void*, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t,
                        std::uint32_t) {},
        .repeat_info = [](void*, wl_keyboard*, std::int32_t, std::int32_t) {},
    };
    const bool hasKeyboard = (capabilities & WL_SEAT_CAPABILITY_KEYBOARD) != 0;
    if (hasKeyboard && keyboard_ == nullptr) {
        keyboard_ = wl_seat_get_keyboard(seat_);
        wl_keyboard_add_listener(keyboard_, &kListener, this);
    } else if (!hasKeyboard && keyboard_ != nullptr) {
        wl_keyboard_destroy(std::exchange(keyboard_, nullptr));
    }
}

void WaylandKeyboardLayout::take(std::uint32_t format, FileDescriptor file, std::uint32_t size) {
    if (format != WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1 || size == 0)
        return;
    void* text = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file.get(), 0);
    if (text == MAP_FAILED)
        return;
    // With a null at its end.
    Keymap keymap(xkb_keymap_new_from_buffer(context_.get(), static_cast<const char*>(text), size - 1,
                                             XKB_KEYMAP_FORMAT_TEXT_V1, XKB_KEYMAP_COMPILE_NO_FLAGS),
                  &xkb_keymap_unref);
    munmap(text, size);
    const std::lock_guard lock(mutex_);
    if (keymap)
        keymap_ = std::move(keymap);
}

WaylandKeyboardLayout::Keymap WaylandKeyboardLayout::keymap() const {
    const std::lock_guard lock(mutex_);
    if (keymap_ || !context_)
        return keymap_;
    Keymap usual(xkb_keymap_new_from_names(context_.get(), nullptr, XKB_KEYMAP_COMPILE_NO_FLAGS),
                 &xkb_keymap_unref);
    return usual;
}

std::optional<std::string> WaylandKeyboardLayout::translate(std::uint16_t keyCode) {
    const auto keycode = keycodeForVirtualKeyCode(keyCode);
    const Keymap keymap = this->keymap();
    return keycode && keymap ? writtenByKey(keymap.get(), *keycode, 0) : std::nullopt;
}

std::optional<std::uint32_t> WaylandKeyboardLayout::keycodeOf(const std::string& keysymName) const {
    const Keymap keymap = this->keymap();
    const xkb_keysym_t wanted = xkb_keysym_from_name(keysymName.c_str(), XKB_KEYSYM_CASE_INSENSITIVE);
    if (!keymap || wanted == XKB_KEY_NoSymbol)
        return std::nullopt;
    for (auto key = xkb_keymap_min_keycode(keymap.get()); key <= xkb_keymap_max_keycode(keymap.get());
         ++key) {
        const xkb_keysym_t* keysyms = nullptr;
        if (xkb_keymap_key_get_syms_by_level(keymap.get(), key, 0, 0, &keysyms) == 1 &&
            (keysyms[0] == wanted || keysyms[0] == xkb_keysym_to_lower(wanted)))
            return key;
    }
    return std::nullopt;
}

} // namespace quillmoth::platform
