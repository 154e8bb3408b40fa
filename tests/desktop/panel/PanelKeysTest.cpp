// The panel by the keyboard of a real X server: each state of its content, and its key equivalents.

#include "tests/desktop/panel/PanelSession.h"

#include <linux/input-event-codes.h>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;

class PanelKeys : public PanelSession {
protected:
    static void press(int key) { input().chord({KEY_LEFTCTRL, key}); }

    static void tap(int key, int times) {
        for (int count = 0; count < times; ++count)
            input().tapKey(key);
    }
};

TEST_F(PanelKeys, ArrowsMoveThroughThePresetsOfTheContextAndTypingNarrowsThem) {
    openPanel();
    await("label", kContextFound);
    EXPECT_EQ(shown().names("list item"), (std::vector<std::string>{"Use typed command for prompt",
                                                                    "Fix the grammar", "Make it shorter"}));
    EXPECT_TRUE(isSelected("Use typed command"));
    tap(KEY_DOWN, 3);
    EXPECT_TRUE(isSelected("Make it shorter"));
    input().tapKey(KEY_UP);
    EXPECT_TRUE(isSelected("Fix the grammar"));
    input().type("short");
    EXPECT_TRUE(goes("list item", "Fix the grammar"));
    EXPECT_TRUE(isSelected("Use typed command"));
    EXPECT_TRUE(has("list item", "Make it shorter"));
    expectFrontKept();
}

TEST_F(PanelKeys, TheListFollowsTheSelectionAndPagesByKey) {
    deselect();
    openPanel();
    await("label", "Start talking to the AI assistant");
    EXPECT_FALSE(has("list item", "Fix the grammar"));
    tap(KEY_DOWN, 14);
    EXPECT_TRUE(isSelected("Preset number 11"));
    EXPECT_FALSE(has("list item", "Use typed command"));
    input().tapKey(KEY_PAGEDOWN);
    EXPECT_TRUE(goes("list item", "Preset number 9"));
    input().tapKey(KEY_UP);
    EXPECT_TRUE(isSelected("Preset number 10"));
}

TEST_F(PanelKeys, EscapeStepsBackOneStepAPress) {
    openPanel();
    answerSlowly("It begins", " and ends.");
    send("go");
    await("push button", "Cancel");
    ASSERT_TRUE(soon([] { return answer() == "It begins"; }));
    input().tapKey(KEY_ESC);
    await("push button", "New chat");
    EXPECT_TRUE(has("document", "Answer"));
    finishAnswer();
    typeCommand("x");
    input().tapKey(KEY_ESC);
    EXPECT_TRUE(soon([] { return command().empty(); }));
    EXPECT_TRUE(has("push button", "New chat"));
    press(KEY_T);
    EXPECT_TRUE(soon(isPinned));
    input().tapKey(KEY_ESC);
    EXPECT_TRUE(goes("push button", "New chat"));
    await("label", kContextFound);
    input().tapKey(KEY_ESC);
    await("label", "Context removed");
    input().tapKey(KEY_ESC);
    EXPECT_TRUE(soon([] { return !isPinned(); }));
    EXPECT_TRUE(isOpen());
    expectFrontKept();
    input().tapKey(KEY_ESC);
    EXPECT_TRUE(closes());
    expectFrontKept();
}

TEST_F(PanelKeys, ControlPlusMinusAndZeroSetTheTextSize) {
    openPanel();
    const auto height = [] { return await("list item", "Use typed").bounds().height; };
    const int usual = height();
    press(KEY_KPPLUS);
    EXPECT_TRUE(comesToStore("saveFontSize", 18.0));
    EXPECT_TRUE(soon([&] { return height() > usual; }));
    input().chord({KEY_LEFTCTRL, KEY_LEFTSHIFT, KEY_EQUAL});
    EXPECT_TRUE(comesToStore("saveFontSize", 20.0));
    press(KEY_MINUS);
    EXPECT_TRUE(comesToStore("saveFontSize", 18.0));
    press(KEY_0);
    EXPECT_TRUE(comesToStore("saveFontSize", 16.0));
    EXPECT_TRUE(soon([&] { return height() == usual; }));
}

TEST_F(PanelKeys, ControlHShowsTheHistoryAndReturnOpensARow) {
    openPanel();
    for (int round = 0; round < 2; ++round) {
        press(KEY_H);
        await("list", "History");
        EXPECT_TRUE(isSelected(shown().names("list item").front())) << "the selection begins anew";
        tap(KEY_DOWN, 2);
        if (round == 0)
            press(KEY_H);
        EXPECT_TRUE(round == 1 || soon([] { return has("list", "Presets"); }));
    }
    input().tapKey(KEY_ENTER);
    await("document", "Answer");
    expectFrontKept();
}

