#include "tests/unit/shell/PanelFixture.h"

#include <gtest/gtest.h>

namespace quillmoth {
namespace {

std::vector<PromptData> manyPresets(int count) {
    std::vector<PromptData> presets;
    presets.reserve(static_cast<std::size_t>(count));
    for (int index = 0; index < count; ++index)
        presets.push_back(makePreset("💡", "Preset " + std::to_string(index), "p", "nonContext"));
    return presets;
}

TEST(LongListsTest, OnlyRowsThatAreSeenArePainted) {
    PanelUnderTest panel(manyPresets(20000));
    panel.open();
    PresetList& presets = panel.view->listArea().presets();
    EXPECT_EQ(presets.rowCount(), 20001);
    panel.surface().grab();
    EXPECT_GT(presets.paintedRows(), 5);
    EXPECT_LT(presets.paintedRows(), 12);
}

TEST(LongListsTest, TheListFollowsTheSelection) {
    PanelUnderTest panel(manyPresets(1000));
    panel.open();
    ListArea& list = panel.view->listArea();
    const auto isSeen = [&](const RowList& rows, int position) {
        const QRect row = rows.rowRect(position).translated(0, rows.y());
        const int top = list.scrollView().position();
        return row.top() >= top && row.bottom() < top + list.height();
    };
    panel.model->_selectedIndex = 2;
    panel.settle();
    EXPECT_EQ(list.scrollView().position(), 0) << "a short move scrolls nothing";
    for (const std::int64_t index : {500, 499, 501, 999, 0, -1}) {
        panel.model->_selectedIndex = index;
        panel.settle();
        EXPECT_TRUE(isSeen(list.presets(), static_cast<int>(index) + 1)) << index;
    }
    EXPECT_EQ(list.scrollView().position(), 0);
    panel.model->_openHistory = true;
    panel.model->_oldMessages =
        std::vector<oldMessagesStruct>(50, {.topic = "A", .message = {}, .created = 0});
    panel.settle();
    for (const std::int64_t index : {40, 3}) {
        panel.model->_keyHistorySelected = index;
        panel.settle();
        EXPECT_TRUE(isSeen(list.history(), static_cast<int>(index))) << index;
    }
}

TEST(LongListsTest, HistoryShowsItsTopicsAndItsEmptiness) {
    PanelUnderTest panel(manyPresets(1));
    panel.open();
    ListArea& list = panel.view->listArea();
    panel.model->_openHistory = true;
    panel.settle();
    EXPECT_FALSE(list.hint().isHidden());
    EXPECT_EQ(list.hint().text(), "No conversations yet.");
    panel.model->_oldMessages = {{.topic = "🦋 Moths", .message = {}, .created = 0},
                                 {.topic = "Rome", .message = {}, .created = 0}};
    panel.settle();
    EXPECT_TRUE(list.hint().isHidden());
    EXPECT_EQ(list.history().row(0).pictograph, QStringLiteral("🦋"));
    EXPECT_EQ(list.history().row(0).name, QStringLiteral("Moths"));
    EXPECT_EQ(list.history().row(1).pictograph + list.history().row(1).name, QStringLiteral("Rome"));
}

} // namespace
} // namespace quillmoth
