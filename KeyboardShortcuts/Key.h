#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace quillmoth::KeyboardShortcuts {

/// A key by its position: a virtual key code, numbered for an ANSI keyboard. Any number may be held. The
/// constants whose names would be words of C++ end in an underscore.
struct Key {
    std::int64_t rawValue = 0;

    constexpr Key() = default;

    constexpr explicit Key(std::int64_t code) : rawValue(code) {}

    friend constexpr bool operator==(const Key&, const Key&) = default;

    static const Key a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, zero, one,
        two, three, four, five, six, seven, eight, nine, capsLock, shift, function, control, option, command,
        rightCommand, rightOption, rightControl, rightShift, return_, backslash, backtick, comma, equal,
        minus, period, quote, semicolon, slash, space, tab, leftBracket, rightBracket, pageUp, pageDown, home,
        end, upArrow, rightArrow, downArrow, leftArrow, escape, delete_, deleteForward, help, mute, volumeUp,
        volumeDown, f1, f2, f3, f4, f5, f6, f7, f8, f9, f10, f11, f12, f13, f14, f15, f16, f17, f18, f19, f20,
        keypad0, keypad1, keypad2, keypad3, keypad4, keypad5, keypad6, keypad7, keypad8, keypad9, keypadClear,
        keypadDecimal, keypadDivide, keypadEnter, keypadEquals, keypadMinus, keypadMultiply, keypadPlus;
};

inline constexpr Key Key::a = Key(0);
inline constexpr Key Key::b = Key(11);
inline constexpr Key Key::c = Key(8);
inline constexpr Key Key::d = Key(2);
inline constexpr Key Key::e = Key(14);
inline constexpr Key Key::f = Key(3);
inline constexpr Key Key::g = Key(5);
inline constexpr Key Key::h = Key(4);
inline constexpr Key Key::i = Key(34);
inline constexpr Key Key::j = Key(38);
inline constexpr Key Key::k = Key(40);
inline constexpr Key Key::l = Key(37);
inline constexpr Key Key::m = Key(46);
inline constexpr Key Key::n = Key(45);
inline constexpr Key Key::o = Key(31);
inline constexpr Key Key::p = Key(35);
inline constexpr Key Key::q = Key(12);
inline constexpr Key Key::r = Key(15);
inline constexpr Key Key::s = Key(1);
inline constexpr Key Key::t = Key(17);
inline constexpr Key Key::u = Key(32);
inline constexpr Key Key::v = Key(9);
inline constexpr Key Key::w = Key(13);
inline constexpr Key Key::x = Key(7);
inline constexpr Key Key::y = Key(16);
inline constexpr Key Key::z = Key(6);
inline constexpr Key Key::zero = Key(29);
inline constexpr Key Key::one = Key(18);
inline constexpr Key Key::two = Key(19);
inline constexpr Key Key::three = Key(20);
inline constexpr Key Key::four = Key(21);
inline constexpr Key Key::five = Key(23);
inline constexpr Key Key::six = Key(22);
inline constexpr Key Key::seven = Key(26);
inline constexpr Key Key::eight = Key(28);
inline constexpr Key Key::nine = Key(25);
inline constexpr Key Key::capsLock = Key(57);
inline constexpr Key Key::shift = Key(56);
inline constexpr Key Key::function = Key(63);
inline constexpr Key Key::control = Key(59);
inline constexpr Key Key::option = Key(58);
inline constexpr Key Key::command = Key(55);
inline constexpr Key Key::rightCommand = Key(54);
inline constexpr Key Key::rightOption = Key(61);
inline constexpr Key Key::rightControl = Key(62);
inline constexpr Key Key::rightShift = Key(60);
inline constexpr Key Key::return_ = Key(36);
inline constexpr Key Key::backslash = Key(42);
inline constexpr Key Key::backtick = Key(50);
inline constexpr Key Key::comma = Key(43);
inline constexpr Key Key::equal = Key(24);
inline constexpr Key Key::minus = Key(27);
inline constexpr Key Key::period = Key(47);
inline constexpr Key Key::quote = Key(39);
inline constexpr Key Key::semicolon = Key(41);
inline constexpr Key Key::slash = Key(44);
inline constexpr Key Key::space = Key(49);
inline constexpr Key Key::tab = Key(48);
inline constexpr Key Key::leftBracket = Key(33);
inline constexpr Key Key::rightBracket = Key(30);
inline constexpr Key Key::pageUp = Key(116);
inline constexpr Key Key::pageDown = Key(121);
inline constexpr Key Key::home = Key(115);
inline constexpr Key Key::end = Key(119);
inline constexpr Key Key::upArrow = Key(126);
inline constexpr Key Key::rightArrow = Key(124);
inline constexpr Key Key::downArrow = Key(125);
inline constexpr Key Key::leftArrow = Key(123);
inline constexpr Key Key::escape = Key(53);
inline constexpr Key Key::delete_ = Key(51);
inline constexpr Key Key::deleteForward = Key(117);
inline constexpr Key Key::help = Key(114);
inline constexpr Key Key::mute = Key(74);
inline constexpr Key Key::volumeUp = Key(72);
inline constexpr Key Key::volumeDown = Key(73);
inline constexpr Key Key::f1 = Key(122);
inline constexpr Key Key::f2 = Key(120);
inline constexpr Key Key::f3 = Key(99);
inline constexpr Key Key::f4 = Key(118);
inline constexpr Key Key::f5 = Key(96);
inline constexpr Key Key::f6 = Key(97);
inline constexpr Key Key::f7 = Key(98);
inline constexpr Key Key::f8 = Key(100);
inline constexpr Key Key::f9 = Key(101);
inline constexpr Key Key::f10 = Key(109);
inline constexpr Key Key::f11 = Key(103);
inline constexpr Key Key::f12 = Key(111);
inline constexpr Key Key::f13 = Key(105);
inline constexpr Key Key::f14 = Key(107);
inline constexpr Key Key::f15 = Key(113);
inline constexpr Key Key::f16 = Key(106);
inline constexpr Key Key::f17 = Key(64);
inline constexpr Key Key::f18 = Key(79);
inline constexpr Key Key::f19 = Key(80);
inline constexpr Key Key::f20 = Key(90);
inline constexpr Key Key::keypad0 = Key(82);
inline constexpr Key Key::keypad1 = Key(83);
inline constexpr Key Key::keypad2 = Key(84);
inline constexpr Key Key::keypad3 = Key(85);
inline constexpr Key Key::keypad4 = Key(86);
inline constexpr Key Key::keypad5 = Key(87);
inline constexpr Key Key::keypad6 = Key(88);
inline constexpr Key Key::keypad7 = Key(89);
inline constexpr Key Key::keypad8 = Key(91);
inline constexpr Key Key::keypad9 = Key(92);
inline constexpr Key Key::keypadClear = Key(71);
inline constexpr Key Key::keypadDecimal = Key(65);
inline constexpr Key Key::keypadDivide = Key(75);
inline constexpr Key Key::keypadEnter = Key(76);
inline constexpr Key Key::keypadEquals = Key(81);
inline constexpr Key Key::keypadMinus = Key(78);
inline constexpr Key Key::keypadMultiply = Key(67);
inline constexpr Key Key::keypadPlus = Key(69);

} // namespace quillmoth::KeyboardShortcuts

template<>
struct std::hash<quillmoth::KeyboardShortcuts::Key> {
    std::size_t operator()(const quillmoth::KeyboardShortcuts::Key& key) const noexcept {
        return std::hash<std::int64_t>()(key.rawValue);
    }
};
