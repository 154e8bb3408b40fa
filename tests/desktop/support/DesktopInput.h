#pragma once

#include <cstdint>
#include <initializer_list>
#include <string_view>

struct xcb_connection_t;

namespace quillmoth::test {

/// The user's hands: keys and pointer through XTEST (X Test Extension Protocol 2.2). Keys are evdev codes,
/// the KEY_ constants of linux/input-event-codes.h. Each call returns after the server has handled it.
class DesktopInput {
public:
    /// `connection` outlives the object.
    DesktopInput(xcb_connection_t* connection, std::uint32_t rootWindow);

    /// Strikes the keys on a keyboard of the server's own from now on, or on that of XTEST again. Whenever
    /// the keyboard changes, the server takes over its keymap and tells everybody. Throws where it has no
    /// other.
    void useSecondKeyboard(bool isSecond);

    void pressKey(int key);
    void releaseKey(int key);
    void tapKey(int key);
    /// Presses the keys in order and releases them in the reverse order.
    void chord(std::initializer_list<int> keys);
    /// Types what the first keyboard group offers with and without Shift. Throws for a character that it
    /// has not.
    void type(std::string_view asciiText);

    void movePointer(int x, int y);
    void pressButton(int button);
    void releaseButton(int button);
    /// Where the pointer is.
    void clickButton(int button);
    void click(int x, int y, int button = 1);

private:
    void send(std::uint8_t type, int detail, int x = 0, int y = 0);

    xcb_connection_t* connection_;
    std::uint32_t rootWindow_;
    /// Number of the second keyboard while it is in use.
    std::uint8_t keyboard_ = 0;
};

} // namespace quillmoth::test
