#include "tests/unit/assistant/AssistantFixture.h"

namespace quillmoth {

namespace {

class ModelMakingTest : public AssistantFixture {
protected:
    void remake() { model = DataModel::create(platform.platform()); }
};

TEST_F(ModelMakingTest, a_first_start_takes_the_shipped_presets_and_writes_their_file) {
    platform.documents.files.clear();
    platform.documents.directories.clear();
    remake();
    EXPECT_TRUE(model->_oldMessages->empty());
    EXPECT_FALSE(model->_PromptM.get()->prompts().empty());
    EXPECT_EQ(platform.documents.content(PromptModel::kFilename),
              *writeJSON(model->_PromptM.get()->prompts()));
    EXPECT_TRUE(platform.documents.content(DataModel::kHistoryFilename).empty());
}

TEST_F(ModelMakingTest, the_first_row_is_selected_and_the_field_asks_for_the_focus) {
    remake();
    EXPECT_EQ((Rows{model->_selectedIndex, model->_hoverIndex, model->_keyHistorySelected,
                    model->_keyHistoryHover, model->_chatWithHistory}),
              (Rows{0, -1, 0, -1, -1}));
    EXPECT_TRUE(model->_didFocus);
    EXPECT_TRUE(model->_filteredData->empty());
    EXPECT_EQ(model->_extractedTexts->size(), 7U);
}

TEST_F(ModelMakingTest, a_damaged_history_is_logged_and_kept_aside_each_content_once) {
    platform.documents.put(DataModel::kHistoryFilename, "[]");
    lines.clear();
    remake();
    EXPECT_EQ(lines, Texts{"Already dictionary created."}) << "an empty history is no error";
    for (const char* content : {"[{", "[{", "other"}) {
        platform.documents.put(DataModel::kHistoryFilename, content);
        lines.clear();
        remake();
        EXPECT_TRUE(model->_oldMessages->empty());
        EXPECT_TRUE(lines.front().starts_with("error reading data file:QuillmothHistory.json :"));
        EXPECT_EQ(platform.documents.content(DataModel::kHistoryFilename), content) << "until the next save";
    }
    const std::string aside = std::string(DataModel::kHistoryFilename) + ".damaged-";
    EXPECT_EQ(platform.documents.content(aside + "1"), "[{");
    EXPECT_EQ(platform.documents.content(aside + "2"), "other");
    EXPECT_FALSE(platform.documents.fileExists(platform::FakeDocuments::pathOf(aside + "3")));
}

TEST_F(ModelMakingTest, a_history_that_cannot_be_read_stays_and_is_told_and_joined_once_it_can) {
    const std::string path = platform::FakeDocuments::pathOf(DataModel::kHistoryFilename);
    model->storeConversation("old", {}, -1);
    const std::string before = platform.documents.files[path];
    platform.documents.unreadable = {path};
    remake();
    EXPECT_NE(model->_error->find("QuillmothHistory.json cannot be used"), std::string::npos)
        << *model->_error;
    model->storeConversation("new", {}, -1);
    EXPECT_EQ(platform.documents.files[path], before);
    platform.documents.unreadable.clear();
    remake();
    ASSERT_EQ(model->_oldMessages->size(), 2U);
    EXPECT_EQ(model->_oldMessages->front().topic, "new");
    EXPECT_EQ(*model->_error, "");
}

TEST_F(ModelMakingTest, an_empty_history_file_is_no_error) {
    platform.documents.put(DataModel::kHistoryFilename, "[]");
    lines.clear();
    remake();
    for (const std::string& line : lines)
        EXPECT_EQ(line.find("QuillmothHistory"), std::string::npos) << line;
}

TEST_F(ModelMakingTest, an_assignment_of_the_same_value_is_told_before_it_lands) {
    std::string seen = "not told";
    const Subscription subscription =
        model->objectWillChange([&](std::string_view name) { seen = std::string(name) + *model->_command; });
    model->_command = std::string("x");
    EXPECT_EQ(seen, "_command");
    model->_command = std::string("x");
    EXPECT_EQ(seen, "_commandx");
}

TEST_F(ModelMakingTest, changing_the_presets_tells_first_then_saves_once) {
    lines.clear();
    std::size_t countWhenTold = 0;
    const Subscription subscription = model->_PromptM.get()->objectWillChange(
        [&](std::string_view) { countWhenTold = model->_PromptM.get()->prompts().size(); });
    model->_PromptM.get()->append({preset("New", "new", "nonContext")});
    EXPECT_EQ(countWhenTold, 5U);
    EXPECT_EQ(model->_filteredData->back(), 5) << "the list follows";
    EXPECT_EQ(model->_selectedIndex, DataModel::kTypedCommand);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "Saved to JSON"), 1);
    EXPECT_EQ(readPrompts(platform.documents.content(PromptModel::kFilename))->size(), 6U);
}

} // namespace

} // namespace quillmoth
