#include "tests/unit/assistant/AssistantFixture.h"

namespace quillmoth {
namespace {

constexpr int kSummary = 0;
constexpr int kFix = 1;
constexpr int kMail = 2;
constexpr int kCall = 3;

class PromptExecutionTest : public AssistantFixture {};

TEST_F(PromptExecutionTest, each_way_chooses_its_own_system_message_and_text) {
    const std::tuple<std::int64_t, const char*, const char*, Texts> cases[] = {
        {-1, "hi [you]", "", {"system: Your are helpful assistant", "user: hi [you]"}},
        {kMail, "", "", {"system: You are a helpful assistant", "user: Write a mail"}},
        {kSummary, "", "", {"system: You are a helpful assistant", "user: Sum up: {selected text}"}},
        {-1, "Shorten", "abc", {"system: Your are helpful assistant", "user: Shorten : ###\n abc ###"}},
        {kSummary, "", "abc", {"system: You are a helpful assistant.", "user: Sum up: abc"}},
        // Brackets with a context are no blanks.
        {kFix, "", "abc", {"system: You are an editor", "user: Fix [it]: abc"}},
    };
    for (const auto& [index, command, context, expected] : cases) {
        startAnew();
        model->_isLoading = false;
        model->_selectedValue = std::string(context);
        model->_isContext = *context != 0;
        ask(command, index);
        EXPECT_EQ(texts(model->_messages), expected);
        EXPECT_TRUE(model->_isLoading);
    }
}

TEST_F(PromptExecutionTest, every_placeholder_of_exactly_that_spelling_is_replaced) {
    makeModel({preset("Twice", "{selected text} and {selected text}, {Selected Text}")});
    hold("A");
    ask("", 0);
    EXPECT_EQ(model->_messages->back().content, "A and A, {Selected Text}");
}

TEST_F(PromptExecutionTest, a_running_request_is_not_joined) {
    ask("one");
    model->_error = std::string("old");
    model->_command = std::string("two");
    EXPECT_EQ(assignments([&] { model->runPrompt(); }), Texts{"_error"});
    EXPECT_EQ(*model->_error, "");
    EXPECT_EQ(streamCount(), 1U);
}

TEST_F(PromptExecutionTest, a_conversation_goes_on_with_the_command_whatever_is_selected) {
    converse("one", "1");
    ask("two", kMail);
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
        ask("hi");
        EXPECT_EQ(model->_messages->front().content, context ? "s" : "Your are helpful assistant");
        EXPECT_EQ(model->_messages->back().content, "hi");
    }
}

TEST_F(PromptExecutionTest, a_bracketed_preset_opens_the_form_and_keeps_the_conversation_until_it_is_sent) {
    converse("one", "1");
    model->_focusTemp = std::vector<std::int64_t>{9};
    ask("", kCall);
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
        ask("", 0);
        EXPECT_EQ(model->_nonContextPrompt, opens);
    }
}

TEST_F(PromptExecutionTest, an_empty_command_sends_nothing) {
    lines.clear();
    ask("");
    EXPECT_EQ(lines, Texts{"EXIT PROMPT EQUAL NIL"});
    EXPECT_EQ(texts(model->_messages), Texts{"system: Your are helpful assistant"});
    EXPECT_FALSE(model->_isLoading);
}

TEST_F(PromptExecutionTest, a_history_row_opens_its_conversation_and_sends_nothing) {
    store({"T"});
    openStored(0);
    EXPECT_EQ(texts(model->_messages), Texts{"user: T"});
    EXPECT_FALSE(model->_openHistory);
    EXPECT_TRUE(model->_browseHistory);
    EXPECT_EQ(*model->_responseValue, "openChat");
    EXPECT_EQ(model->_chatWithHistory, 0);
    EXPECT_EQ(streamCount(), 0U);
}

TEST_F(PromptExecutionTest, an_index_out_of_range_is_a_fatal_fault) {
    EXPECT_THROW(ask("", 5), FatalFault);
    model->_nonContextPrompt = true;
    EXPECT_THROW(ask(""), FatalFault);
    EXPECT_THROW(openStored(0), FatalFault);
    EXPECT_NO_THROW(openStored(-1));
}

} // namespace
} // namespace quillmoth