TEST_F(PanelKeys, ControlShiftCCopiesAndTheHotKeyLeavesThePinOfControlT) {
    openPanel();
    converse("hi", "Copied *as it came*");
    input().chord({KEY_LEFTCTRL, KEY_LEFTSHIFT, KEY_C});
    EXPECT_TRUE(closes());
    EXPECT_EQ(clipboard(), "Copied *as it came*");
    expectFrontKept();
    openPanel();
    press(KEY_T);
    EXPECT_TRUE(soon(isPinned));
    expectFrontKept();
    pressHotKey();
    EXPECT_TRUE(closes());
    openPanel();
    EXPECT_TRUE(isPinned());
    press(KEY_T);
    EXPECT_TRUE(soon([] { return !isPinned(); }));
}

TEST_F(PanelKeys, ControlReturnWritesTheAnswerOverTheSelectionAndHeldDoesNotRepeatIntoTheEditor) {
    constexpr const char* kAnswer = "They are going to the meeting.";
    const std::string written = std::string(kAnswer) + "\nThis line stays.\n";
    openPanel();
    converse("hi", kAnswer);
    input().pressKey(KEY_LEFTCTRL);
    input().pressKey(KEY_ENTER);
    EXPECT_TRUE(closes());
    // The server repeats a held key after 660 ms, 25 times a second.
    letPass(1s);
    input().releaseKey(KEY_ENTER);
    input().releaseKey(KEY_LEFTCTRL);
    EXPECT_TRUE(editorHolds(written));
    EXPECT_TRUE(editor().isActive());
    press(KEY_END);
    input().type("k");
    EXPECT_TRUE(editorHolds(written + "k")) << editor().text();
    // The other tests go on with the text that was.
    for (int step = 0; step < 20 && editor().text() != kEditorText; ++step) {
        press(KEY_Z);
        waitFor([&] { return editor().text() == kEditorText; }, 200ms);
    }
}

TEST_F(PanelKeys, TheTabKeyLeadsThroughTheControlsAndTypingGoesBackToTheField) {
    openPanel();
    for (const char* next :
         {"push button Select, Return", "push button History, Ctrl+H", "check box On top, Ctrl+T"}) {
        input().tapKey(KEY_TAB);
        EXPECT_TRUE(isFocused(next)) << next;
    }
    typeCommand("mo");
    EXPECT_TRUE(isFocused("text Command"));
    expectFrontKept();
}

TEST_F(PanelKeys, TabLeadsToTheLinksOfAnAnswerAndReturnOpensThem) {
    openPanel();
    converse("hi", "See [the moths](https://moths.test/a) and\n\n```\ncode\n```\n");
    input().tapKey(KEY_TAB);
    EXPECT_TRUE(isFocused("link the moths"));
    input().tapKey(KEY_ENTER);
    EXPECT_TRUE(soon([] { return openedLinks() == "https://moths.test/a\n"; })) << openedLinks();
    input().tapKey(KEY_TAB);
    EXPECT_TRUE(isFocused("push button Copy code"));
    input().tapKey(KEY_ENTER);
    EXPECT_TRUE(soon([] { return clipboard() == "code"; })) << clipboard();
    input().tapKey(KEY_TAB);
    EXPECT_TRUE(isFocused("push button Select"));
    expectFrontKept();
}

TEST_F(PanelKeys, WhatIsTypedRightBehindTheHotKeyIsThePanels) {
    for (int round = 0; round < 8; ++round) {
        // A hand leaves no key as fast as it struck it.
        input().pressKey(KEY_LEFTALT);
        input().pressKey(KEY_SPACE);
        letPass(40ms);
        input().releaseKey(KEY_SPACE);
        input().releaseKey(KEY_LEFTALT);
        letPass(std::chrono::milliseconds(8 * round));
        input().type("quick");
        ASSERT_TRUE(soon([] { return command() == "quick"; }))
            << command() << " after " << 8 * round << " ms";
        closePanel();
    }
    expectFrontKept();
}

TEST_F(PanelKeys, ItsMenuWorksByKeysAndKeepsTheKeyboardInThePanel) {
    openPanel();
    typeCommand("moth");
    const auto openMenu = [] {
        input().chord({KEY_LEFTSHIFT, KEY_F10});
        await("menu item", "Select All");
    };
    openMenu();
    input().tapKey(KEY_UP);
    EXPECT_TRUE(isFocused("menu item Select All"));
    input().tapKey(KEY_ENTER);
    EXPECT_TRUE(goes("menu item", "Select All"));
    openMenu();
    EXPECT_TRUE(await("menu item", "Cut").press());
    EXPECT_TRUE(soon([] { return clipboard() == "moth" && command().empty(); })) << clipboard();
    openMenu();
    input().tapKey(KEY_ESC);
    EXPECT_TRUE(goes("menu item", "Select All"));
    EXPECT_TRUE(isOpen());
    press(KEY_V);
    EXPECT_TRUE(soon([] { return command() == "moth"; }));
    EXPECT_TRUE(isFocused("text Command"));
    expectFrontKept();
}

} // namespace

} // namespace quillmoth::test
