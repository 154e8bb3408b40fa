#include "Quillmoth/Chat/ChatRoute.h"
#include "tests/unit/assistant/FloatingViewFixture.h"

namespace quillmoth {
namespace {

/// With an address that has a typing error.
class RefusalTest : public FloatingViewFixture {
protected:
    RefusalTest() { spoil(); }

    void spoil() { platform.userDefaults.set("openAIBaseURL", std::string("https//typing.example")); }

    void correct() { platform.userDefaults.remove("openAIBaseURL"); }

    /// Nothing has gone out, and the panel says why.
    void expectRefusal() {
        platform.runUntilIdle();
        EXPECT_EQ(streamCount(), 0U);
        EXPECT_NE(model->_error->find("Nothing was sent"), std::string::npos) << *model->_error;
        EXPECT_FALSE(model->_isLoading);
        EXPECT_TRUE(view->offersSettings());
    }
};

TEST_F(RefusalTest, a_typed_command_stays_in_the_field_and_goes_out_once_the_address_is_right) {
    for (const bool isContext : {false, true}) {
        model->_isContext = isContext;
        ask("my question");
        expectRefusal();
        EXPECT_EQ(*model->_command, "my question");
        EXPECT_TRUE(model->_messages->empty());
    }
    correct();
    EXPECT_FALSE(view->offersSettings());
    model->runPrompt();
    EXPECT_EQ(streamCount(), 1U);
    EXPECT_EQ(*model->_error, "");
}

TEST_F(RefusalTest, a_key_in_a_locked_keyring_is_asked_for_and_the_text_stays_and_goes_to_nobody_else) {
    correct();
    platform.userDefaults.obstacles["openapikey"] = "The keyring is locked. Nothing was sent.";
    ask("my question");
    expectRefusal();
    EXPECT_EQ(*model->_command, "my question");
    EXPECT_EQ(platform.userDefaults.wanted, Texts{"openapikey"}) << "asked once, by the request alone";
    platform.userDefaults.obstacles.clear();
    platform.userDefaults.set("openapikey", std::string("sk-1"));
    model->runPrompt();
    EXPECT_EQ(streamCount(), 1U);
}

TEST_F(RefusalTest, a_form_stays_open_with_what_is_filled_in) {
    ask("", 3);
    ASSERT_TRUE(model->_nonContextPrompt);
    view->formFieldEdited(1, "Ada");
    model->runPrompt();
    expectRefusal();
    EXPECT_TRUE(model->_nonContextPrompt);
    EXPECT_EQ(model->_extractedTexts.get()[1].text, "Ada");
}

TEST_F(RefusalTest, a_text_that_is_handed_on_goes_back_into_the_field) {
    model->sendPrompt("handed on");
    expectRefusal();
    EXPECT_EQ(*model->_command, "handed on");
}

TEST_F(RefusalTest, a_conversation_keeps_its_answer_and_is_stored_under_its_date) {
    correct();
    converse("one", {"1"});
    spoil();
    model->regenerate();
    EXPECT_EQ(model->_messages->back().content, "1");
    EXPECT_NE(*model->_error, "");
    ask("two");
    EXPECT_EQ(model->_messages->back().content, "1");
    EXPECT_EQ(*model->_command, "two");
    model->archiveConversation();
    platform.runUntilIdle();
    EXPECT_TRUE(platform.urlSessions.shared().tasks().empty());
    ASSERT_EQ(model->_oldMessages->size(), 1U);
    EXPECT_EQ(model->_oldMessages->front().message.back().content, "1");
}

} // namespace
} // namespace quillmoth
