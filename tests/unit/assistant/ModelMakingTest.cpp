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

TEST_F(ModelMakingTest, the_fields_start_as_told) {
    remake();
    EXPECT_EQ(model->_selectedIndex, 0);
    EXPECT_EQ(model->_hoverIndex, -1);
    EXPECT_EQ(model->_keyHistorySelected, 0);
    EXPECT_EQ(model->_keyHistoryHover, -1);
    EXPECT_EQ(model->_chatWithHistory, -1);
    EXPECT_TRUE(model->_didFocus);
    EXPECT_TRUE(model->_filteredData->empty());
    EXPECT_EQ(model->_extractedTexts->size(), 7U);
    EXPECT_EQ(model->_extractedTexts->at(1).text, "[landing page/email/website]");
}

TEST_F(ModelMakingTest, a_damaged_history_is_logged_and_left_until_the_next_storing) {
    platform.documents.put(DataModel::kHistoryFilename, "[{");
    lines.clear();
    remake();
    EXPECT_TRUE(model->_oldMessages->empty());
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.front().rfind("error reading data file:QuillmothHistory.json :", 0), 0U) << lines.front();
    EXPECT_EQ(platform.documents.content(DataModel::kHistoryFilename), "[{");
}

TEST_F(ModelMakingTest, damaged_files_are_kept_aside_each_content_once) {
    platform.documents.put(DataModel::kHistoryFilename, "[{");
    remake();
    remake();
    platform.documents.put(DataModel::kHistoryFilename, "other");
    remake();
    const std::string aside = std::string(DataModel::kHistoryFilename) + ".damaged-";
    EXPECT_EQ(platform.documents.content(aside + "1"), "[{");
    EXPECT_EQ(platform.documents.content(aside + "2"), "other");
    EXPECT_FALSE(platform.documents.fileExists(platform::FakeDocuments::pathOf(aside + "3")));
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
