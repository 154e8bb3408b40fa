#include "tests/unit/assistant/AssistantFixture.h"

#include "Quillmoth/Assistant/ConversationJournal.h"

namespace quillmoth {

namespace {

constexpr double kMessageSeconds = 0.06;
constexpr double kAnswerSeconds = 1.1;

class ConversationJournalTest : public AssistantFixture {
protected:
    [[nodiscard]] std::string journal() const {
        return platform.documents.content(ConversationJournal::kFilename);
    }

    /// Writes what waits to be written.
    void settle(double seconds = kAnswerSeconds) {
        platform.runUntilIdle();
        platform.mainQueue.advance(seconds);
    }

    /// The next start after an end that came without any notice, as the files are now.
    void startAgain() {
        const auto files = platform.documents.files;
        model.reset();
        platform.mainQueue.clear();
        platform.documents.files = files;
        model = DataModel::create(platform.platform());
    }

    /// What the next start would find.
    [[nodiscard]] std::vector<Texts> history() const {
        std::vector<Texts> result;
        for (const oldMessagesStruct& each : *model->_oldMessages)
            result.push_back(texts(each.message));
        return result;
    }

    void closeAndStore() {
        model->dismissStep();
        summary().answer(500, "no topic");
        platform.runUntilIdle();
    }
};

constexpr const char* kSystem = "system: Your are helpful assistant";

TEST_F(ConversationJournalTest, an_open_conversation_is_the_first_of_the_history_at_the_next_start) {
    converse("stored", {"before"});
    closeAndStore();
    platform.clock.now += 90;
    converse("one", {R"(1 \"🦉\"\n)"});
    converse("two", {"2"});
    settle();
    startAgain();
    EXPECT_EQ(history(), (std::vector<Texts>{
                             {kSystem, "user: one", "assistant: 1 \"🦉\"\n", "user: two", "assistant: 2"},
                             {kSystem, "user: stored", "assistant: before"}}));
    EXPECT_EQ(model->_oldMessages->front().topic, "😀 Chat: 2023-11-14 22:14");
    EXPECT_EQ(model->_oldMessages->front().created, platform.clock.now);
    EXPECT_EQ(journal(), "") << "it is in the history now";
    startAgain();
    EXPECT_EQ(history().size(), 2U);
}

TEST_F(ConversationJournalTest, a_running_answer_is_kept_each_second_by_what_is_new_alone) {
    ask("one");
    stream().deliverStatus(200);
    stream().deliverData(piece("Hel"));
    settle(kMessageSeconds);
    const std::string begun = journal();
    EXPECT_NE(begun.find("Hel"), std::string::npos);
    stream().deliverData(piece("lo"));
    settle(kMessageSeconds);
    EXPECT_EQ(journal(), begun);
    settle();
    ASSERT_TRUE(journal().starts_with(begun));
    const std::string added = journal().substr(begun.size());
    EXPECT_TRUE(added.ends_with(",\"more\":\"lo\"}\n")) << added;
    EXPECT_EQ(std::count(added.begin(), added.end(), '\n'), 1);
    startAgain();
    EXPECT_EQ(history(), (std::vector<Texts>{{kSystem, "user: one", "assistant: Hello"}}));
}

TEST_F(ConversationJournalTest, an_orderly_end_keeps_the_last_piece_too) {
    converse("one", {"1"});
    model.reset();
    model = DataModel::create(platform.platform());
    EXPECT_EQ(history(), (std::vector<Texts>{{kSystem, "user: one", "assistant: 1"}}));
}

TEST_F(ConversationJournalTest, a_conversation_that_changes_before_its_end_replaces_what_was_kept) {
    converse("one", {"1"});
    settle();
    model->regenerate();
    serveData(200, piece("other"));
    settle();
    startAgain();
    EXPECT_EQ(history(), (std::vector<Texts>{{kSystem, "user: one", "assistant: other"}}));
}

TEST_F(ConversationJournalTest, what_is_stored_or_dropped_or_was_not_answered_leaves_nothing) {
    converse("one", {"1"});
    settle();
    model->dismissStep();
    EXPECT_NE(journal(), "") << "the topic is still to come";
    settle();
    EXPECT_NE(journal(), "");
    summary().answer(500, "no topic");
    platform.runUntilIdle();
    EXPECT_FALSE(
        platform.documents.fileExists(platform::FakeDocuments::pathOf(ConversationJournal::kFilename)));
    ask("two");
    settle();
    EXPECT_NE(journal(), "");
    failToConnect("down");
    for (int presses = 0; presses < 3; ++presses)
        model->dismissStep();
    settle();
    EXPECT_EQ(journal(), "");
    ask("three");
    settle();
    startAgain();
    EXPECT_EQ(history().size(), 1U);
    EXPECT_EQ(journal(), "");
}

TEST_F(ConversationJournalTest, one_that_the_user_replaces_by_another_is_not_kept) {
    converse("one", {"1"});
    settle();
    for (int presses = 0; presses < 2; ++presses)
        ask("", 3);
    serveData(200, piece("2"));
    settle();
    startAgain();
    EXPECT_EQ(history(), (std::vector<Texts>{
                             {"system: You sell", "user: A call to [whom] for [what]!", "assistant: 2"}}));
}

TEST_F(ConversationJournalTest, a_closed_conversation_waits_for_the_disk_beside_the_next_one) {
    converse("one", {"1"});
    model->dismissStep();
    summary().answer(std::nullopt, std::nullopt, platform::URLError{{}, "down"});
    platform.runUntilIdle();
    EXPECT_TRUE(model->_oldMessages->empty());
    converse("two", {"2"});
    settle();
    platform.documents.isDiskFull = true;
    closeAndStore();
    EXPECT_NE(model->_error->find("conversations could not be saved"), std::string::npos) << *model->_error;
    platform.documents.isDiskFull = false;
    startAgain();
    EXPECT_EQ(history(), (std::vector<Texts>{{kSystem, "user: two", "assistant: 2"},
                                             {kSystem, "user: one", "assistant: 1"}}));
}

TEST_F(ConversationJournalTest,
       a_stored_conversation_that_goes_on_is_kept_and_one_only_looked_at_is_not_doubled) {
    converse("one", {"1"});
    closeAndStore();
    openStored(0);
    settle();
    startAgain();
    EXPECT_EQ(history().size(), 1U);
    openStored(0);
    converse("two", {"2"});
    settle();
    startAgain();
    ASSERT_EQ(history().size(), 2U);
    EXPECT_EQ(history().front().back(), "assistant: 2");
    EXPECT_EQ(history().back().back(), "assistant: 1");
}

TEST_F(ConversationJournalTest, a_torn_line_ends_nothing_and_damaged_ones_are_kept_aside) {
    converse("one", {"1"});
    settle();
    const std::string whole = journal();
    const std::string path = platform::FakeDocuments::pathOf(ConversationJournal::kFilename);
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        platform.documents.files[path] = whole.substr(0, length);
        EXPECT_LE(readJournal(whole.substr(0, length), platform.uuidSource).conversations.size(), 1U);
    }
    const std::string damaged = "no line\n" + whole + "{\"conversation\":";
    platform.documents.files[path] = damaged;
    startAgain();
    EXPECT_EQ(history().size(), 1U);
    EXPECT_EQ(platform.documents.content(ConversationJournal::kFilename + std::string(".damaged-1")),
              damaged);
}

TEST_F(ConversationJournalTest, a_journal_that_cannot_be_read_stays_and_the_next_one_begins_beside_it) {
    const std::string path = platform::FakeDocuments::pathOf(ConversationJournal::kFilename);
    platform.documents.put(ConversationJournal::kFilename, "locked away");
    platform.documents.unreadable = {path};
    startAgain();
    model->refreshList();
    converse("one", {"1"});
    settle();
    EXPECT_EQ(platform.documents.files[path], "locked away");
    startAgain();
    EXPECT_EQ(history(), (std::vector<Texts>{{kSystem, "user: one", "assistant: 1"}}));
}

TEST_F(ConversationJournalTest, a_journal_that_cannot_be_written_is_told_once_and_made_up_for) {
    ask("one");
    stream().deliverStatus(200);
    platform.documents.isDiskFull = true;
    for (const bool isFirst : {true, false, false}) {
        stream().deliverData(piece("a"));
        settle();
        EXPECT_EQ(model->_error->starts_with("This conversation is not kept on the disk"), isFirst);
        model->_error = std::string();
    }
    platform.documents.isDiskFull = false;
    stream().deliverData(piece("d"));
    settle();
    startAgain();
    EXPECT_EQ(history().at(0).back(), "assistant: aaad");
}

} // namespace

} // namespace quillmoth
