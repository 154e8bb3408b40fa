#pragma once

#include "tests/desktop/wayland/WaylandInput.h"

#include <cstdint>

struct wl_display;
struct wl_seat;
struct zwlr_virtual_pointer_v1;
struct zwlr_virtual_pointer_manager_v1;
struct zwp_virtual_keyboard_v1;
struct zwp_virtual_keyboard_manager_v1;

namespace quillmoth::test {

/// By the protocols of wlroots' compositors.
class WlrootsInput final : public WaylandInput {
public:
    /// To the compositor of the environment, whose output has that size. Throws std::runtime_error where it
    /// takes no input.
    WlrootsInput(int width, int height);
    ~WlrootsInput() override;
    WlrootsInput(const WlrootsInput&) = delete;
    WlrootsInput& operator=(const WlrootsInput&) = delete;

    void movePointer(int x, int y) override;

private:
    void sendKey(int key, bool isDown) override;
    void sendButton(bool isDown) override;
    void letTimePass() override;
    void finish();
    /// In milliseconds, later than the time of any event before it.
    std::uint32_t nextTime();

    int width_;
    int height_;
    std::uint32_t lastTime_ = 0;
    /// How much later than it is.
    std::uint32_t ahead_ = 0;
    std::uint32_t modifiers_ = 0;
    wl_display* display_;
    wl_seat* seat_ = nullptr;
    zwp_virtual_keyboard_manager_v1* keyboards_ = nullptr;
    zwlr_virtual_pointer_manager_v1* pointers_ = nullptr;
    zwp_virtual_keyboard_v1* keyboard_ = nullptr;
    zwlr_virtual_pointer_v1* pointer_ = nullptr;
};

} // namespace quillmoth::test
