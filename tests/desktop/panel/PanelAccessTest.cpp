// The panel by the accessibility bus alone: what a screen reader finds, can do, and is told.

#include "tests/desktop/panel/PanelSession.h"

namespace quillmoth::test {

namespace {

using Names = std::vector<std::string>;

class PanelAccess : public PanelSession {
protected:
    static Names barNames() {
        Names names;
        for (const AccessibleElement& element : shown().showing())
            if (element.role() == "push button" || element.role() == "check box")
                names.push_back(element.name());
        return names;
    }

    /// Waits until `count` messages have come, and a moment longer for more.
    static Names messages(std::size_t count) {
        Names all;
        const auto take = [&] {
            for (std::string& message : shown().takeMessages())
                all.push_back(std::move(message));
            return all.size() >= count;
        };
        waitFor(take);
        letPass(std::chrono::milliseconds(100));
        take();
        return all;
    }

    static void press(std::string_view role, std::string_view name) {
        EXPECT_TRUE(await(role, name).press()) << name;
    }
};

TEST_F(PanelAccess, EveryControlHasARoleANameAndItsKeys) {
    openPanel();
    EXPECT_TRUE(await("dialog", "Quillmoth").has(ATSPI_STATE_ACTIVE));
    const auto field = await("text", "Command");
    for (const auto state : {ATSPI_STATE_EDITABLE, ATSPI_STATE_MULTI_LINE, ATSPI_STATE_FOCUSABLE})
        EXPECT_TRUE(field.has(state)) << state;
    EXPECT_EQ(barNames(), (Names{"Select, Return", "History, Ctrl+H", "On top, Ctrl+T"}));
    EXPECT_TRUE(has("tool bar", "Actions"));
    EXPECT_EQ(shown().names("list item").size(), 3U);
    EXPECT_TRUE(await("list item", "Use typed command").isSelected());
    EXPECT_FALSE(await("list item", "Fix the grammar").isSelected());
    EXPECT_TRUE(await("list item", "Fix the grammar").has(ATSPI_STATE_SELECTABLE));
    int focused = 0;
    for (const AccessibleElement& element : shown().showing()) {
        const std::string role = element.role();
        EXPECT_TRUE(role == "filler" || role == "notification" || !element.name().empty()) << role;
        focused += element.isFocused() && role != "list item" ? 1 : 0;
    }
    EXPECT_EQ(focused, 1);
}

TEST_F(PanelAccess, RowsFieldAndBarDoTheirActions) {
    openPanel();
    press("list item", "Fix the grammar");
    await("push button", "New chat");
    EXPECT_TRUE(has("label", "Fix this: "));
    EXPECT_EQ(barNames(), (Names{"Select, Return", "History, Ctrl+H", "On top, Ctrl+T", "Re, Ctrl+R",
                                 "New chat, Escape", "Copy all, Ctrl+Shift+C"}));
    press("push button", "New chat");
    EXPECT_TRUE(goes("push button", "New chat"));
    EXPECT_TRUE(await("text", "Command").setText("short"));
    EXPECT_TRUE(goes("list item", "Fix the grammar"));
    press("push button", "Select");
    await("push button", "New chat");
    press("push button", "Copy all");
    EXPECT_TRUE(closes());
    EXPECT_EQ(clipboard(), "An answer.");
    openPanel();
    press("push button", "New chat");
    EXPECT_TRUE(goes("push button", "New chat"));
    press("push button", "History");
    await("list", "History");
    press("list item", "Conversation 2");
    await("document", "Answer");
    EXPECT_TRUE(has("label", "question 2"));
    expectFrontKept();
}

TEST_F(PanelAccess, StartAndEndOfAnAnswerAndAnErrorAreToldOnceAndPiecesNot) {
    openPanel();
    (void)shown().takeMessages();
    answerWith(Names(200, "piece "));
    send("hi");
    EXPECT_EQ(messages(2), (Names{"Waiting for the answer", "Answer finished"}));
    server().answer("/api/v1/chat/completions/stream", jsonAnswer(401, "{}"));
    send("hi");
    const auto error = await("label", "Error 401");
    EXPECT_EQ(messages(2), (Names{"Waiting for the answer", error.name()}));
    expectFrontKept();
}

} // namespace

} // namespace quillmoth::test
