// The panel by the pointer: clicks on rows and controls, hovering, selecting text, moving and resizing.

#include "tests/desktop/panel/PanelSession.h"

#include <linux/input-event-codes.h>

namespace quillmoth::test {

namespace {

constexpr std::uint32_t kRowHovered = 0x3C3C43;
constexpr std::uint32_t kRowSelected = 0x666670;

class PanelPointer : public PanelSession {
protected:
    static DesktopRectangle frame() { return windows().geometry(session().panelWindow()); }

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

    static void turnWheel(int button, int notches) {
        for (int notch = 0; notch < notches; ++notch)
            input().clickButton(button);
    }
};

TEST_F(PanelPointer, AClickSelectsARowADoubleClickRunsItAndTheOneEnteredLastStaysMarked) {
    openPanel();
    click(await("list item", "Make it shorter"));
    EXPECT_TRUE(isSelected("Make it shorter"));
    click(await("list item", "Use typed command"));
    EXPECT_TRUE(isSelected("Use typed command"));
    hover(await("list item", "Fix the grammar"));
    EXPECT_TRUE(soon([] { return isColored("Fix the grammar", kRowHovered); }));
    hover(await("list item", "Make it shorter"));
    EXPECT_TRUE(soon([] { return isColored("Make it shorter", kRowHovered); }));
    EXPECT_FALSE(isColored("Fix the grammar", kRowHovered));
    hover(await("text", "Command"));
    EXPECT_TRUE(isColored("Make it shorter", kRowHovered));
    EXPECT_TRUE(isColored("Use typed command", kRowSelected));
    EXPECT_TRUE(isFocused("text Command"));
    click(await("list item", "Fix the grammar"), 2);
    await("push button", "New chat");
    EXPECT_TRUE(has("label", "Fix this: "));
    expectFrontKept();
}

TEST_F(PanelPointer, HistoryRowsAreClickedLikePresets) {
    openPanel();
    click(await("push button", "History"));
    click(await("list item", "Conversation 3"));
    EXPECT_TRUE(isSelected("Conversation 3"));
    hover(await("list item", "Conversation 4"));
    EXPECT_TRUE(soon([] { return isColored("Conversation 4", kRowHovered); }));
    click(await("push button", "History"));
    await("list", "Presets");
    click(await("push button", "History"));
    EXPECT_TRUE(isSelected("Conversation 3")) << "the button keeps the selection";
    click(await("list item", "Conversation 5"), 2);
    await("document", "Answer");
    EXPECT_TRUE(has("label", "question 5"));
    expectFrontKept();
}

TEST_F(PanelPointer, TheBarDoesWhatItSays) {
    openPanel();
    typeCommand("hi");
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
    EXPECT_TRUE(soon(isPinned));
    click(await("push button", "Copy all"));
    EXPECT_TRUE(soon([] { return clipboard() == "Once more."; })) << clipboard();
    EXPECT_TRUE(isOpen()) << "a pinned panel stays";
    click(await("check box", "On top"));
    EXPECT_TRUE(soon([] { return !isPinned(); }));
    click(await("push button", "New chat"));
    EXPECT_TRUE(goes("push button", "New chat"));
    EXPECT_TRUE(isFocused("text Command"));
    expectFrontKept();
}

TEST_F(PanelPointer, TextOfAnAnswerIsSelectedByDraggingAndByClicks) {
    openPanel();
    converse("hi", "first moth line\n\nsecond line");
    const auto place = await("document", "Answer").bounds();
    drag(place.x + 1, place.y + 8, 400, 0);
    input().chord({KEY_LEFTCTRL, KEY_C});
    EXPECT_TRUE(soon([] { return clipboard() == "first moth line"; })) << clipboard();
    input().chord({KEY_LEFTCTRL, KEY_M});
    EXPECT_TRUE(comesToStore("markdownOnStorage", false));
    const auto plain = await("document", "Answer").bounds();
    for (const auto& [clicks, text] : {std::pair(2, "moth"), std::pair(3, "first moth line")}) {
        input().movePointer(plain.x + 50, plain.y + 8);
        for (int count = 0; count < clicks; ++count)
            input().clickButton(1);
        input().chord({KEY_LEFTCTRL, KEY_C});
        EXPECT_TRUE(soon([text = text] { return clipboard() == text; })) << clipboard();
    }
    input().chord({KEY_LEFTCTRL, KEY_M});
    EXPECT_TRUE(comesToStore("markdownOnStorage", true));
    EXPECT_TRUE(isOpen());
    expectFrontKept();
}

TEST_F(PanelPointer, TheRightButtonOpensAMenuForEachText) {
    openPanel();
    converse("hello there", "A [link](https://moths.test/b) here");
    const auto openMenu = [](const AccessibleElement& element, const char* item) {
        const auto place = element.bounds();
        input().click(place.x + 30, place.y + 10, 3);
        return await("menu item", item);
    };
    const auto choose = [&](const AccessibleElement& element, const char* item) {
        click(openMenu(element, item));
        EXPECT_TRUE(goes("menu item", item));
    };
    choose(await("document", "Answer"), "Copy Link");
    EXPECT_TRUE(soon([] { return clipboard() == "https://moths.test/b"; })) << clipboard();
    choose(await("document", "Answer"), "Open Link");
    EXPECT_TRUE(soon([] { return openedLinks() == "https://moths.test/b\n"; })) << openedLinks();
    const auto instruction = await("label", "Your are");
    choose(instruction, "Select All");
    choose(instruction, "Copy");
    EXPECT_TRUE(soon([&] { return clipboard() == instruction.name(); })) << clipboard();
    openMenu(await("text", "Command"), "Paste");
    click(instruction);
    EXPECT_TRUE(goes("menu item", "Paste"));
    EXPECT_TRUE(isFocused("text Command"));
    EXPECT_TRUE(isOpen());
    expectFrontKept();
}

TEST_F(PanelPointer, TheWheelAndTheBarScroll) {
    deselect();
    openPanel();
    const auto bar = await("scroll bar").bounds();
    hover(await("list item", "Use typed command"));
    turnWheel(5, 4);
    EXPECT_TRUE(goes("list item", "Use typed command"));
    EXPECT_TRUE(isOpen());
    turnWheel(4, 4);
    EXPECT_TRUE(soon([] { return has("list item", "Use typed command"); }));
    drag(bar.x + 5, bar.y + 12, 0, bar.height);
    EXPECT_TRUE(soon([] { return has("list item", "Preset number 30"); }));
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
    closePanel();
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
