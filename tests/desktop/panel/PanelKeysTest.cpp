// The panel by the keyboard: each state of its content, and each of its key equivalents.

#include "tests/desktop/panel/PanelSession.h"

#include <linux/input-event-codes.h>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;

class PanelKeys : public PanelSession {
protected:
    static void press(int key) { input().chord({KEY_LEFTCTRL, key}); }

    /// Runs a preset of a closed list by its name.
    static void run(const std::string& search) {
        input().type(search);
        EXPECT_TRUE(soon([&] { return command() == search; }));
        input().tapKey(KEY_DOWN);
        input().tapKey(KEY_ENTER);
    }
};

TEST_F(PanelKeys, ArrowsMoveThroughThePresetsOfTheContextAndTypingNarrowsThem) {
    openPanel();
    await("label", kContextFound);
    EXPECT_EQ(panel().names("list item"), (std::vector<std::string>{"Use typed command for prompt",
                                                                    "Fix the grammar", "Make it shorter"}));
    EXPECT_TRUE(isSelected("Use typed command"));
    input().tapKey(KEY_DOWN);
    EXPECT_TRUE(soon([] { return isSelected("Fix the grammar"); }));
    input().tapKey(KEY_DOWN);
    input().tapKey(KEY_DOWN);
    EXPECT_TRUE(soon([] { return isSelected("Make it shorter"); }));
    input().tapKey(KEY_UP);
    EXPECT_TRUE(soon([] { return isSelected("Fix the grammar"); }));
    input().type("short");
    EXPECT_TRUE(goes("list item", "Fix the grammar"));
    EXPECT_TRUE(isSelected("Use typed command"));
    EXPECT_TRUE(shows("list item", "Make it shorter"));
    input().tapKey(KEY_ESC);
    EXPECT_TRUE(soon([] { return command().empty() && shows("list item", "Fix the grammar"); }));
    input().type(":xyz");
    EXPECT_TRUE(soon([] { return command() == ":xyz"; }));
    EXPECT_TRUE(shows("list item", "Fix the grammar"));
    expectFrontKept();
}

TEST_F(PanelKeys, TheListFollowsTheSelectionAndPagesByKey) {
    deselect();
    openPanel();
    await("label", "Start talking to the AI assistant");
    EXPECT_FALSE(shows("list item", "Fix the grammar"));
    for (int step = 0; step < 14; ++step)
        input().tapKey(KEY_DOWN);
    EXPECT_TRUE(soon([] { return isSelected("Preset number 11"); }));
    EXPECT_FALSE(shows("list item", "Use typed command"));
    input().tapKey(KEY_PAGEDOWN);
    EXPECT_TRUE(goes("list item", "Preset number 9"));
    input().tapKey(KEY_UP);
    EXPECT_TRUE(soon([] { return isSelected("Preset number 10"); }));
    expectFrontKept("");
}

TEST_F(PanelKeys, ShiftReturnMakesTheFieldGrowToItsLimit) {
    openPanel();
    const auto field = await("text", "Command");
    const int one = panel().extents(field).height;
    for (int line = 0; line < 3; ++line) {
        input().type("a");
        input().chord({KEY_LEFTSHIFT, KEY_ENTER});
    }
    EXPECT_TRUE(soon([&] { return panel().extents(field).height == one + 3 * 24; }));
    EXPECT_EQ(command(), "a\na\na\n");
    for (int line = 0; line < 12; ++line)
        input().chord({KEY_LEFTSHIFT, KEY_ENTER});
    EXPECT_TRUE(soon([&] { return panel().extents(field).height == 300; }));
    const auto place = panel().extents(field);
    EXPECT_GE(panel().extents(await("tool bar")).y - (place.y + place.height), 200);
    expectFrontKept();
}

