#include "Quillmoth/Editor/PresetFile.h"
#include "tests/unit/editor/EditorFixture.h"

#include <algorithm>

namespace quillmoth {
namespace {

using Kind = PromptEditorView::Kind;

class EditorRulesTest : public EditorFixture {
protected:
    /// The editor over `names`, with `kind` on show and its preset `index` selected.
    PromptEditorView& open(const Names& names, Kind kind = Kind::context, Selection index = std::nullopt) {
        makeModel(names);
        editor_.emplace(model, platform.platform());
        editor_->showTab(kind);
        editor_->shownTab().selection = index;
        return *editor_;
    }

    std::optional<PromptEditorView> editor_;
};

TEST_F(EditorRulesTest, aPresetThatNamesNoKindOrAnotherOneIsListedInTheContextTab) {
    PromptEditorView& view = open({"c0", "n1", "absent", "n3"});
    model->_PromptM.get()->edit(3, [](auto& preset) { preset.promptType = "other"; });
    EXPECT_EQ(view.contextTab.rows(), (Rows{0, 2, 3}));
    EXPECT_EQ(view.nonContextTab.rows(), (Rows{1}));
}

TEST_F(EditorRulesTest, addAppendsThePresetOfTheTabAndSelectsIt) {
    PromptEditorView& view = open({"c0"}, Kind::context, 0);
    view.add();
    view.showTab(Kind::nonContext);
    view.add();
    const auto uuid = platform::FakeUUIDSource::uuid;
    const std::string name = "New Prompt";
    const PromptData context{uuid(1), "😀", name, "{selected text}", {}, "context", {}};
    const PromptData nonContext{uuid(2), "😀", name, "Hi!", "You're a helpful assistant!", "nonContext", {}};
    EXPECT_EQ(presets(), (std::vector<PromptData>{namedPreset("c0"), context, nonContext}));
    EXPECT_EQ(fileContent(), presets());
    EXPECT_EQ(view.contextTab.selection, 1);
    EXPECT_EQ(view.nonContextTab.selection, 2);
}

TEST_F(EditorRulesTest, changesOfTheListReachTheAssistantsRows) {
    PromptEditorView& view = open({"c0", "n1", "c2"}, Kind::nonContext, 1);
    model->_isContext = true;
    model->_selectedIndex = 0;
    view.showTab(Kind::context);
    view.add();
    EXPECT_EQ(model->_filteredData.get(), (Rows{0, 2, 3}));
    EXPECT_EQ(model->_selectedIndex, DataModel::kTypedCommand);
    view.moveRow(0, 3);
    EXPECT_EQ(model->_filteredData.get(), (Rows{1, 2, 3}));
    view.showTab(Kind::nonContext);
    view.deletePreset();
    EXPECT_EQ(model->_filteredData.get(), (Rows{0, 1, 2}));
}

TEST_F(EditorRulesTest, eachEditIsWrittenAtOnce) {
    PromptEditorView& view = open({"c0", "plain"}, Kind::context, 1);
    EditorView form = *view.editor();
    const std::size_t before = platform.documents.writeCount;
    lines.clear();
    form.setName("Name");
    form.setEmoji("👨‍👩‍👧");
    form.setPrompt("Prompt");
    EXPECT_EQ(form.shownSystemPrompt() + form.shownPromptType(), "You are a helpful assistant.context");
    form.setSystemPrompt("");
    EXPECT_EQ(form.shownSystemPrompt(), "");
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "Saved to JSON"), 4);
    EXPECT_EQ(platform.documents.writeCount, before + 4);
    const PromptData expected{"id of plain", "👨‍👩‍👧", "Name", "Prompt", "",
                              std::nullopt,  std::nullopt};
    EXPECT_EQ(fileContent()[1], expected);
    EXPECT_EQ(fileContent()[0], namedPreset("c0"));
    form.addSelectedText();
    form.addSelectedText();
    EXPECT_EQ(presets()[1].prompt, "Prompt{selected text}{selected text}");
}

TEST_F(EditorRulesTest, aMoveWithinATabMovesAmongAllPresetsAndTheSelectionsFollow) {
    // A row and a gap; the names then, and the selections, which are of c2 and n3.
    const std::tuple<std::size_t, std::size_t, Names, std::int64_t, std::int64_t> cases[] = {
        {0, 2, {"n1", "c2", "n3", "c0", "c4"}, 1, 2}, {0, 3, {"n1", "c2", "n3", "c4", "c0"}, 1, 2},
        {2, 0, {"c4", "c0", "n1", "c2", "n3"}, 3, 4}, {1, 0, {"c2", "c0", "n1", "n3", "c4"}, 0, 3},
        {1, 3, {"c0", "n1", "n3", "c4", "c2"}, 4, 2}, {1, 1, {"c0", "n1", "c2", "n3", "c4"}, 2, 3},
        {1, 2, {"c0", "n1", "c2", "n3", "c4"}, 2, 3}, {0, 4, {"c0", "n1", "c2", "n3", "c4"}, 2, 3},
        {3, 0, {"c0", "n1", "c2", "n3", "c4"}, 2, 3},
    };
    for (const auto& [row, gap, expected, context, nonContext] : cases) {
        SCOPED_TRACE(std::to_string(row) + " to " + std::to_string(gap));
        PromptEditorView& view = open({"c0", "n1", "c2", "n3", "c4"}, Kind::context, 2);
        view.nonContextTab.selection = 3;
        EXPECT_EQ(view.moveRow(row, gap), expected != Names({"c0", "n1", "c2", "n3", "c4"}));
        EXPECT_EQ(names(), expected);
        EXPECT_EQ(view.contextTab.selection, context);
        EXPECT_EQ(view.nonContextTab.selection, nonContext);
        EXPECT_EQ(fileContent(), presets());
    }
}

