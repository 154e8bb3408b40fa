#include "KeyboardShortcuts/Shortcut.h"

#include "KeyboardShortcuts/ShortcutText.h"
#include "Platform/Fake/FakeDesktop.h"

#include <gtest/gtest.h>

namespace quillmoth::KeyboardShortcuts::test {

TEST(Shortcut, KeepsOnlyTheModifiersThatHotKeysKnow) {
    constexpr ModifierFlags everything = ~ModifierFlags(0);
    const Shortcut shortcut(Key::k, everything);
    EXPECT_EQ(shortcut.carbonModifiers, 0x1B00);
    EXPECT_EQ(shortcut.modifiers(), kFlagControl | kFlagOption | kFlagShift | kFlagCommand);
    EXPECT_EQ(Shortcut(40, ~CarbonModifiers(0)), shortcut);
    EXPECT_EQ(Shortcut(Key::a, kFlagFunction | kFlagOption), Shortcut(Key::a, kFlagOption));
    EXPECT_EQ(Shortcut(Key::space, kFlagOption), Shortcut(49, 0x800));
}

TEST(Shortcut, IsMadeOfKeyEventsOnly) {
    EXPECT_EQ(Shortcut::fromEvent({10, 49, 0x80000}), Shortcut(49, 0x800));
    EXPECT_EQ(Shortcut::fromEvent({11, 40, 0x120000}), Shortcut(40, 0x300));
    EXPECT_EQ(Shortcut::fromEvent({1, 49, 0x80000}), std::nullopt);
    EXPECT_EQ(Shortcut::fromEvent({12, 49, 0x80000}), std::nullopt);
}

TEST(Shortcut, ReadsItsStoredFormOrNothing) {
    const std::pair<const char*, std::optional<Shortcut>> cases[] = {
        {R"({"carbonKeyCode":49,"carbonModifiers":2048})", Shortcut(49, 2048)},
        {R"({"x":[1], "carbonModifiers" : 256, "carbonKeyCode" : 8})", Shortcut(8, 256)},
        {R"({"carbonKeyCode":49})", std::nullopt},
        {R"({"carbonKeyCode":"49","carbonModifiers":2048})", std::nullopt},
        {R"({"carbonKeyCode":null,"carbonModifiers":2048})", std::nullopt},
        {R"({"carbonKeyCode":18446744073709551615,"carbonModifiers":0})", std::nullopt},
        {R"({"carbonKeyCode":65536,"carbonModifiers":2048})", std::nullopt},
        {R"({"carbonKeyCode":-1,"carbonModifiers":2048})", std::nullopt},
        {R"([49,2048])", std::nullopt},
        {R"({"carbonKeyCode":49,)", std::nullopt},
        {"\xFF", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(Shortcut::fromJSON(text), expected) << text;
    EXPECT_EQ(Shortcut::fromJSON(Shortcut(49, 2048).toJSON()), Shortcut(49, 2048));
}

TEST(ShortcutText, ShowsSymbolsInTheirFixedOrderAndTheKeyInUpperCase) {
    platform::FakeKeyboardLayout layout;
    layout.characters = {{40, "k"}, {1, "ß"}, {76, "⌤"}, {72, "🔊"}, {82, "0"}};
    const std::tuple<Shortcut, const char*, const char*> cases[] = {
        {{Key::space, kFlagOption}, "⌥⎵", "Alt+Space"},
        {{Key::k, kFlagCommand | kFlagShift}, "⇧⌘K", "Ctrl+Shift+K"},
        {{Key::f5, 0}, "F5", "F5"},
        {{Key::f20, kFlagControl | kFlagOption | kFlagShift | kFlagCommand},
         "⌃⌥⇧⌘F20",
         "Ctrl+Alt+Shift+Super+F20"},
        {{Key::s, kFlagControl}, "⌃SS", "Super+SS"},
        {{Key::help, kFlagCommand}, "⌘?⃝", "Ctrl+Insert"},
        {{Key::keypadEnter, kFlagCommand}, "⌘⌤", "Ctrl+Keypad Enter"},
        {{Key::volumeUp, kFlagOption}, "⌥🔊", "Alt+Volume Up"},
        {{Key::keypad0, kFlagCommand}, "⌘0", "Ctrl+Keypad 0"},
        {{Key::keypadClear, kFlagOption}, "⌥\uFFFD", "Alt+Num Lock"},
        {{Key(200), kFlagOption}, "⌥\uFFFD", "Alt+\uFFFD"},
        {{Key(-1), kFlagOption}, "⌥\uFFFD", "Alt+\uFFFD"},
        {{Key(65536 + 40), kFlagOption}, "⌥\uFFFD", "Alt+\uFFFD"},
    };
    for (const auto& [shortcut, symbols, words] : cases) {
        EXPECT_EQ(description(shortcut, layout), symbols);
        EXPECT_EQ(spokenDescription(shortcut, layout), words);
    }
}

TEST(ShortcutText, MenusShowSingleCharacters) {
    platform::FakeKeyboardLayout layout;
    layout.characters = {{40, "k"}, {8, "ch"}};
    const std::pair<Key, const char*> cases[] = {
        {Key::k, "k"},       {Key::space, "⎵"},    {Key::help, "?⃝"}, {Key::return_, "↩"}, {Key::f1, "\uF704"},
        {Key::f9, "\uF70C"}, {Key::f20, "\uF717"}, {Key::c, ""},     {Key(200), ""},
    };
    for (const auto& [key, expected] : cases)
        EXPECT_EQ(keyEquivalent(Shortcut(key, 0), layout), expected) << key.rawValue;
}

} // namespace quillmoth::KeyboardShortcuts::test
