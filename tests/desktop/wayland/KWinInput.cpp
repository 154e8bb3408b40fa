#include "tests/desktop/wayland/KWinInput.h"

#include "tests/desktop/support/WaitFor.h"

#include <cstdint>
#include <cstring>
#include <fake-input.h>
#include <linux/input-event-codes.h>
#include <stdexcept>
#include <wayland-client.h>

namespace quillmoth::test {

namespace {

org_kde_kwin_fake_input* boundFakeInput(wl_display* display) {
    static constexpr wl_registry_listener kListener = {
        .global =
            [](void* data, wl_registry* registry, std::uint32_t name, const char* interface, std::uint32_t) {
                constexpr std::uint32_t kVersion = 4;
                auto*& input = *static_cast<org_kde_kwin_fake_input**>(data);
                if (std::strcmp(interface, org_kde_kwin_fake_input_interface.name) == 0)
                    input = static_cast<org_kde_kwin_fake_input*>(
                        wl_registry_bind(registry, name, &org_kde_kwin_fake_input_interface, kVersion));
            },
        .global_remove = [](void*, wl_registry*, std::uint32_t) {},
    };
    org_kde_kwin_fake_input* input = nullptr;
    wl_registry* registry = wl_display_get_registry(display);
    wl_registry_add_listener(registry, &kListener, &input);
    wl_display_roundtrip(display);
    wl_registry_destroy(registry);
    return input;
}

} // namespace

KWinInput::KWinInput() : display_(wl_display_connect(nullptr)) {
    if (display_ != nullptr)
        input_ = boundFakeInput(display_);
    if (input_ == nullptr)
        throw std::runtime_error("KWin takes no synthetic input");
    org_kde_kwin_fake_input_authenticate(input_, "Test", "It plays the user.");
    finish();
}

KWinInput::~KWinInput() {
    wl_display_disconnect(display_);
}

void KWinInput::finish() {
    if (wl_display_roundtrip(display_) < 0)
        throw std::runtime_error("KWin has gone");
}

void KWinInput::sendKey(int key, bool isDown) {
    org_kde_kwin_fake_input_keyboard_key(input_, static_cast<std::uint32_t>(key), isDown ? 1 : 0);
    finish();
}

void KWinInput::sendButton(bool isDown) {
    org_kde_kwin_fake_input_button(input_, BTN_LEFT, isDown ? 1 : 0);
    finish();
}

void KWinInput::movePointer(int x, int y) {
    org_kde_kwin_fake_input_pointer_motion_absolute(input_, wl_fixed_from_int(x), wl_fixed_from_int(y));
    finish();
}

void KWinInput::letTimePass() {
    // Longer than a double click takes.
    letPass(std::chrono::milliseconds(500));
}

} // namespace quillmoth::test
