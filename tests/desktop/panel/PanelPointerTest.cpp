// The panel by the pointer: clicks on rows and controls, hovering, and selecting text.

#include "tests/desktop/panel/PanelSession.h"

#include <linux/input-event-codes.h>

namespace quillmoth::test {

namespace {

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
