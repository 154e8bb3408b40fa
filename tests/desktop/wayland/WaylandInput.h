#pragma once

#include <string_view>
#include <vector>

namespace quillmoth::test {

/// The user's hands in a Wayland session: a keyboard with an American layout, and a pointer. Each call
/// returns after the compositor has taken it.
class WaylandInput {
public:
    virtual ~WaylandInput() = default;

    /// By linux/input-event-codes.h.
    void pressKey(int key) { sendKey(key, true); }

    void releaseKey(int key) { sendKey(key, false); }

    void tapKey(int key);
    /// The last one while the others are held.
    void chord(const std::vector<int>& keys);
    /// Small letters, digits, spaces, full stops.
    void type(std::string_view text);

    virtual void movePointer(int x, int y) = 0;

    /// The left one.
    void pressButton() { sendButton(true); }

    void releaseButton() { sendButton(false); }

    /// Apart from the clicks before it.
    void click(int x, int y, int clicks = 1);
    /// From one place to the other with the button held, in steps.
    void drag(int fromX, int fromY, int byX, int byY);

protected:
    virtual void sendKey(int key, bool isDown) = 0;
    /// The left one.
    virtual void sendButton(bool isDown) = 0;

    /// What comes next is no part of what was before, as double clicks are.
    virtual void letTimePass() = 0;
};

} // namespace quillmoth::test