TEST_F(PanelKeys, ReturnWalksTheFormAndTheLastBlankSendsIt) {
    deselect();
    openPanel();
    run("call");
    await("push button", "Back");
    ASSERT_TRUE(soon([] { return isFocused("text [whom]"); })) << panel().focus();
    EXPECT_TRUE(shows("label", "A call to [whom] for [what]!"));
    EXPECT_FALSE(shows("text", "Command"));
    input().type("writers");
    EXPECT_TRUE(soon([] { return shows("label", "A call to writers for [what]!"); }));
    input().tapKey(KEY_ENTER);
    ASSERT_TRUE(soon([] { return isFocused("text [what]"); })) << panel().focus();
    input().type("ink");
    expectFrontKept("");
    input().tapKey(KEY_ENTER);
    await("push button", "New chat");
    EXPECT_TRUE(shows("label", "A call to writers for ink!"));
    EXPECT_TRUE(soon([] { return isFocused("text Command"); })) << panel().focus();
}

TEST_F(PanelKeys, EscapeStepsBackOneStepAPress) {
    openPanel();
    answerSlowly("It begins", " and ends.");
    input().type("go");
    input().tapKey(KEY_ENTER);
    await("push button", "Cancel");
    ASSERT_TRUE(soon([] { return panel().text(await("document", "Answer")) == "It begins"; }));
    input().tapKey(KEY_ESC);
    await("push button", "New chat");
    EXPECT_TRUE(shows("document", "Answer"));
    finishAnswer();
    input().type("x");
    EXPECT_TRUE(soon([] { return command() == "x"; }));
    input().tapKey(KEY_ESC);
    EXPECT_TRUE(soon([] { return command().empty(); }));
    EXPECT_TRUE(shows("push button", "New chat"));
    press(KEY_T);
    EXPECT_TRUE(soon([] { return await("check box", "On top").has(ATSPI_STATE_CHECKED); }));
    input().tapKey(KEY_ESC);
    EXPECT_TRUE(goes("push button", "New chat"));
    await("label", kContextFound);
    input().tapKey(KEY_ESC);
    await("label", "Context removed");
    input().tapKey(KEY_ESC);
    EXPECT_TRUE(soon([] { return !await("check box", "On top").has(ATSPI_STATE_CHECKED); }));
    EXPECT_TRUE(isOpen());
    expectFrontKept();
    input().tapKey(KEY_ESC);
    EXPECT_TRUE(closes());
    expectFrontKept();
}

TEST_F(PanelKeys, ControlRAsksAgainWhereThereIsAnAnswer) {
    openPanel();
    const auto before = server().requests().size();
    press(KEY_R);
    input().type("hi");
    EXPECT_TRUE(soon([] { return command() == "hi"; }));
    EXPECT_EQ(server().requests().size(), before);
    input().tapKey(KEY_ENTER);
    await("push button", "New chat");
    answerWith("Another one.");
    // Also while the history is shown, where its button is not.
    press(KEY_H);
    await("list", "History");
    EXPECT_FALSE(shows("push button", "Re,"));
    press(KEY_R);
    EXPECT_TRUE(soon([&] { return server().requests().size() == before + 2; }));
    press(KEY_H);
    EXPECT_TRUE(soon([] { return panel().text(await("document", "Answer")).starts_with("Another one."); }))
        << panel().text(await("document", "Answer"));
    expectFrontKept();
}

TEST_F(PanelKeys, ControlPlusMinusAndZeroSetTheTextSizeWithinItsBounds) {
    openPanel();
    const auto height = [] { return panel().extents(await("list item", "Use typed")).height; };
    const int usual = height();
    press(KEY_KPPLUS);
    EXPECT_TRUE(soon([] { return stored("saveFontSize") == "18.0"; })) << stored("saveFontSize");
    EXPECT_TRUE(soon([&] { return height() > usual; }));
    for (int step = 0; step < 12; ++step)
        input().chord({KEY_LEFTCTRL, KEY_LEFTSHIFT, KEY_EQUAL});
    EXPECT_TRUE(soon([] { return stored("saveFontSize") == "40.0"; })) << stored("saveFontSize");
    press(KEY_0);
    EXPECT_TRUE(soon([] { return stored("saveFontSize") == "16.0"; })) << stored("saveFontSize");
    EXPECT_TRUE(soon([&] { return height() == usual; }));
    for (int step = 0; step < 4; ++step)
        press(KEY_MINUS);
    EXPECT_TRUE(soon([] { return stored("saveFontSize") == "12.0"; })) << stored("saveFontSize");
    EXPECT_TRUE(soon([&] { return height() < usual; }));
    press(KEY_0);
    EXPECT_TRUE(soon([] { return stored("saveFontSize") == "16.0"; }));
    expectFrontKept();
}

