#include "KeyboardShortcuts/CarbonKeyboardShortcuts.h"

#include "Foundation/FatalError.h"
#include "Platform/Fake/FakeHotKeyCenter.h"

#include <gtest/gtest.h>
#include <stdexcept>

namespace quillmoth::KeyboardShortcuts::test {

namespace {

constexpr std::uint32_t kSignature = 0x484B5247;

class CarbonKeyboardShortcutsTest : public testing::Test {
protected:
    void add(const Shortcut& shortcut) {
        registry.registerShortcut(
            shortcut, [this](const Shortcut& pressed) { log.emplace_back("down", pressed); },
            [this](const Shortcut& released) { log.emplace_back("up", released); });
    }

    platform::FakeHotKeyCenter system;
    CarbonKeyboardShortcuts registry{system};
    std::vector<std::pair<std::string, Shortcut>> log;
};

const Shortcut kCarbonOptionSpace(Key::space, kFlagOption);
const Shortcut kCarbonCommandK(Key::k, kFlagCommand);

} // namespace

TEST_F(CarbonKeyboardShortcutsTest, NumbersItsRegistrationsAndNeverUsesANumberTwice) {
    add(kCarbonOptionSpace);
    system.registerStatus = -9878;
    add(kCarbonCommandK);
    system.registerStatus = platform::noErr;
    system.givesNoHandle = true;
    add(kCarbonCommandK);
    system.givesNoHandle = false;
    registry.unregisterShortcut(kCarbonOptionSpace);
    add(kCarbonOptionSpace);

    ASSERT_EQ(system.requests.size(), 4U);
    for (std::uint32_t index = 0; index < 4; ++index) {
        EXPECT_EQ(system.requests[index].id.signature, kSignature);
        EXPECT_EQ(system.requests[index].id.id, index + 1);
    }
    EXPECT_EQ(system.requests[0].keyCode, 49U);
    EXPECT_EQ(system.requests[0].carbonModifiers, 0x800U);
    // What was refused left no record behind.
    registry.unregisterShortcut(kCarbonCommandK);
    EXPECT_EQ(system.registrations.size(), 1U);
    registry.unregisterShortcut(kCarbonOptionSpace);
    EXPECT_TRUE(system.registrations.empty()) << "the later of the two";
}

TEST_F(CarbonKeyboardShortcutsTest, InstallsOneHandlerAsSoonAsThereIsATarget) {
    system.hasTarget = false;
    add(kCarbonOptionSpace);
    EXPECT_EQ(system.installCount, 0U);
    system.hasTarget = true;
    system.installStatus = -9874;
    add(kCarbonCommandK);
    EXPECT_EQ(system.installCount, 1U);
    system.installStatus = platform::noErr;
    add(kCarbonCommandK);
    EXPECT_EQ(system.installCount, 2U) << "where it could not be, once more";
    registry.unregisterShortcut(kCarbonCommandK);
    add(kCarbonCommandK);
    EXPECT_EQ(system.installCount, 2U);
}

TEST_F(CarbonKeyboardShortcutsTest, AnswersEachKindOfEvent) {
    add(kCarbonOptionSpace);
    EXPECT_EQ(system.send(nullptr), platform::eventNotHandledErr);
    const std::pair<platform::HotKeyEvent, platform::OSStatus> cases[] = {
        {{.kind = 5, .hotKeyID = std::nullopt, .parameterError = -9870}, -9870},
        {{.kind = 5, .hotKeyID = platform::EventHotKeyID{0x41424344, 1}}, -9874},
        {{.kind = 5, .hotKeyID = platform::EventHotKeyID{kSignature, 2}}, -9874},
        {{.kind = 7, .hotKeyID = platform::EventHotKeyID{kSignature, 1}}, -9874},
        {{.kind = 5, .hotKeyID = platform::EventHotKeyID{kSignature, 1}}, 0},
        {{.kind = 6, .hotKeyID = platform::EventHotKeyID{kSignature, 1}}, 0},
    };
    for (const auto& [event, status] : cases)
        EXPECT_EQ(system.send(&event), status);
    const std::vector<std::pair<std::string, Shortcut>> expected = {{"down", kCarbonOptionSpace},
                                                                    {"up", kCarbonOptionSpace}};
    EXPECT_EQ(log, expected);
}

TEST_F(CarbonKeyboardShortcutsTest, AnIdentifierBeyond32BitsIsAFault) {
    const ScopedFatalErrorHandler handler([](const std::string& text) { throw std::runtime_error(text); });
    EXPECT_THROW(add(Shortcut(Key(-1), 0)), std::runtime_error);
    EXPECT_THROW(add(Shortcut(Key(0x100000000), 0)), std::runtime_error);
    EXPECT_TRUE(system.requests.empty());
}

TEST_F(CarbonKeyboardShortcutsTest, ListsWhatTheSystemHasTakenAndEnabled) {
    system.symbolicHotKeys = {
        {.enabled = true, .keyCode = 49, .carbonModifiers = 0x100},
        {.enabled = false, .keyCode = 48, .carbonModifiers = 0x100},
        {.enabled = true, .keyCode = std::nullopt, .carbonModifiers = 0x100},
        {.enabled = true, .keyCode = 48, .carbonModifiers = std::nullopt},
        {.enabled = true, .keyCode = 111, .carbonModifiers = 0x20000},
    };
    EXPECT_EQ(registry.system(), (std::vector{Shortcut(49, 0x100), Shortcut(111, 0)}));
    system.takenElsewhere = {{40, 0x800}};
    for (const auto& [shortcut, isTaken] : {std::pair{Shortcut(49, 0x100), true},
                                            {Shortcut(48, 0x100), false},
                                            {Shortcut(40, 0x800), true},
                                            {Shortcut(40, 0x100), false}})
        EXPECT_EQ(registry.isSystems(shortcut), isTaken) << shortcut.carbonKeyCode;
}

TEST(CarbonKeyboardShortcuts, LeavesNothingRegisteredAndIgnoresLateEvents) {
    platform::FakeHotKeyCenter system;
    {
        CarbonKeyboardShortcuts registry(system);
        registry.registerShortcut(
            kCarbonOptionSpace, [](const Shortcut&) { FAIL(); }, [](const Shortcut&) {});
    }
    EXPECT_TRUE(system.registrations.empty());
    const platform::HotKeyEvent late{.kind = 5, .hotKeyID = platform::EventHotKeyID{kSignature, 1}};
    EXPECT_EQ(system.send(&late), -9874);
}

} // namespace quillmoth::KeyboardShortcuts::test
