// The panel by the keyboard of a real X server: each state of its content, and its key equivalents.

#include "tests/desktop/panel/PanelSession.h"

#include <linux/input-event-codes.h>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;

class PanelKeys : public PanelSession {
protected:
    static void press(int key) { input().chord({KEY_LEFTCTRL, key}); }
};

TEST_F(PanelKeys, ArrowsMoveThroughThePresetsOfTheContextAndTypingNarrowsThem) {
    openPanel();
    await("label", kContextFound);
    EXPECT_EQ(shown().names("list item"), (std::vector<std::string>{"Use typed command for prompt",
                                                                    "Fix the grammar", "Make it shorter"}));
    input().tapKey(KEY_DOWN);
    input().tapKey(KEY_DOWN);
    EXPECT_TRUE(isSelected("Make it shorter"));
    input().tapKey(KEY_UP);
    EXPECT_TRUE(isSelected("Fix the grammar"));
    input().type("short");
    EXPECT_TRUE(goes("list item", "Fix the grammar"));
    EXPECT_TRUE(isSelected("Use typed command"));
    EXPECT_TRUE(has("list item", "Make it shorter"));
    expectFrontKept();
}

TEST_F(PanelKeys, EscapeStepsBackOneStepAPress) {
    openPanel();
    answerSlowly("It begins", " and ends.");
    send("go");
    await("push button", "Cancel");
    ASSERT_TRUE(soon([] { return await("document", "Answer").text() == "It begins"; }));
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

TEST_F(PanelKeys, TabLeadsThroughLinksAndControlsReturnWorksThemAndTypingGoesBackToTheField) {
    openPanel();
    converse("hi", "# A title\n\nSee [the moths](https://moths.test/a) and\n\n```\ncode\n```\n");
    EXPECT_EQ(await("document", "Answer").text(), "A title\n\nSee the moths and\n\ncode");
    EXPECT_TRUE(has("heading", "A title"));
    input().tapKey(KEY_TAB);
    EXPECT_TRUE(isFocused("link the moths"));
    input().tapKey(KEY_ENTER);
    EXPECT_TRUE(soon([] { return openedLinks() == "https://moths.test/a\n"; })) << openedLinks();
    input().tapKey(KEY_TAB);
    EXPECT_TRUE(isFocused("push button Copy code"));
    input().tapKey(KEY_ENTER);
    EXPECT_TRUE(soon([] { return clipboard() == "code"; })) << clipboard();
    for (const char* next : {"push button Select", "push button History", "check box On top"}) {
        input().tapKey(KEY_TAB);
        EXPECT_TRUE(isFocused(next)) << next;
    }
    typeCommand("mo");
    EXPECT_TRUE(isFocused("text Command"));
    expectFrontKept();
}

TEST_F(PanelKeys, WhatIsTypedRightBehindTheHotKeyIsThePanelsAndAHeldHotKeyClosesItOnce) {
    // A hand leaves no key as fast as it struck it; the server repeats one that is held for long.
    for (const auto& [time, opens] : {std::pair(40ms, true), std::pair(900ms, false)}) {
        input().pressKey(KEY_LEFTALT);
        input().pressKey(KEY_SPACE);
        letPass(time);
        input().releaseKey(KEY_SPACE);
        input().releaseKey(KEY_LEFTALT);
        if (opens)
            input().type("quick");
        EXPECT_TRUE(soon([opens = opens] { return opens ? command() == "quick" : !isOpen(); })) << command();
    }
    openPanel();
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
