// The panel by the keyboard and the pointer of a real X server.

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

constexpr std::uint32_t kRowHovered = 0x3C3C43;

class PanelPointer : public PanelSession {
protected:
    /// In the editor's text, where the panel does not cover it.
    static void clickBelowPanel() {
        const DesktopRectangle place = windows().geometry(editor().window());
        input().click(place.x + place.width / 2, place.y + place.height - 30);
    }

    static bool isColored(std::string_view row, std::uint32_t color) {
        // Behind the name.
        const DesktopRectangle place = await("list item", row).bounds();
        return hasColor({place.x + place.width - 20, place.y + 8, 1, 1}, color);
    }
};

TEST_F(PanelPointer, RowsAreMarkedUnderThePointerSelectedByAClickAndRunByADoubleClick) {
    openPanel();
    for (const char* row : {"Make it shorter", "Use typed command"}) {
        click(await("list item", row));
        EXPECT_TRUE(isSelected(row)) << row;
    }
    for (const char* row : {"Fix the grammar", "Make it shorter"}) {
        hover(await("list item", row));
        EXPECT_TRUE(soon([&] { return isColored(row, kRowHovered); })) << row;
    }
    EXPECT_FALSE(isColored("Fix the grammar", kRowHovered));
    click(await("list item", "Fix the grammar"), 2);
    await("push button", "New chat");
    EXPECT_TRUE(has("label", "Fix this: "));
    expectFrontKept();
}

TEST_F(PanelPointer, TextIsSelectedByDraggingAndAMenuOpensInThePanel) {
    openPanel();
    converse("hello there", "A [link](https://moths.test/b) here");
    const auto place = await("document", "Answer").bounds();
    drag(place.x + 1, place.y + 8, 400, 0);
    input().chord({KEY_LEFTCTRL, KEY_C});
    EXPECT_TRUE(soon([] { return clipboard() == "A link here"; })) << clipboard();
    const auto openMenu = [&] {
        input().click(place.x + 30, place.y + 10, 3);
        return await("menu item", "Copy Link");
    };
    click(openMenu());
    EXPECT_TRUE(soon([] { return clipboard() == "https://moths.test/b"; })) << clipboard();
    openMenu();
    click(await("label", "Your are"));
    EXPECT_TRUE(goes("menu item", "Copy Link"));
    EXPECT_TRUE(isFocused("text Command"));
    EXPECT_TRUE(isOpen());
    expectFrontKept();
}

TEST_F(PanelPointer, AClickElsewhereClosesUnlessPinned) {
    openPanel();
    input().chord({KEY_LEFTCTRL, KEY_T});
    EXPECT_TRUE(soon(isPinned));
    clickBelowPanel();
    EXPECT_TRUE(soon([] { return shown().focused().empty(); }));
    input().type("z");
    EXPECT_TRUE(editorHolds(kEditorText + std::string("z"))) << editor().text();
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(command(), "") << "the keyboard is the other application's";
    input().tapKey(KEY_BACKSPACE);
    EXPECT_TRUE(editorHolds(kEditorText)) << editor().text();
    click(await("text", "Command"));
    ASSERT_TRUE(isFocused("text Command"));
    typeCommand("back");
    input().chord({KEY_LEFTCTRL, KEY_T});
    EXPECT_TRUE(soon([] { return !isPinned(); }));
    clickBelowPanel();
    EXPECT_TRUE(closes());
    EXPECT_TRUE(editor().isActive());
}

} // namespace

} // namespace quillmoth::test
