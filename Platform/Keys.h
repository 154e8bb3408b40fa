#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

/// Keys and modifiers in the two vocabularies in which the program speaks of them: positions and event flags
/// for key events, positions and masks for hot keys and stored shortcuts. Back ends translate.
namespace quillmoth::platform::keys {

/// A key by its position: a virtual key code, numbered for an ANSI keyboard. Any number may be held. The
/// constants whose names would be words of C++ end in an underscore.
struct Key {
    std::int64_t rawValue = 0;

    constexpr Key() = default;

    constexpr explicit Key(std::int64_t keyCode) : rawValue(keyCode) {}

    friend constexpr bool operator==(const Key&, const Key&) = default;

    /// The number as key events carry it; of the constants.
    [[nodiscard]] constexpr std::uint16_t code() const { return static_cast<std::uint16_t>(rawValue); }

    static const Key a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, zero, one,
        two, three, four, five, six, seven, eight, nine, capsLock, shift, function, control, option, command,
        rightCommand, rightOption, rightControl, rightShift, return_, backslash, backtick, comma, equal,
        minus, period, quote, semicolon, slash, space, tab, leftBracket, rightBracket, pageUp, pageDown, home,
        end, upArrow, rightArrow, downArrow, leftArrow, escape, delete_, deleteForward, help, mute, volumeUp,
        volumeDown, f1, f2, f3, f4, f5, f6, f7, f8, f9, f10, f11, f12, f13, f14, f15, f16, f17, f18, f19, f20,
        keypad0, keypad1, keypad2, keypad3, keypad4, keypad5, keypad6, keypad7, keypad8, keypad9, keypadClear,
        keypadDecimal, keypadDivide, keypadEnter, keypadEquals, keypadMinus, keypadMultiply, keypadPlus;
};

inline constexpr Key Key::a(0), Key::b(11), Key::c(8), Key::d(2), Key::e(14), Key::f(3), Key::g(5), Key::h(4),
    Key::i(34), Key::j(38), Key::k(40), Key::l(37), Key::m(46), Key::n(45), Key::o(31), Key::p(35),
    Key::q(12), Key::r(15), Key::s(1), Key::t(17), Key::u(32), Key::v(9), Key::w(13), Key::x(7), Key::y(16),
    Key::z(6), Key::zero(29), Key::one(18), Key::two(19), Key::three(20), Key::four(21), Key::five(23),
    Key::six(22), Key::seven(26), Key::eight(28), Key::nine(25), Key::capsLock(57), Key::shift(56),
    Key::function(63), Key::control(59), Key::option(58), Key::command(55), Key::rightCommand(54),
    Key::rightOption(61), Key::rightControl(62), Key::rightShift(60), Key::return_(36), Key::backslash(42),
    Key::backtick(50), Key::comma(43), Key::equal(24), Key::minus(27), Key::period(47), Key::quote(39),
    Key::semicolon(41), Key::slash(44), Key::space(49), Key::tab(48), Key::leftBracket(33),
    Key::rightBracket(30), Key::pageUp(116), Key::pageDown(121), Key::home(115), Key::end(119),
    Key::upArrow(126), Key::rightArrow(124), Key::downArrow(125), Key::leftArrow(123), Key::escape(53),
    Key::delete_(51), Key::deleteForward(117), Key::help(114), Key::mute(74), Key::volumeUp(72),
    Key::volumeDown(73), Key::f1(122), Key::f2(120), Key::f3(99), Key::f4(118), Key::f5(96), Key::f6(97),
    Key::f7(98), Key::f8(100), Key::f9(101), Key::f10(109), Key::f11(103), Key::f12(111), Key::f13(105),
    Key::f14(107), Key::f15(113), Key::f16(106), Key::f17(64), Key::f18(79), Key::f19(80), Key::f20(90),
    Key::keypad0(82), Key::keypad1(83), Key::keypad2(84), Key::keypad3(85), Key::keypad4(86),
    Key::keypad5(87), Key::keypad6(88), Key::keypad7(89), Key::keypad8(91), Key::keypad9(92),
    Key::keypadClear(71), Key::keypadDecimal(65), Key::keypadDivide(75), Key::keypadEnter(76),
    Key::keypadEquals(81), Key::keypadMinus(78), Key::keypadMultiply(67), Key::keypadPlus(69);

/// Modifiers as key events carry them: a set of flags.
using ModifierFlags = std::uint64_t;

constexpr ModifierFlags kFlagCapsLock = 0x10000;
constexpr ModifierFlags kFlagShift = 0x20000;
constexpr ModifierFlags kFlagControl = 0x40000;
constexpr ModifierFlags kFlagOption = 0x80000;
constexpr ModifierFlags kFlagCommand = 0x100000;
constexpr ModifierFlags kFlagNumericPad = 0x200000;
constexpr ModifierFlags kFlagFunction = 0x800000;

/// Modifiers as the registration of hot keys and the stored shortcuts carry them: a set of masks.
using CarbonModifiers = std::int64_t;

constexpr CarbonModifiers kCarbonCommand = 0x100;
constexpr CarbonModifiers kCarbonShift = 0x200;
constexpr CarbonModifiers kCarbonOption = 0x800;
constexpr CarbonModifiers kCarbonControl = 0x1000;

} // namespace quillmoth::platform::keys

template<>
struct std::hash<quillmoth::platform::keys::Key> {
    std::size_t operator()(const quillmoth::platform::keys::Key& key) const noexcept {
        return std::hash<std::int64_t>()(key.rawValue);
    }
};
