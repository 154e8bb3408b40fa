// The panel by the pointer: clicks on rows and controls, hovering, selecting text, moving and resizing.

#include "tests/desktop/panel/PanelSession.h"

#include <linux/input-event-codes.h>

namespace quillmoth::test {

namespace {

constexpr std::uint32_t kRowHovered = 0x3C3C43;
constexpr std::uint32_t kRowSelected = 0x666670;

class PanelPointer : public PanelSession {
protected:
    static DesktopRectangle frame() { return desktop().windows().geometry(scene().panelWindow()); }

    static void drag(int fromX, int fromY, int byX, int byY) {
        input().movePointer(fromX, fromY);
        input().pressButton(1);
        input().movePointer(fromX + byX / 2, fromY + byY / 2);
        input().movePointer(fromX + byX, fromY + byY);
        input().releaseButton(1);
    }

    /// In the editor's text, where the panel does not cover it.
    static void clickBelowPanel() {
        const DesktopRectangle place = desktop().windows().geometry(scene().editorWindow());
        input().click(place.x + place.width / 2, place.y + place.height - 30);
    }

    static bool isColored(std::string_view row, std::uint32_t color) {
        const auto found = panel().find("list item", row);
        return found && pixelIn(*found, panel().extents(*found).width - 20, 8) == color;
    }
};

TEST_F(PanelPointer, AClickSelectsARowAndADoubleClickRunsIt) {
    openPanel();
    click(await("list item", "Make it shorter"));
    EXPECT_TRUE(soon([] { return isSelected("Make it shorter"); }));
    EXPECT_TRUE(isColored("Make it shorter", kRowSelected));
    click(await("list item", "Use typed command"));
    EXPECT_TRUE(soon([] { return isSelected("Use typed command"); }));
    EXPECT_TRUE(isFocused("text Command")) << panel().focus();
    expectFrontKept();
    click(await("list item", "Fix the grammar"), 2);
    await("push button", "New chat");
    EXPECT_TRUE(shows("label", "Fix this: "));
    expectFrontKept();
}

TEST_F(PanelPointer, TheRowEnteredLastStaysMarked) {
    openPanel();
    click(await("list item", "Use typed command"));
    hover(await("list item", "Fix the grammar"));
    EXPECT_TRUE(soon([] { return isColored("Fix the grammar", kRowHovered); }));
    hover(await("list item", "Make it shorter"));
    EXPECT_TRUE(soon([] { return isColored("Make it shorter", kRowHovered); }));
    EXPECT_FALSE(isColored("Fix the grammar", kRowHovered));
    hover(await("text", "Command"));
    EXPECT_TRUE(isColored("Make it shorter", kRowHovered));
    EXPECT_TRUE(isColored("Use typed command", kRowSelected));
    expectFrontKept();
}

TEST_F(PanelPointer, HistoryRowsAreClickedLikePresets) {
    openPanel();
    click(await("push button", "History"));
    await("list", "History");
    click(await("list item", "Conversation 3"));
    EXPECT_TRUE(soon([] { return isSelected("Conversation 3"); }));
    hover(await("list item", "Conversation 4"));
    EXPECT_TRUE(soon([] { return isColored("Conversation 4", kRowHovered); }));
    click(await("push button", "History"));
    await("list", "Presets");
    click(await("push button", "History"));
    EXPECT_TRUE(soon([] { return isSelected("Conversation 3"); })) << "the button keeps the selection";
    click(await("list item", "Conversation 5"), 2);
    await("document", "Answer");
    EXPECT_TRUE(shows("label", "question 5"));
    expectFrontKept();
}

TEST_F(PanelPointer, TheBarDoesWhatItSays) {
    openPanel();
    input().type("hi");
    EXPECT_TRUE(soon([] { return command() == "hi"; }));
    answerSlowly("First half", ", second half");
    click(await("push button", "Select"));
    click(await("push button", "Cancel"));
    await("push button", "New chat");
    finishAnswer();
    answerWith("Once more.");
    const auto requests = server().requests().size();
    click(await("push button", "Re,"));
    EXPECT_TRUE(soon([&] { return server().requests().size() == requests + 1; }));
    await("push button", "New chat");
    click(await("check box", "On top"));
    EXPECT_TRUE(soon([] { return await("check box", "On top").has(ATSPI_STATE_CHECKED); }));
    click(await("push button", "Copy all"));
    EXPECT_TRUE(soon([] { return clipboard() == "Once more."; })) << clipboard();
    EXPECT_TRUE(isOpen()) << "a pinned panel stays";
    click(await("check box", "On top"));
    EXPECT_TRUE(soon([] { return !await("check box", "On top").has(ATSPI_STATE_CHECKED); }));
    click(await("push button", "New chat"));
    EXPECT_TRUE(goes("push button", "New chat"));
    EXPECT_TRUE(isFocused("text Command")) << panel().focus();
    expectFrontKept();
}

TEST_F(PanelPointer, BackLeavesTheForm) {
    deselect();
    openPanel();
    click(await("list item", "Call to action"), 2);
    const auto back = await("push button", "Back");
    click(await("text", "[what]"));
    EXPECT_TRUE(soon([] { return isFocused("text [what]"); })) << panel().focus();
    click(back);
    await("text", "Command");
    EXPECT_TRUE(soon([] { return isFocused("text Command"); })) << panel().focus();
    expectFrontKept("");
}

TEST_F(PanelPointer, TextOfAnAnswerIsSelectedByDraggingAndByClicks) {
    openPanel();
    converse("hi", "first moth line\n\nsecond line");
    const auto place = panel().extents(await("document", "Answer"));
    drag(place.x + 1, place.y + 8, 400, 0);
    input().chord({KEY_LEFTCTRL, KEY_C});
    EXPECT_TRUE(soon([] { return clipboard() == "first moth line"; })) << clipboard();
    input().chord({KEY_LEFTCTRL, KEY_M});
    EXPECT_TRUE(soon([] { return stored("markdownOnStorage") == "false"; }));
    const auto plain = panel().extents(await("document", "Answer"));
    const auto clickAt = [&](int clicks) {
        input().movePointer(plain.x + 50, plain.y + 8);
        for (int count = 0; count < clicks; ++count) {
            input().pressButton(1);
            input().releaseButton(1);
        }
        input().chord({KEY_LEFTCTRL, KEY_C});
    };
    clickAt(2);
    EXPECT_TRUE(soon([] { return clipboard() == "moth"; })) << clipboard();
    clickAt(3);
    EXPECT_TRUE(soon([] { return clipboard() == "first moth line"; })) << clipboard();
    input().chord({KEY_LEFTCTRL, KEY_M});
    EXPECT_TRUE(isOpen());
    expectFrontKept();
}

TEST_F(PanelPointer, TheRightButtonOpensAMenuForEachText) {
    openPanel();
    converse("hello there", "A [link](https://moths.test/b) here");
    const auto choose = [](const AccessibleObject& object, int fromLeft, const char* item) {
        const auto place = panel().extents(object);
        input().click(place.x + fromLeft, place.y + 10, 3);
        click(await("menu item", item));
        EXPECT_TRUE(goes("menu item", item));
    };
    choose(await("document", "Answer"), 30, "Copy Link");
    EXPECT_TRUE(soon([] { return clipboard() == "https://moths.test/b"; })) << clipboard();
    choose(await("document", "Answer"), 30, "Open Link");
    EXPECT_TRUE(soon([] { return openedLinks() == "https://moths.test/b\n"; })) << openedLinks();
    const auto instruction = await("label", "Your are");
    choose(instruction, 30, "Select All");
    choose(instruction, 30, "Copy");
    EXPECT_TRUE(soon([&] { return clipboard() == instruction.name; })) << clipboard();
    const auto place = panel().extents(await("text", "Command"));
    input().click(place.x + 30, place.y + 10, 3);
    await("menu item", "Paste");
    click(instruction);
    EXPECT_TRUE(goes("menu item", "Paste"));
    EXPECT_TRUE(isFocused("text Command")) << panel().focus();
    EXPECT_TRUE(isOpen());
    expectFrontKept();
}

TEST_F(PanelPointer, TheWheelAndTheBarScroll) {
    deselect();
    openPanel();
    const auto row = await("list item", "Use typed command");
    const auto bar = panel().extents(await("scroll bar"));
    hover(row);
    for (int notch = 0; notch < 4; ++notch) {
        input().pressButton(5);
        input().releaseButton(5);
    }
    EXPECT_TRUE(goes("list item", "Use typed command"));
    EXPECT_TRUE(isOpen());
    for (int notch = 0; notch < 4; ++notch) {
        input().pressButton(4);
        input().releaseButton(4);
    }
    EXPECT_TRUE(soon([] { return shows("list item", "Use typed command"); }));
    drag(bar.x + 5, bar.y + 12, 0, bar.height);
    EXPECT_TRUE(soon([] { return shows("list item", "Preset number 30"); }));
    expectFrontKept("");
}

TEST_F(PanelPointer, EmptyPartsMoveThePanelAndEdgesResizeIt) {
    openPanel();
    const auto before = frame();
    drag(before.x + before.width - 200, before.y + before.height - 60, 60, -40);
    EXPECT_TRUE(soon([&] { return frame().x == before.x + 60 && frame().y == before.y - 40; }));
    const auto moved = frame();
    drag(moved.x + moved.width - 1, moved.y + 200, 80, 0);
    EXPECT_TRUE(soon([&] { return frame().width == moved.width + 80; }));
    drag(moved.x + 300, moved.y + moved.height - 1, 0, 50);
    EXPECT_TRUE(soon([&] { return frame().height == moved.height + 50; }));
    const auto chosen = frame();
    input().tapKey(KEY_ESC);
    await("label", "Context removed");
    input().tapKey(KEY_ESC);
    ASSERT_TRUE(closes());
    openPanel();
    EXPECT_TRUE(soon([&] { return frame().x == chosen.x && frame().width == chosen.width; })) << "saved";
    expectFrontKept();
    drag(chosen.x + chosen.width - 200, chosen.y + chosen.height - 60, -100, 0);
    EXPECT_TRUE(soon([&] { return frame().x == chosen.x - 100; }));
    pressHotKey();
    ASSERT_TRUE(closes());
    openPanel();
    EXPECT_TRUE(soon([&] { return frame().x == chosen.x; })) << "the hot key does not save";
    drag(chosen.x + chosen.width - 1, chosen.y + 200, -80, 0);
    drag(chosen.x + 300, chosen.y + chosen.height - 1, 0, -50);
}

TEST_F(PanelPointer, AClickElsewhereClosesUnlessPinned) {
    openPanel();
    input().chord({KEY_LEFTCTRL, KEY_T});
    EXPECT_TRUE(soon([] { return await("check box", "On top").has(ATSPI_STATE_CHECKED); }));
    clickBelowPanel();
    EXPECT_TRUE(soon([] { return panel().focus().empty(); })) << panel().focus();
    input().type("z");
    const auto text = editor().find("text");
    ASSERT_TRUE(text);
    EXPECT_TRUE(soon([&] { return editor().text(*text) == kEditorText + std::string("z"); }))
        << editor().text(*text);
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(command(), "") << "the keyboard is the other application's";
    input().tapKey(KEY_BACKSPACE);
    EXPECT_TRUE(soon([&] { return editor().text(*text) == kEditorText; })) << editor().text(*text);
    click(await("text", "Command"));
    ASSERT_TRUE(soon([] { return isFocused("text Command"); })) << panel().focus();
    input().type("back");
    EXPECT_TRUE(soon([] { return command() == "back"; })) << command();
    input().chord({KEY_LEFTCTRL, KEY_T});
    EXPECT_TRUE(soon([] { return !await("check box", "On top").has(ATSPI_STATE_CHECKED); }));
    clickBelowPanel();
    EXPECT_TRUE(closes());
    EXPECT_TRUE(scene().isEditorActive());
}

} // namespace

} // namespace quillmoth::test
