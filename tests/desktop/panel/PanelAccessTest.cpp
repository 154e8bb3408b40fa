// The panel by the accessibility bus alone: what a screen reader finds, can do, and is told.

#include "tests/desktop/panel/PanelSession.h"

#include <linux/input-event-codes.h>

#include <algorithm>

namespace quillmoth::test {

namespace {

class PanelAccess : public PanelSession {
protected:
    static std::vector<std::string> barNames() {
        std::vector<std::string> names;
        for (const AccessibleObject& object : panel().showing())
            if (object.role == "push button" || object.role == "check box")
                names.push_back(object.name);
        return names;
    }

    /// Waits until `count` messages have come, and a moment longer for more.
    static std::vector<std::string> messages(std::size_t count) {
        std::vector<std::string> all;
        const auto take = [&] {
            for (std::string& message : panel().takeMessages())
                all.push_back(std::move(message));
        };
        waitFor([&] {
            take();
            return all.size() >= count;
        });
        letPass(std::chrono::milliseconds(100));
        take();
        return all;
    }

    static void press(std::string_view role, std::string_view name) {
        EXPECT_TRUE(panel().press(await(role, name))) << name;
    }
};

TEST_F(PanelAccess, EveryControlHasARoleANameAndItsKeys) {
    openPanel();
    EXPECT_TRUE(await("dialog", "Quillmoth").has(ATSPI_STATE_ACTIVE));
    const auto field = await("text", "Command");
    for (const auto state : {ATSPI_STATE_FOCUSED, ATSPI_STATE_EDITABLE, ATSPI_STATE_MULTI_LINE,
                             ATSPI_STATE_FOCUSABLE, ATSPI_STATE_SHOWING})
        EXPECT_TRUE(field.has(state)) << state;
    EXPECT_EQ(barNames(), (std::vector<std::string>{"Select, Return", "History, Ctrl+H", "On top, Ctrl+T"}));
    EXPECT_TRUE(shows("tool bar", "Actions"));
    for (const AccessibleObject& object : panel().showing()) {
        const bool isControl = object.role != "filler" && object.role != "notification";
        EXPECT_TRUE(!isControl || !object.name.empty()) << panel().described();
    }
    const auto focused = panel().showing();
    EXPECT_EQ(std::count_if(focused.begin(), focused.end(),
                            [](const AccessibleObject& object) {
                                return object.has(ATSPI_STATE_FOCUSED) && object.role != "list item";
                            }),
              1)
        << panel().described();
}

TEST_F(PanelAccess, RowsTellTheirSelectionAndRunByTheirAction) {
    openPanel();
    const auto rows = panel().names("list item");
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_TRUE(await("list item", "Use typed command").has(ATSPI_STATE_SELECTED));
    EXPECT_FALSE(await("list item", "Fix the grammar").has(ATSPI_STATE_SELECTED));
    EXPECT_TRUE(await("list item", "Fix the grammar").has(ATSPI_STATE_SELECTABLE));
    press("list item", "Fix the grammar");
    await("push button", "New chat");
    EXPECT_TRUE(shows("label", "Fix this: "));
    EXPECT_EQ(barNames(),
              (std::vector<std::string>{"Select, Return", "History, Ctrl+H", "On top, Ctrl+T", "Re, Ctrl+R",
                                        "New chat, Escape", "Copy all, Ctrl+Shift+C"}));
    EXPECT_EQ(panel().text(await("document", "Answer")).substr(0, 10), "An answer.");
    expectFrontKept();
}

TEST_F(PanelAccess, TheFieldTakesTextAndTheBarItsActions) {
    openPanel();
    EXPECT_TRUE(panel().setText(await("text", "Command"), "short"));
    EXPECT_TRUE(goes("list item", "Fix the grammar"));
    answerSlowly("Half", " whole");
    press("push button", "Select");
    press("push button", "Cancel");
    await("push button", "New chat");
    finishAnswer();
    press("check box", "On top");
    EXPECT_TRUE(soon([] { return await("check box", "On top").has(ATSPI_STATE_CHECKED); }));
    press("check box", "On top");
    press("push button", "Copy all");
    EXPECT_TRUE(closes());
    EXPECT_EQ(clipboard(), "Half");
    openPanel();
    press("push button", "New chat");
    EXPECT_TRUE(goes("push button", "New chat"));
    press("push button", "History");
    await("list", "History");
    press("list item", "Conversation 2");
    await("document", "Answer");
    EXPECT_TRUE(shows("label", "question 2"));
    expectFrontKept();
}

TEST_F(PanelAccess, TheFormIsFilledInAndLeft) {
    deselect();
    openPanel();
    press("list item", "Call to action");
    await("form", "Form");
    ASSERT_TRUE(soon([] { return isFocused("text [whom]"); })) << panel().focus();
    EXPECT_TRUE(panel().setText(await("text", "[what]"), "ink"));
    EXPECT_TRUE(soon([] { return shows("label", "A call to [whom] for ink!"); })) << panel().described();
    press("push button", "Back");
    await("text", "Command");
    EXPECT_TRUE(soon([] { return isFocused("text Command"); })) << panel().focus();
    expectFrontKept("");
}

TEST_F(PanelAccess, StartAndEndOfAnAnswerAreToldOnceAndItsPiecesNot) {
    openPanel();
    (void)panel().takeMessages();
    answerWith("one");
    input().type("hi");
    input().tapKey(KEY_ENTER);
    await("push button", "New chat");
    EXPECT_EQ(messages(2), (std::vector<std::string>{"Waiting for the answer", "Answer finished"}));
    server().answer("/api/v1/chat/completions/stream", chatStream(std::vector<std::string>(200, "piece ")));
    input().chord({KEY_LEFTCTRL, KEY_R});
    ASSERT_TRUE(soon([] { return panel().text(await("document", "Answer")).size() > 1000; }));
    EXPECT_EQ(messages(2), (std::vector<std::string>{"Waiting for the answer", "Answer finished"}));
    expectFrontKept();
}

TEST_F(PanelAccess, AnErrorIsToldOnce) {
    openPanel();
    (void)panel().takeMessages();
    answerWithStatus(401);
    input().type("hi");
    input().tapKey(KEY_ENTER);
    const auto error = await("label", "Error 401");
    EXPECT_EQ(messages(2), (std::vector<std::string>{"Waiting for the answer", error.name}));
    expectFrontKept();
}

} // namespace

} // namespace quillmoth::test