TEST_F(PanelKeys, ControlHShowsTheHistoryAndReturnOpensARow) {
    openPanel();
    press(KEY_H);
    await("list", "History");
    const auto first = panel().names("list item").front();
    EXPECT_TRUE(soon([&] { return isSelected(first); }));
    input().tapKey(KEY_DOWN);
    input().tapKey(KEY_DOWN);
    press(KEY_H);
    await("list", "Presets");
    press(KEY_H);
    await("list", "History");
    EXPECT_TRUE(soon([&] { return isSelected(first); })) << "the selection begins anew";
    input().tapKey(KEY_DOWN);
    input().tapKey(KEY_ENTER);
    await("document", "Answer");
    expectFrontKept();
}

TEST_F(PanelKeys, ControlMSwitchesMarkdownAndRemembersIt) {
    openPanel();
    converse("hi", "Some **bold** words");
    EXPECT_EQ(panel().text(await("document", "Answer")).substr(0, 15), "Some bold words");
    press(KEY_M);
    EXPECT_TRUE(soon([] { return panel().text(await("document", "Answer")) == "Some **bold** words"; }));
    EXPECT_TRUE(soon([] { return stored("markdownOnStorage") == "false"; }));
    press(KEY_M);
    await("document", "Answer");
    EXPECT_TRUE(soon([] { return stored("markdownOnStorage") == "true"; }));
    expectFrontKept();
}

TEST_F(PanelKeys, ControlShiftCCopiesTheAnswerAndCloses) {
    openPanel();
    converse("hi", "Copied *as it came*");
    input().chord({KEY_LEFTCTRL, KEY_LEFTSHIFT, KEY_C});
    EXPECT_TRUE(closes());
    EXPECT_EQ(clipboard(), "Copied *as it came*");
    expectFrontKept();
}

TEST_F(PanelKeys, ControlTPinsThePanelAndTheHotKeyLeavesThePin) {
    openPanel();
    press(KEY_T);
    EXPECT_TRUE(soon([] { return await("check box", "On top").has(ATSPI_STATE_CHECKED); }));
    expectFrontKept();
    pressHotKey();
    EXPECT_TRUE(closes());
    openPanel();
    EXPECT_TRUE(await("check box", "On top").has(ATSPI_STATE_CHECKED));
    press(KEY_T);
    EXPECT_TRUE(soon([] { return !await("check box", "On top").has(ATSPI_STATE_CHECKED); }));
}

TEST_F(PanelKeys, ControlReturnClosesThePanelAndWritesTheAnswerOverTheSelection) {
    openPanel();
    converse("hi", "They are going to the meeting.");
    press(KEY_ENTER);
    EXPECT_TRUE(closes());
    const auto text = editor().find("text");
    ASSERT_TRUE(text);
    EXPECT_TRUE(soon([&] {
        return editor().text(*text) == "They are going to the meeting.\nThis line stays.\n";
    })) << editor().text(*text);
    EXPECT_TRUE(scene().isEditorActive());
    // The other tests go on with the text that was.
    while (editor().text(*text) != kEditorText && !HasFailure()) {
        input().chord({KEY_LEFTCTRL, KEY_Z});
        waitFor([&] { return editor().text(*text) == kEditorText; }, 200ms);
    }
}

TEST_F(PanelKeys, TheTabKeyLeadsThroughTheControlsAndTypingGoesBackToTheField) {
    openPanel();
    std::vector<std::string> visited;
    for (int step = 0; step < 3; ++step) {
        const std::string before = panel().focus();
        input().tapKey(KEY_TAB);
        EXPECT_TRUE(soon([&] { return panel().focus() != before; })) << before;
        visited.push_back(panel().focus());
    }
    EXPECT_EQ(visited, (std::vector<std::string>{"push button Select, Return", "push button History, Ctrl+H",
                                                 "check box On top, Ctrl+T"}));
    input().type("mo");
    EXPECT_TRUE(soon([] { return command() == "mo"; })) << command();
    EXPECT_TRUE(isFocused("text Command"));
    expectFrontKept();
}

