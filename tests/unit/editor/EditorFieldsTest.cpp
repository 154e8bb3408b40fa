#include "Quillmoth/Shell/Editor/EmojiPicker.h"
#include "tests/unit/editor/EditorWindowFixture.h"

#include <QPushButton>

namespace quillmoth {
namespace {

class EditorFieldsTest : public EditorWindowFixture {};

TEST_F(EditorFieldsTest, typingReachesTheFileWithEachKey) {
    open({"n0", "c1"}, 1);
    const std::size_t before = platform.documents.writeCount;
    auto& name = control<QLineEdit>("Name");
    name.selectAll();
    type(name, "abc");
    EXPECT_EQ(platform.documents.writeCount, before + 3);
    EXPECT_EQ(fileContent()[1].name, "abc");
    auto& prompt = control<QPlainTextEdit>("Prompt");
    prompt.selectAll();
    type(prompt, "x y");
    QTest::keyClick(&prompt, Qt::Key_Return);
    prompt.insertPlainText("1\u00A0z");
    EXPECT_EQ(fileContent()[1].prompt, "x y\n1\u00A0z");
    EXPECT_EQ(list().model()->index(0, 0).data().toString(), "🦉abc");
}

TEST_F(EditorFieldsTest, anAbsentSystemPromptIsStoredFromTheFirstKeyOn) {
    open({"c0", "c1"}, 0);
    auto& area = control<QPlainTextEdit>("System Prompt");
    EXPECT_EQ(area.toPlainText(), "You are a helpful assistant.");
    area.setFocus();
    area.selectAll();
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, inRow(1));
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, inRow(0));
    for (const char* composed : {"c", ""}) {
        QInputMethodEvent composing(composed, {});
        QCoreApplication::sendEvent(&area, &composing);
    }
    EXPECT_EQ(fileContent()[0].systemPrompt, std::nullopt) << "nothing is typed yet";
    area.moveCursor(QTextCursor::End);
    type(area, "!");
    EXPECT_EQ(fileContent()[0].systemPrompt, "You are a helpful assistant.!");
    EXPECT_EQ(fileContent()[1].systemPrompt, std::nullopt);
}

