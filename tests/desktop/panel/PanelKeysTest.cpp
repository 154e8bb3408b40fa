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

} // namespace

} // namespace quillmoth::test
