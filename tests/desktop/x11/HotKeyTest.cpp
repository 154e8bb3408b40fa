#include "Platform/Linux/X11/Keys/X11PassiveGrab.h"
#include "tests/desktop/x11/X11Session.h"

#include <linux/input-event-codes.h>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;

constexpr std::uint32_t kSpace = 49;
constexpr std::uint32_t kF12 = 111;
constexpr std::uint32_t kK = 40;
constexpr std::uint32_t kCommand = 0x100;
constexpr std::uint32_t kShift = 0x200;
constexpr std::uint32_t kOption = 0x800;
constexpr std::uint32_t kControl = 0x1000;

class HotKeyTest : public X11Session {
protected:
    HotKeyTest() {
        center().installEventHandler([this](const platform::HotKeyEvent* event) {
            log += event->kind == platform::kEventHotKeyPressed ? "+" : "-";
            log += std::to_string(event->hotKeyID->id);
            return platform::noErr;
        });
    }

    ~HotKeyTest() override {
        center().installEventHandler({});
        for (const auto handle : handles)
            center().unregisterEventHotKey(handle);
    }

    static platform::X11HotKeyCenter& center() { return backEnd().hotKeyCenter(); }

    platform::OSStatus add(std::uint32_t keyCode, std::uint32_t modifiers, std::uint32_t identifier = 1) {
        platform::HotKeyCenter::Handle handle = 0;
        const auto status = center().registerEventHotKey(keyCode, modifiers, {7, identifier}, handle);
        if (status == platform::noErr)
            handles.push_back(handle);
        return status;
    }

    /// As quick as a hand is.
    static void pressAltSpace() {
        input().pressKey(KEY_LEFTALT);
        letPass(40ms);
        input().pressKey(KEY_SPACE);
        letPass(40ms);
        input().releaseKey(KEY_SPACE);
        input().releaseKey(KEY_LEFTALT);
    }

    bool sees(const std::string& expected) {
        const bool seen = holdsWithin(1s, [&] { return log == expected; });
        // No window comes that would take the keys.
        center().letKeysGo();
        return seen;
    }

    std::string log;
    std::vector<platform::HotKeyCenter::Handle> handles;
};

} // namespace

TEST_F(HotKeyTest, AltSpaceArrivesBeforeTheWindowManagerWhateverHappensToTheKeymap) {
    const auto terminal = frontTerminal("front");
    ASSERT_TRUE(backEnd().hotKeyProbe().isShortcutTaken(kSpace, kOption)) << "the test needs a rival";
    ASSERT_EQ(add(kSpace, kOption), platform::noErr);
    constexpr std::chrono::milliseconds kPauses[] = {20ms, 30ms, 45ms, 80ms, 120ms, 160ms, 300ms, 650ms};
    for (const char* layout : {"us", "de", "ru,us"}) {
        for (const auto pause : kPauses) {
            useLayout(layout);
            letPass(pause);
            log.clear();
            pressAltSpace();
            EXPECT_TRUE(sees("+1-1")) << layout << " after " << pause.count() << " ms: " << log;
            // Where the window manager won, its menu must not take the presses that follow.
            if (log.empty())
                input().tapKey(KEY_ESC);
        }
    }
    useLayout("us");
}

TEST_F(HotKeyTest, AHundredPressesOnTwoKeyboardsInTurnUnderANewWindowManagerAllArrive) {
    ASSERT_EQ(add(kSpace, kOption), platform::noErr);
    desktop().stopWindowManager();
    desktop().startWindowManager();
    const auto terminal = frontTerminal("front");
    for (int press = 0; press < 100; ++press) {
        log.clear();
        // The window manager takes its own keys anew at each change, between the modifier and the key.
        input().useSecondKeyboard(press % 2 == 0);
        pressAltSpace();
        ASSERT_TRUE(sees("+1-1")) << "press " << press << ": " << log;
    }
    input().useSecondKeyboard(false);
}

TEST_F(HotKeyTest, LocksDoNotMatterAndOtherModifiersDo) {
    ASSERT_EQ(add(kF12, kCommand | kShift), platform::noErr);
    for (const int lock : {KEY_CAPSLOCK, KEY_NUMLOCK}) {
        input().tapKey(lock);
        log.clear();
        input().chord({KEY_LEFTCTRL, KEY_LEFTSHIFT, KEY_F12});
        EXPECT_TRUE(sees("+1-1")) << log;
    }
    log.clear();
    input().chord({KEY_LEFTCTRL, KEY_F12});
    input().chord({KEY_LEFTCTRL, KEY_LEFTSHIFT, KEY_LEFTMETA, KEY_F12});
    letPass(100ms);
    EXPECT_EQ(log, "");
    input().tapKey(KEY_CAPSLOCK);
    input().tapKey(KEY_NUMLOCK);
}