TEST_F(PanelKeys, TabLeadsToTheLinksOfAnAnswerAndReturnOpensThem) {
    openPanel();
    converse("hi", "See [the moths](https://moths.test/a) and\n\n```\ncode\n```\n");
    input().tapKey(KEY_TAB);
    EXPECT_TRUE(soon([] { return isFocused("link the moths"); })) << panel().described();
    input().tapKey(KEY_ENTER);
    EXPECT_TRUE(soon([] { return openedLinks() == "https://moths.test/a\n"; })) << openedLinks();
    input().tapKey(KEY_TAB);
    EXPECT_TRUE(soon([] { return isFocused("push button"); })) << panel().focus();
    input().tapKey(KEY_ENTER);
    EXPECT_TRUE(soon([] { return clipboard() == "code"; })) << clipboard();
    input().tapKey(KEY_TAB);
    EXPECT_TRUE(soon([] { return isFocused("push button Select"); })) << panel().focus();
    expectFrontKept();
}

TEST_F(PanelKeys, AHeldKeyThatClosesThePanelDoesNotRepeatIntoTheProgramInFront) {
    openPanel();
    converse("hi", "Their going to the the meeting.");
    const auto text = editor().find("text");
    ASSERT_TRUE(text);
    input().pressKey(KEY_LEFTCTRL);
    input().pressKey(KEY_ENTER);
    EXPECT_TRUE(closes());
    // The server repeats a held key after 660 ms, 25 times a second.
    letPass(1s);
    input().releaseKey(KEY_ENTER);
    input().releaseKey(KEY_LEFTCTRL);
    input().chord({KEY_LEFTCTRL, KEY_END});
    input().type("k");
    EXPECT_TRUE(soon([&] { return editor().text(*text) == kEditorText + std::string("k"); }))
        << editor().text(*text);
    input().tapKey(KEY_BACKSPACE);
    EXPECT_TRUE(soon([&] { return editor().text(*text) == kEditorText; }));
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
    input().type("moth");
    EXPECT_TRUE(soon([] { return command() == "moth"; }));
    const auto openMenu = [] {
        input().chord({KEY_LEFTSHIFT, KEY_F10});
        await("menu item", "Select All");
    };
    openMenu();
    input().tapKey(KEY_UP);
    EXPECT_TRUE(soon([] { return isFocused("menu item Select All"); })) << panel().focus();
    input().tapKey(KEY_ENTER);
    EXPECT_TRUE(goes("menu item", "Select All"));
    openMenu();
    EXPECT_TRUE(panel().press(await("menu item", "Cut")));
    EXPECT_TRUE(soon([] { return clipboard() == "moth" && command().empty(); })) << clipboard() << command();
    openMenu();
    input().tapKey(KEY_ESC);
    EXPECT_TRUE(goes("menu item", "Select All"));
    EXPECT_TRUE(isOpen());
    input().chord({KEY_LEFTCTRL, KEY_V});
    EXPECT_TRUE(soon([] { return command() == "moth"; })) << command();
    EXPECT_TRUE(isFocused("text Command"));
    expectFrontKept();
}

TEST_F(PanelKeys, AnErrorStandsAboveWhatFollows) {
    openPanel();
    answerWithStatus(401);
    input().type("hi");
    input().tapKey(KEY_ENTER);
    const auto error = await("label", "Error 401");
    EXPECT_TRUE(soon([] { return shows("list", "Presets") || shows("panel", "Conversation"); }));
    const auto below = panel().find("panel", "Conversation");
    const auto list = below ? *below : await("list", "Presets");
    EXPECT_LT(panel().extents(error).y, panel().extents(list).y);
    expectFrontKept();
}

} // namespace

} // namespace quillmoth::test
