#include "tests/unit/assistant/AssistantFixture.h"

namespace quillmoth {

namespace {

constexpr int kSummary = 0;
constexpr int kFix = 1;
constexpr int kMail = 2;
constexpr int kCall = 3;

class PromptExecutionTest : public AssistantFixture {
protected:
    void select(std::int64_t index, const std::string& command = "") {
        model->_selectedIndex = index;
        model->_command = command;
    }

    void hold(const std::string& context) {
        model->_selectedValue = context;
        model->_isContext = true;
    }
};

TEST_F(PromptExecutionTest, each_way_chooses_its_own_system_message_and_text) {
    struct Case {
        const char* what;
        std::int64_t index;
        const char* command;
        const char* context;
        Texts expected;
    };

    const Case cases[] = {
        {"typed", -1, "hi", "", {"system: Your are helpful assistant", "user: hi"}},
        {"preset", kMail, "", "", {"system: You are a helpful assistant", "user: Write a mail"}},
        {"context preset without context",
         kSummary,
         "",
         "",
         {"system: You are a helpful assistant", "user: Sum up: {selected text}"}},
        {"typed with context",
         -1,
         "Shorten",
         "abc",
         {"system: Your are helpful assistant", "user: Shorten : ###\n abc ###"}},
        {"preset with context",
         kSummary,
         "",
         "abc",
         {"system: You are a helpful assistant.", "user: Sum up: abc"}},
        {"brackets with context are no blanks",
         kFix,
         "",
         "abc",
         {"system: You are an editor", "user: Fix [it]: abc"}},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.what);
        model->_messages = std::vector<ChatMessage>();
        model->_isLoading = false;
        model->_isContext = false;
        if (*each.context != 0)
            hold(each.context);
        select(each.index, each.command);
        model->runPrompt();
        EXPECT_EQ(texts(model->_messages), each.expected);
        EXPECT_TRUE(model->_isLoading);
    }
}

TEST_F(PromptExecutionTest, every_placeholder_of_exactly_that_spelling_is_replaced) {
    makeModel({preset("Twice", "{selected text} and {selected text}, {Selected Text}")});
    hold("A");
    select(0);
    model->runPrompt();
    EXPECT_EQ(model->_messages->back().content, "A and A, {Selected Text}");
}

TEST_F(PromptExecutionTest, a_running_request_is_not_joined) {
    select(-1, "one");
    model->runPrompt();
    model->_error = std::string("old");
    model->_command = std::string("two");
    const Texts names = assignments([&] { model->runPrompt(); });
    EXPECT_EQ(names, Texts{"_error"});
    EXPECT_EQ(*model->_error, "");
    EXPECT_EQ(streamCount(), 1U);
}

TEST_F(PromptExecutionTest, a_conversation_goes_on_with_the_command_whatever_is_selected) {
    converse("one", {"1"});
    select(kMail, "two");
    model->runPrompt();
    EXPECT_EQ(texts(model->_messages),
              (Texts{"system: Your are helpful assistant", "user: one", "assistant: 1", "user: two"}));
}

TEST_F(PromptExecutionTest, one_message_left_is_a_conversation_with_context_and_none_without) {
    for (const bool context : {false, true}) {
        SCOPED_TRACE(context);
        model->_messages = std::vector<ChatMessage>{{.id = std::nullopt, .role = "system", .content = "s"}};
        model->_isLoading = false;
        model->_selectedValue = std::string("abc");
        model->_isContext = context;
        select(-1, "hi");
        model->runPrompt();
        EXPECT_EQ(model->_messages->front().content, context ? "s" : "Your are helpful assistant");
        EXPECT_EQ(model->_messages->back().content, "hi");
    }
}

TEST_F(PromptExecutionTest, a_bracketed_preset_opens_the_form_and_keeps_the_conversation_until_it_is_sent) {
    converse("one", {"1"});
    select(kCall, "");
    model->_focusTemp = std::vector<std::int64_t>{9};
    model->runPrompt();
    EXPECT_TRUE(model->_nonContextPrompt);
    EXPECT_TRUE(model->_focusTemp->empty()) << "the blanks of the former form are gone";
    EXPECT_EQ(model->_extractedTexts->size(), 5U);
    EXPECT_EQ(model->_messages->size(), 3U);
    EXPECT_EQ(streamCount(), 1U);

    model->_extractedTexts.mutate([](auto& pieces) { pieces[1].text = "readers"; });
    model->runPrompt();
    EXPECT_FALSE(model->_nonContextPrompt);
    EXPECT_EQ(texts(model->_messages), (Texts{"system: You sell", "user: A call to readers for [what]!"}));
}

TEST_F(PromptExecutionTest, any_bracket_opens_the_form_unless_it_bears_a_combining_mark) {
    for (const auto& [prompt, opens] : {std::pair{"a]b", true}, {"x[y", true}, {"x[\xCC\x81y", false}}) {
        SCOPED_TRACE(prompt);
        makeModel({preset("P", prompt, "nonContext")});
        select(0);
        model->runPrompt();
        EXPECT_EQ(model->_nonContextPrompt, opens);
    }
}

TEST_F(PromptExecutionTest, an_empty_command_sends_nothing) {
    select(-1, "");
    lines.clear();
    model->runPrompt();
    EXPECT_EQ(lines, (Texts{"prompt ", "EXIT PROMPT EQUAL NIL"}));
    EXPECT_EQ(texts(model->_messages), Texts{"system: Your are helpful assistant"});
    EXPECT_FALSE(model->_isLoading);
}

TEST_F(PromptExecutionTest, a_history_row_opens_its_conversation_and_sends_nothing) {
    model->storeConversation("T", {{.id = "1", .role = "user", .content = "hi"}}, -1);
    model->_openHistory = true;
    model->runPrompt();
    EXPECT_EQ(texts(model->_messages), Texts{"user: hi"});
    EXPECT_FALSE(model->_openHistory);
    EXPECT_TRUE(model->_browseHistory);
    EXPECT_EQ(*model->_responseValue, "openChat");
    EXPECT_EQ(model->_chatWithHistory, 0);
    EXPECT_EQ(streamCount(), 0U);
}

TEST_F(PromptExecutionTest, an_index_out_of_range_is_a_fatal_fault) {
    select(99);
    EXPECT_THROW(model->runPrompt(), FatalFault);
    select(-1);
    model->_nonContextPrompt = true;
    EXPECT_THROW(model->runPrompt(), FatalFault);
    model->_openHistory = true;
    model->_keyHistorySelected = 7;
    EXPECT_THROW(model->runPrompt(), FatalFault);
    model->_keyHistorySelected = -1;
    EXPECT_NO_THROW(model->runPrompt());
}

} // namespace

} // namespace quillmoth