TEST_F(EditorRulesTest, deleteStepsTheSelectionBackAndSparesTheLastPreset) {
    PromptEditorView& view = open({"c0", "n1", "c2"}, Kind::context, 2);
    view.deletePreset();
    EXPECT_EQ(names(), (Names{"c0", "n1"}));
    EXPECT_EQ(view.contextTab.selection, 1);
    view.deletePreset();
    EXPECT_EQ(names(), (Names{"c0"}));
    EXPECT_EQ(view.contextTab.selection, 0);
    view.deletePreset();
    EXPECT_EQ(names(), (Names{"c0"}));
    EXPECT_EQ(view.contextTab.selection, 0);
    EXPECT_EQ(fileContent(), presets());
    PromptEditorView& two = open({"c0", "c1"}, Kind::context, 0);
    two.deletePreset();
    EXPECT_EQ(two.contextTab.selection, 0);
    EXPECT_EQ(two.editor()->preset().name, "c1") << "the second one takes the place of the first";
}

TEST_F(EditorRulesTest, theOtherTabKeepsItsPresetWhenOneIsDeleted) {
    const std::pair<std::int64_t, Selection> cases[] = {{0, 0}, {2, std::nullopt}, {3, 2}};
    for (const auto& [other, expected] : cases) {
        PromptEditorView& view = open({"c0", "c1", "c2", "n3"}, Kind::context, 2);
        view.nonContextTab.selection = other;
        view.deletePreset();
        EXPECT_EQ(view.nonContextTab.selection, expected) << other;
    }
}

TEST_F(EditorRulesTest, deletionsAreTakenBackInReverseOrder) {
    PromptEditorView& view = open({"c0", "n1", "c2"}, Kind::context, 0);
    view.deletePreset();
    view.showTab(Kind::nonContext);
    view.nonContextTab.selection = 0;
    view.deletePreset();
    EXPECT_EQ(names(), (Names{"c2"}));
    view.showTab(Kind::context);
    view.contextTab.selection = 0;
    view.undoDelete();
    EXPECT_EQ(view.contextTab.selection, 1) << "it has moved on with its preset";
    EXPECT_EQ(view.shownKind(), Kind::nonContext);
    EXPECT_EQ(view.editor()->preset().name, "n1");
    view.undoDelete();
    EXPECT_EQ(view.shownKind(), Kind::context);
    EXPECT_EQ(view.editor()->preset().name, "c0");
    EXPECT_EQ(view.nonContextTab.selection, 1);
    EXPECT_FALSE(view.canUndoDelete());
    EXPECT_EQ(names(), (Names{"c0", "n1", "c2"}));
    view.contextTab.selection = 1;
    view.deletePreset();
    view.undoDelete();
    EXPECT_EQ(view.shownKind(), Kind::nonContext) << "the other one does not list it";
    EXPECT_EQ(view.nonContextTab.selection, 1);
    EXPECT_EQ(fileContent(), presets());
}

TEST_F(EditorRulesTest, anImportedPresetGetsAnIdOfItsOwnAndAKnownOneIsLeftOut) {
    open({"c0"});
    platform.documents.files["/x.json"] = *writeJSON(std::vector{namedPreset("c0"), namedPreset("n1")});
    const auto result = importPresets(*model, platform.documents, platform.uuidSource, "/x.json");
    ASSERT_TRUE(result);
    EXPECT_EQ(result->added + 10 * result->present, 11U);
    EXPECT_EQ(names(), (Names{"c0", "n1"}));
    EXPECT_EQ(presets()[1].id, platform::FakeUUIDSource::uuid(1));
}

TEST_F(EditorRulesTest, aFormWithoutItsPresetIsAFault) {
    for (const std::int64_t index : {-1, 1}) {
        PromptEditorView& view = open({"c0"}, Kind::context, index);
        EXPECT_THROW(view.editor()->setName("x"), FatalFault);
        EXPECT_THROW(view.deletePreset(), FatalFault);
        EXPECT_EQ(names(), (Names{"c0"}));
    }
}

TEST_F(EditorRulesTest, theLibraryOpensInTheBrowserAndOnlySuccessIsLogged) {
    PromptEditorView& view = open({"c0"});
    lines.clear();
    view.openPromptLibrary();
    platform.workspace.takesURLs = false;
    view.openPromptLibrary();
    EXPECT_EQ(platform.workspace.openedURLs, Names(2, "https://quillmoth.example/library/All"));
    EXPECT_EQ(lines, Names{"Open prompt library in browser"});
}

} // namespace
} // namespace quillmoth