TEST_F(EditorFieldsTest, undoIsTheFieldsFirstAndThenBringsDeletedPresetsBack) {
    open({"c0", "c1"}, 1);
    EXPECT_THROW(click("Undo Delete"), std::runtime_error);
    click("Delete");
    auto& name = control<QLineEdit>("Name");
    name.end(false);
    type(name, "x");
    QTest::keyClick(&name, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(names(), (Names{"c0"}));
    QTest::simulateEvent(&name, true, Qt::Key_Z, Qt::ControlModifier, QString(), true);
    EXPECT_EQ(names(), (Names{"c0"})) << "the key is only held";
    QTest::keyClick(&name, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(names(), (Names{"c0", "c1"}));
    EXPECT_EQ(name.text(), "c1");
    EXPECT_EQ(fileContent(), presets());
}

TEST_F(EditorFieldsTest, aBreakOfLinesIsStoredAsALineFeedHoweverItCame) {
    makeModel({"c0"});
    PromptData loaded = namedPreset("c0");
    loaded.prompt = "a\u2028b\r\nc";
    model->_PromptM.get()->setPrompts({loaded});
    openWindow(0);
    auto& prompt = control<QPlainTextEdit>("Prompt");
    prompt.moveCursor(QTextCursor::End);
    type(control<QLineEdit>("Name"), "x");
    EXPECT_TRUE(prompt.textCursor().atEnd()) << "an area that shows the text already is left alone";
    EXPECT_EQ(fileContent()[0].prompt, loaded.prompt) << "what nobody touched stays";
    QTest::keyClick(&prompt, Qt::Key_Return, Qt::ShiftModifier);
    prompt.insertPlainText("d\u2028e\u2029f");
    EXPECT_EQ(fileContent()[0].prompt, "a\nb\nc\nd\ne\nf");
}

TEST_F(EditorFieldsTest, typingInADeletedPresetIsNeverUndoneInTheOneThatTakesItsPlace) {
    for (const std::optional<std::string>& id :
         {std::optional<std::string>(), std::optional<std::string>("shared")}) {
        for (const char* other : {"xy", "xyz"}) {
            SCOPED_TRACE(id.value_or("none") + " " + other);
            makeModel({"c"});
            PromptData first = namedPreset("c");
            first.id = id;
            first.prompt = "x";
            PromptData second = first;
            second.prompt = other;
            model->_PromptM.get()->setPrompts({first, second});
            openWindow(0);
            auto& prompt = control<QPlainTextEdit>("Prompt");
            prompt.moveCursor(QTextCursor::End);
            type(prompt, "y");
            first.prompt = "xy";
            click("Delete");
            ASSERT_EQ(presets().size(), 1U);
            for (int count = 0; count < 3; ++count) {
                QTest::keyClick(&prompt, Qt::Key_Z, Qt::ControlModifier);
                EXPECT_EQ(platform.documents.content(PromptModel::kFilename), *writeJSON({first, second}));
            }
        }
    }
}

TEST_F(EditorFieldsTest, anEmojiOfManyCodePointsIsTakenWhole) {
    open({"c0"}, 0);
    auto& emoji = control<QLineEdit>("Emoji");
    emoji.selectAll();
    emoji.insert("👩🏽‍🚀👨‍👩‍👧");
    EXPECT_EQ(fileContent()[0].emoji, "👩🏽‍🚀👨‍👩‍👧");
    QTest::keyClick(&emoji, Qt::Key_Backspace);
    EXPECT_EQ(fileContent()[0].emoji, "👩🏽‍🚀");
}

TEST_F(EditorFieldsTest, thePickerMarksThePresetsEmojiAndPutsTheChosenOneInItsPlace) {
    open({"c0"}, 0);
    EXPECT_EQ(control<QLineEdit>("Emoji").text(), "🦉");
    const auto pick = [&](int row, Qt::Key key) {
        control<QPushButton>("Choose emoji").click();
        auto& picker = control<EmojiPicker>("Emoji");
        EXPECT_EQ(picker.currentItem()->text(), "🦉");
        EXPECT_EQ(picker.findItems(QStringLiteral("❄\uFE0F"), Qt::MatchFixedString).size(), 1)
            << "as a picture";
        EXPECT_EQ(picker.item(0)->toolTip(), "feather");
        picker.setCurrentRow(row);
        QTest::keyClick(&picker, key);
        EXPECT_FALSE(picker.isVisible());
        return fileContent()[0].emoji;
    };
    EXPECT_EQ(pick(0, Qt::Key_Escape), "🦉");
    EXPECT_EQ(pick(0, Qt::Key_Return), "🪶");
}

TEST_F(EditorFieldsTest, textsOfAnyLengthAreShownAsTheyAreAndCanBeEdited) {
    open({"c0"}, 0);
    PromptData preset = namedPreset("c0");
    preset.name = "<b>x</b>" + std::string(100000, 'a');
    preset.prompt = std::string(100000, 'b');
    model->_PromptM.get()->setPrompts({preset});
    platform.runUntilIdle();
    auto& name = control<QLineEdit>("Name");
    name.end(false);
    type(name, "y");
    auto& prompt = control<QPlainTextEdit>("Prompt");
    EXPECT_EQ(prompt.wordWrapMode(), QTextOption::WrapAnywhere)
        << "other wrapping takes a second for each key";
    prompt.moveCursor(QTextCursor::End);
    type(prompt, "p");
    EXPECT_TRUE(fileContent()[0].name == preset.name + "y");
    EXPECT_TRUE(fileContent()[0].prompt == preset.prompt + "p");
    const QString tip = list().model()->index(0, 0).data(Qt::ToolTipRole).toString();
    EXPECT_TRUE(tip.startsWith("<p>🦉&lt;b&gt;")) << "no markup";
    EXPECT_LT(tip.size(), 1000);
}

} // namespace
} // namespace quillmoth
