#include "Platform/Linux/Shared/Keycodes.h"

#include "Platform/Keys.h"

#include <algorithm>
#include <iterator>
#include <linux/input-event-codes.h>

namespace quillmoth::platform {

namespace {

constexpr int kFirstKeycode = 8;

using keys::Key;

struct Position {
    Key key;
    int evdevCode;
};

/// The modifier keys are named by position too: command is the Meta key beside the space bar's neighbour. The
/// function key is missing: keyboards keep it to themselves.
constexpr Position kPositions[] = {{Key::a, KEY_A},
                                   {Key::s, KEY_S},
                                   {Key::d, KEY_D},
                                   {Key::f, KEY_F},
                                   {Key::h, KEY_H},
                                   {Key::g, KEY_G},
                                   {Key::z, KEY_Z},
                                   {Key::x, KEY_X},
                                   {Key::c, KEY_C},
                                   {Key::v, KEY_V},
                                   {Key(10), KEY_102ND},
                                   {Key::b, KEY_B},
                                   {Key::q, KEY_Q},
                                   {Key::w, KEY_W},
                                   {Key::e, KEY_E},
                                   {Key::r, KEY_R},
                                   {Key::y, KEY_Y},
                                   {Key::t, KEY_T},
                                   {Key::one, KEY_1},
                                   {Key::two, KEY_2},
                                   {Key::three, KEY_3},
                                   {Key::four, KEY_4},
                                   {Key::six, KEY_6},
                                   {Key::five, KEY_5},
                                   {Key::equal, KEY_EQUAL},
                                   {Key::nine, KEY_9},
                                   {Key::seven, KEY_7},
                                   {Key::minus, KEY_MINUS},
                                   {Key::eight, KEY_8},
                                   {Key::zero, KEY_0},
                                   {Key::rightBracket, KEY_RIGHTBRACE},
                                   {Key::o, KEY_O},
                                   {Key::u, KEY_U},
                                   {Key::leftBracket, KEY_LEFTBRACE},
                                   {Key::i, KEY_I},
                                   {Key::p, KEY_P},
                                   {Key::return_, KEY_ENTER},
                                   {Key::l, KEY_L},
                                   {Key::j, KEY_J},
                                   {Key::quote, KEY_APOSTROPHE},
                                   {Key::k, KEY_K},
                                   {Key::semicolon, KEY_SEMICOLON},
                                   {Key::backslash, KEY_BACKSLASH},
                                   {Key::comma, KEY_COMMA},
                                   {Key::slash, KEY_SLASH},
                                   {Key::n, KEY_N},
                                   {Key::m, KEY_M},
                                   {Key::period, KEY_DOT},
                                   {Key::tab, KEY_TAB},
                                   {Key::space, KEY_SPACE},
                                   {Key::backtick, KEY_GRAVE},
                                   {Key::delete_, KEY_BACKSPACE},
                                   {Key::escape, KEY_ESC},
                                   {Key::rightCommand, KEY_RIGHTMETA},
                                   {Key::command, KEY_LEFTMETA},
                                   {Key::shift, KEY_LEFTSHIFT},
                                   {Key::capsLock, KEY_CAPSLOCK},
                                   {Key::option, KEY_LEFTALT},
                                   {Key::control, KEY_LEFTCTRL},
                                   {Key::rightShift, KEY_RIGHTSHIFT},
                                   {Key::rightOption, KEY_RIGHTALT},
                                   {Key::rightControl, KEY_RIGHTCTRL},
                                   {Key::f17, KEY_F17},
                                   {Key::keypadDecimal, KEY_KPDOT},
                                   {Key::keypadMultiply, KEY_KPASTERISK},
                                   {Key::keypadPlus, KEY_KPPLUS},
                                   {Key::keypadClear, KEY_NUMLOCK},
                                   {Key::volumeUp, KEY_VOLUMEUP},
                                   {Key::volumeDown, KEY_VOLUMEDOWN},
                                   {Key::mute, KEY_MUTE},
                                   {Key::keypadDivide, KEY_KPSLASH},
                                   {Key::keypadEnter, KEY_KPENTER},
                                   {Key::keypadMinus, KEY_KPMINUS},
                                   {Key::f18, KEY_F18},
                                   {Key::f19, KEY_F19},
                                   {Key::keypadEquals, KEY_KPEQUAL},
                                   {Key::keypad0, KEY_KP0},
                                   {Key::keypad1, KEY_KP1},
                                   {Key::keypad2, KEY_KP2},
                                   {Key::keypad3, KEY_KP3},
                                   {Key::keypad4, KEY_KP4},
                                   {Key::keypad5, KEY_KP5},
                                   {Key::keypad6, KEY_KP6},
                                   {Key::keypad7, KEY_KP7},
                                   {Key::f20, KEY_F20},
                                   {Key::keypad8, KEY_KP8},
                                   {Key::keypad9, KEY_KP9},
                                   {Key::f5, KEY_F5},
                                   {Key::f6, KEY_F6},
                                   {Key::f7, KEY_F7},
                                   {Key::f3, KEY_F3},
                                   {Key::f8, KEY_F8},
                                   {Key::f9, KEY_F9},
                                   {Key::f11, KEY_F11},
                                   {Key::f13, KEY_F13},
                                   {Key::f16, KEY_F16},
                                   {Key::f14, KEY_F14},
                                   {Key::f10, KEY_F10},
                                   {Key::f12, KEY_F12},
                                   {Key::f15, KEY_F15},
                                   {Key::help, KEY_INSERT},
                                   {Key::home, KEY_HOME},
                                   {Key::pageUp, KEY_PAGEUP},
                                   {Key::deleteForward, KEY_DELETE},
                                   {Key::f4, KEY_F4},
                                   {Key::end, KEY_END},
                                   {Key::f2, KEY_F2},
                                   {Key::pageDown, KEY_PAGEDOWN},
                                   {Key::f1, KEY_F1},
                                   {Key::leftArrow, KEY_LEFT},
                                   {Key::rightArrow, KEY_RIGHT},
                                   {Key::downArrow, KEY_DOWN},
                                   {Key::upArrow, KEY_UP}};

} // namespace

std::optional<std::uint8_t> keycodeForVirtualKeyCode(std::uint32_t virtualKeyCode) {
    const auto* found =
        std::find_if(std::begin(kPositions), std::end(kPositions),
                     [&](const Position& position) { return position.key == Key(virtualKeyCode); });
    return found == std::end(kPositions)
               ? std::nullopt
               : std::optional(static_cast<std::uint8_t>(found->evdevCode + kFirstKeycode));
}

std::optional<std::uint16_t> virtualKeyCodeForKeycode(std::uint32_t keycode) {
    const auto* found =
        std::find_if(std::begin(kPositions), std::end(kPositions), [&](const Position& position) {
            return position.evdevCode + kFirstKeycode == int(keycode);
        });
    return found == std::end(kPositions) ? std::nullopt : std::optional(found->key.code());
}

} // namespace quillmoth::platform
