#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

struct wl_display;
struct wl_seat;
struct xkb_context;
struct xkb_keymap;
struct zwlr_virtual_pointer_v1;
struct zwlr_virtual_pointer_manager_v1;
struct zwp_virtual_keyboard_v1;
struct zwp_virtual_keyboard_manager_v1;

namespace quillmoth::test {

/// The user's hands in a session of a wlroots compositor: a keyboard with an American layout, and a pointer.
/// Each call returns after the compositor has taken it.
class WaylandInput {
public:
    /// To the compositor of the environment, whose output has that size. Throws std::runtime_error where it
    /// takes no input.
    WaylandInput(int width, int height);
    ~WaylandInput();
    WaylandInput(const WaylandInput&) = delete;
    WaylandInput& operator=(const WaylandInput&) = delete;

    /// By linux/input-event-codes.h.
    void pressKey(int key) { sendKey(key, true); }

    void releaseKey(int key) { sendKey(key, false); }

    void tapKey(int key);
    /// The last one while the others are held.
    void chord(const std::vector<int>& keys);
    /// Small letters, digits, spaces, full stops.
    void type(std::string_view text);

    void movePointer(int x, int y);
    /// Apart from the clicks before it.
    void click(int x, int y, int clicks = 1);
    /// From one place to the other with the button held, in steps.
    void drag(int fromX, int fromY, int byX, int byY);

private:
    void sendKey(int key, bool isDown);
    void sendButton(bool isDown);
    void finish();

    int width_;
    int height_;
    std::uint32_t time_ = 1;
    std::uint32_t modifiers_ = 0;
    wl_display* display_;
    wl_seat* seat_ = nullptr;
    zwp_virtual_keyboard_manager_v1* keyboards_ = nullptr;
    zwlr_virtual_pointer_manager_v1* pointers_ = nullptr;
    zwp_virtual_keyboard_v1* keyboard_ = nullptr;
    zwlr_virtual_pointer_v1* pointer_ = nullptr;
};

} // namespace quillmoth::test