TEST_F(HotKeyTest, WhereNumLockMovesToAnotherModifierTheFormerOneIsGivenBack) {
    ASSERT_EQ(add(kF12, kShift), platform::noErr);
    auto rival = platform::X11Connection::open();
    ASSERT_TRUE(rival);
    const auto isFree = [&](std::uint32_t lock) {
        const std::uint32_t variant[] = {XCB_MOD_MASK_SHIFT | lock};
        const bool granted = platform::grabKey(**rival, KEY_F12 + 8, variant);
        platform::ungrabKey(**rival, KEY_F12 + 8, variant);
        return granted;
    };
    EXPECT_FALSE(isFree(XCB_MOD_MASK_2));
    ASSERT_EQ(runChild({"xmodmap", "-e", "remove mod2 = Num_Lock", "-e", "add mod3 = Num_Lock"}, 5s).exitCode,
              0);
    EXPECT_TRUE(holdsWithin(2s, [&] { return isFree(XCB_MOD_MASK_2) && !isFree(XCB_MOD_MASK_3); }));
    useLayout("us");
}

TEST_F(HotKeyTest, AHeldKeyIsOnePressAndItsReleaseNeedsNoModifier) {
    ASSERT_EQ(add(kF12, kOption | kControl), platform::noErr);
    input().pressKey(KEY_LEFTMETA);
    input().pressKey(KEY_LEFTALT);
    input().pressKey(KEY_F12);
    letPass(900ms);
    EXPECT_EQ(log, "+1");
    input().releaseKey(KEY_LEFTALT);
    input().releaseKey(KEY_LEFTMETA);
    input().releaseKey(KEY_F12);
    EXPECT_TRUE(sees("+1-1")) << log;
}

TEST_F(HotKeyTest, EachCombinationHasItsIdentifierAndNoneFiresAfterItsEnd) {
    ASSERT_EQ(add(kK, kCommand, 1), platform::noErr);
    ASSERT_EQ(add(kK, kOption | kCommand, 2), platform::noErr);
    EXPECT_NE(add(kK, kCommand, 3), platform::noErr);
    EXPECT_NE(add(63, kCommand, 4), platform::noErr) << "a key that X cannot name";
    input().chord({KEY_LEFTCTRL, KEY_LEFTALT, KEY_K});
    input().chord({KEY_RIGHTCTRL, KEY_K});
    EXPECT_TRUE(sees("+2-2+1-1")) << log;
    EXPECT_EQ(center().unregisterEventHotKey(handles[0]), platform::noErr);
    EXPECT_NE(center().unregisterEventHotKey(handles[0]), platform::noErr);
    input().chord({KEY_LEFTCTRL, KEY_K});
    input().chord({KEY_LEFTCTRL, KEY_LEFTALT, KEY_K});
    EXPECT_TRUE(sees("+2-2+1-1+2-2")) << log;
}

TEST_F(HotKeyTest, ARivalOfTheSameKindIsAnErrorAndTheProbeNamesTheWindowManagerAndNotOurselves) {
    auto connection = platform::X11Connection::open();
    ASSERT_TRUE(connection);
    platform::X11HotKeyCenter rival(std::move(*connection));
    platform::HotKeyCenter::Handle handle = 0;
    ASSERT_EQ(rival.registerEventHotKey(kF12, kShift, {7, 9}, handle), platform::noErr);
    EXPECT_NE(add(kF12, kShift), platform::noErr);
    rival.unregisterEventHotKey(handle);
    EXPECT_EQ(add(kF12, kShift), platform::noErr);
    ASSERT_EQ(add(kF12, kCommand | kOption | kShift), platform::noErr);
    const auto& probe = backEnd().hotKeyProbe();
    EXPECT_FALSE(probe.isShortcutTaken(kF12, kCommand | kOption | kShift));
    EXPECT_TRUE(probe.isShortcutTaken(48, kOption)) << "Alt+Tab";
    EXPECT_FALSE(probe.windowManagerName().empty());
}

} // namespace quillmoth::test
