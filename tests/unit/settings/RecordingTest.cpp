#include "Quillmoth/Settings/Recording.h"

#include "Platform/Fake/FakeDesktop.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace quillmoth {
namespace {

using namespace KeyboardShortcuts;

std::string nameOf(const RecordingStep& step) {
    constexpr const char* kNames[] = {"move on", "end", "clear", "beep", "menu", "system", "accept"};
    return kNames[step.index()];
}

struct RecordingRules : testing::Test {
    RecordingRules() { layout.characters = {{0, "a"}, {12, "q"}, {6, "z"}}; }

    RecordingStep step(const RecorderKeyPress& press) {
        const auto isSystems = [this](const Shortcut& shortcut) {
            return std::find(system.begin(), system.end(), shortcut) != system.end();
        };
        return recordingStep(press, menu, isSystems, layout);
    }

    platform::FakeKeyboardLayout layout;
    std::vector<MainMenuItem> menu = {
        {"File", "", 0, {{"Quit", "q", kFlagCommand, {}}, {"Help", "F9", 0, {}}}},
        {"Edit",
         "",
         0,
         {{"Undo", "z", kFlagCommand, {}},
          {"Redo", "Z", kFlagCommand, {}},
          {"Context Menu", "F10", kFlagShift, {}}}}};
    std::vector<Shortcut> system = {Shortcut(111, 0), Shortcut(49, kCarbonControl)};
};

TEST_F(RecordingRules, EachPressHasItsStep) {
    constexpr ModifierFlags kNoise = kFlagCapsLock | kFlagNumericPad | kFlagFunction | 0x102;
    const std::tuple<const char*, RecorderKeyPress, const char*> cases[] = {
        {"tab", {48, 0, SpecialKey::tab}, "move on"},
        {"shift tab", {48, kFlagShift, SpecialKey::tab}, "beep"},
        {"escape", {53, 0, SpecialKey::none}, "end"},
        {"escape of no position", {std::nullopt, 0, SpecialKey::escape}, "end"},
        {"command escape", {53, kFlagCommand, SpecialKey::none}, "accept"},
        {"delete", {117, 0, SpecialKey::deleteForward}, "clear"},
        {"backspace with caps lock", {51, kNoise, SpecialKey::deleteBackward}, "clear"},
        {"option backspace", {51, kFlagOption, SpecialKey::deleteBackward}, "accept"},
        {"bare letter", {0, 0, SpecialKey::none}, "beep"},
        {"letter with caps lock", {0, kNoise, SpecialKey::none}, "beep"},
        {"shift letter", {0, kFlagShift, SpecialKey::none}, "beep"},
        {"F5", {96, 0, SpecialKey::function}, "accept"},
        {"shift F5", {96, kFlagShift, SpecialKey::function}, "accept"},
        {"no position", {std::nullopt, kFlagCommand, SpecialKey::none}, "beep"},
        {"F12, though listed", {111, 0, SpecialKey::function}, "accept"},
        {"of the desktop", {49, kFlagControl, SpecialKey::none}, "system"},
        {"of the desktop but for shift", {49, kFlagControl | kFlagShift, SpecialKey::none}, "accept"},
        {"of the menu", {12, kFlagCommand, SpecialKey::none}, "menu"},
        {"a function key of the menu", {101, 0, SpecialKey::function}, "menu"},
        {"shift and a function key of the menu", {101, kFlagShift, SpecialKey::function}, "accept"},
        {"a function key of the menu with shift", {109, kFlagShift, SpecialKey::function}, "menu"},
        {"of the menu but for option", {12, kFlagCommand | kFlagOption, SpecialKey::none}, "accept"},
        {"option space", {49, kFlagOption, SpecialKey::none}, "accept"},
    };
    for (const auto& [what, press, expected] : cases)
        EXPECT_EQ(nameOf(step(press)), expected) << what;
    const auto accepted = step({49, kFlagOption | kNoise, SpecialKey::none});
    EXPECT_EQ(std::get<RecordingAccepts>(accepted).shortcut, Shortcut(Key::space, kFlagOption));
}

TEST_F(RecordingRules, ACapitalInTheMenuCountsAsShiftedForAShortcutWithShift) {
    const auto titleOf = [&](ModifierFlags modifiers) -> std::string {
        const auto* item = menuItemWithShortcut(menu, Shortcut(Key::z, modifiers), layout);
        return item != nullptr ? item->title : "";
    };
    EXPECT_EQ(titleOf(kFlagCommand), "Undo");
    EXPECT_EQ(titleOf(kFlagCommand | kFlagShift), "Redo");
    EXPECT_EQ(titleOf(kFlagOption), "");
    EXPECT_NE(usedByMenuItemText("Redo").find("“Redo”"), std::string::npos);
}

} // namespace
} // namespace quillmoth
