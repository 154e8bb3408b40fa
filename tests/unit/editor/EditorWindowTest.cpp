#include "EditorFixture.h"
#include "Quillmoth/Shell/Editor/PresetListView.h"
#include "Quillmoth/Shell/Editor/PromptEditorWindow.h"
#include "Quillmoth/Shell/Windows/ColorScheme.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>

namespace quillmoth {

namespace {

class EditorWindowTest : public EditorFixture {
protected:
    /// Opens the window over `names`, with the preset `index` of the Context tab selected.
    void open(const Names& names, Selection index = std::nullopt) {
        makeModel(names);
        openWindow(index);
    }

    /// Opens it over the model as it is.
    void openWindow(Selection index) {
        window_ = std::make_unique<PromptEditorWindow>(model, platform.platform(), scheme_);
        window_->view().contextTab.selection = index;
        window_->refresh();
        window_->present();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window_.get()));
    }

    /// The control that is on screen under this accessible name or text.
    template<class Control>
    Control& control(const QString& name) {
        for (auto* found : window_->findChildren<Control*>()) {
            if (found->isVisible() && nameOf(*found) == name)
                return *found;
        }
        throw std::runtime_error("There is no control " + name.toStdString());
    }

    template<class Control>
    static QString nameOf(const Control& control) {
        if constexpr (std::is_same_v<Control, QAbstractButton>)
            return control.text().isEmpty() ? control.accessibleName() : control.text();
        else
            return control.accessibleName();
    }

    PresetListView& list() { return control<PresetListView>("Presets"); }

    /// The middle of a row of the list; `part` 0 is its upper edge, 1 its lower one.
    QPoint inRow(int row, double part = 0.5) {
        const QRect place = list().visualRect(list().model()->index(row, 0));
        return {place.center().x(), place.top() + static_cast<int>(part * place.height())};
    }

    void click(const QString& button) { control<QAbstractButton>(button).click(); }

    void type(QWidget& field, const QString& text) {
        field.setFocus();
        QTest::keyClicks(&field, text);
    }

    ColorScheme scheme_{false};
    std::unique_ptr<PromptEditorWindow> window_;
};

TEST_F(EditorWindowTest, typingReachesTheFileWithEachKey) {
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

TEST_F(EditorWindowTest, anAbsentSystemPromptIsStoredFromTheFirstKeyOn) {
    open({"c0", "c1"}, 0);
    auto& area = control<QPlainTextEdit>("System Prompt");
    EXPECT_EQ(area.toPlainText(), "You are a helpful assistant.");
    area.setFocus();
    area.selectAll();
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, inRow(1));
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, inRow(0));
    EXPECT_EQ(fileContent()[0].systemPrompt, std::nullopt);
    area.moveCursor(QTextCursor::End);
    type(area, "!");
    EXPECT_EQ(fileContent()[0].systemPrompt, "You are a helpful assistant.!");
    EXPECT_EQ(fileContent()[1].systemPrompt, std::nullopt);
}

TEST_F(EditorWindowTest, whatOthersChangeInTheStoreIsOnShowAfterTheMainQueuesNextTurn) {
    open({"c0"}, 0);
    model->_PromptM.get()->mutatePrompts([](std::vector<PromptData>& presets) {
        presets[0].name = "Renamed";
        presets.push_back(namedPreset("c1"));
        presets[0].emoji = "🦋";
    });
    EXPECT_EQ(platform.mainQueue.pendingCount(), 1U);
    platform.runUntilIdle();
    EXPECT_EQ(control<QLineEdit>("Name").text(), "Renamed");
    EXPECT_EQ(list().model()->rowCount(), 2);
    EXPECT_EQ(list().currentIndex().row(), 0);
}

TEST_F(EditorWindowTest, theFormIsShownOnlyForASelection) {
    open({"c0", "n1"});
    EXPECT_THROW(control<QLineEdit>("Name"), std::runtime_error);
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, inRow(0));
    EXPECT_EQ(control<QLineEdit>("Name").text(), "c0");
    click("Non-context");
    EXPECT_EQ(list().model()->index(0, 0).data().toString(), "🦉n1");
    EXPECT_THROW(control<QLineEdit>("Name"), std::runtime_error);
    click("Context");
    EXPECT_EQ(control<QLineEdit>("Name").text(), "c0");
}

TEST_F(EditorWindowTest, theKeyboardIsInTheListFirst) {
    open({"c0", "c1"});
    QTest::keyClick(window_->focusWidget(), Qt::Key_Down);
    EXPECT_EQ(window_->view().contextTab.selection, 0);
    EXPECT_EQ(control<QLineEdit>("Name").text(), "c0");
}

TEST_F(EditorWindowTest, aPresetIsShownInTheTabThatListsIt) {
    open({"c0", "n1", "n2"}, 0);
    window_->showPreset(2);
    EXPECT_EQ(window_->view().shownKind(), PromptEditorView::Kind::nonContext);
    EXPECT_EQ(control<QLineEdit>("Name").text(), "n2");
    EXPECT_EQ(list().currentIndex().row(), 1);
    window_->showPreset(3);
    EXPECT_EQ(control<QLineEdit>("Name").text(), "n2") << "there is no such preset";
}

TEST_F(EditorWindowTest, aRowIsMovedByPointerAndByKeys) {
    open({"c0", "n1", "c2", "c3"});
    const QPoint start = inRow(0);
    QTest::mousePress(list().viewport(), Qt::LeftButton, {}, start);
    QTest::mouseMove(list().viewport(), start + QPoint(0, 15));
    QTest::mouseMove(list().viewport(), inRow(1, 0.8));
    EXPECT_EQ(list().draggedRow(), 0);
    QTest::mouseRelease(list().viewport(), Qt::LeftButton, {}, inRow(1, 0.8));
    EXPECT_EQ(names(), (Names{"n1", "c2", "c0", "c3"}));
    EXPECT_EQ(list().currentIndex().row(), 1);
    QTest::keyClick(&list(), Qt::Key_Down, Qt::AltModifier);
    QTest::keyClick(&list(), Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(names(), (Names{"n1", "c2", "c3", "c0"}));
    QTest::keyClick(&list(), Qt::Key_Up, Qt::AltModifier);
    QTest::keyClick(&list(), Qt::Key_Up, Qt::AltModifier);
    QTest::keyClick(&list(), Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(names(), (Names{"n1", "c0", "c2", "c3"}));
    EXPECT_EQ(control<QLineEdit>("Name").text(), "c0");
}

TEST_F(EditorWindowTest, escapeGivesADragUp) {
    open({"c0", "c1"});
    QTest::mousePress(list().viewport(), Qt::LeftButton, {}, inRow(0));
    QTest::mouseMove(list().viewport(), inRow(1, 0.9));
    QTest::keyClick(&list(), Qt::Key_Escape);
    QTest::mouseRelease(list().viewport(), Qt::LeftButton, {}, inRow(1, 0.9));
    EXPECT_EQ(names(), (Names{"c0", "c1"}));
}

TEST_F(EditorWindowTest, theButtonsAndTheRadioGroupDoTheirWork) {
    open({"c0", "c1"}, 1);
    click("Add Selected Text");
    EXPECT_EQ(control<QPlainTextEdit>("Prompt").toPlainText(), "prompt of c1{selected text}");
    click("Non - Context");
    EXPECT_EQ(fileContent()[1].promptType, "nonContext");
    EXPECT_EQ(list().model()->rowCount(), 1);
    EXPECT_EQ(control<QLineEdit>("Name").text(), "c1");
    EXPECT_THROW(click("Add Selected Text"), std::runtime_error);
    click("+ Add");
    EXPECT_EQ(names(), (Names{"c0", "c1", "New Prompt"}));
    click("Delete");
    EXPECT_EQ(names(), (Names{"c0", "c1"}));
    EXPECT_EQ(control<QLineEdit>("Name").text(), "c1");
    click("Prompt Library");
    EXPECT_EQ(platform.workspace.openedURLs, Names{PromptEditorView::kLibraryURL});
}

TEST_F(EditorWindowTest, undoIsTheFieldsFirstAndThenBringsDeletedPresetsBack) {
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

TEST_F(EditorWindowTest, aBreakOfLinesIsStoredAsALineFeedHoweverItCame) {
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

TEST_F(EditorWindowTest, typingInADeletedPresetIsNeverUndoneInTheOneThatTakesItsPlace) {
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

TEST_F(EditorWindowTest, onePressOfTheDeleteKeyDeletesOnePreset) {
    open({"c0", "c1", "c2", "c3"}, 2);
    QTest::keyPress(&list(), Qt::Key_Delete);
    for (int count = 0; count < 3; ++count) {
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier, QString(), true);
        QCoreApplication::sendEvent(&list(), &held);
    }
    EXPECT_EQ(names(), (Names{"c0", "c1", "c3"}));
    QTest::keyRelease(&list(), Qt::Key_Delete);
    QTest::keyClick(&list(), Qt::Key_Delete);
    EXPECT_EQ(names(), (Names{"c0", "c3"}));
}

TEST_F(EditorWindowTest, aNameTypedInTheListFindsItsRow) {
    QApplication::setKeyboardInputInterval(60000);
    open({"cOne", "n1", "cTwo a", "cTwo b"});
    QTest::keyClicks(&list(), "CTWO b");
    EXPECT_EQ(control<QLineEdit>("Name").text(), "cTwo b");
}

TEST_F(EditorWindowTest, anAddedPresetIsOnShowWithItsNameReadyToBeTypedOver) {
    open({"c0", "c1"});
    click("+ Add");
    type(*window_->focusWidget(), "Haiku");
    click("+ Add");
    EXPECT_EQ(control<QLineEdit>("Name").selectedText(), "New Prompt") << "though the field had the keyboard";
    EXPECT_EQ(list().currentIndex().row(), 3);
    click("Non-context");
    click("+ Add");
    QTest::keyClicks(window_->focusWidget(), "Ode");
    EXPECT_EQ(names(), (Names{"c0", "c1", "Haiku", "New Prompt", "Ode"}));
    EXPECT_EQ(fileContent(), presets());
}

TEST_F(EditorWindowTest, anEmojiOfManyCodePointsIsTakenWhole) {
    open({"c0"}, 0);
    auto& emoji = control<QLineEdit>("Emoji");
    emoji.selectAll();
    emoji.insert("👩🏽‍🚀👨‍👩‍👧");
    EXPECT_EQ(fileContent()[0].emoji, "👩🏽‍🚀👨‍👩‍👧");
    QTest::keyClick(&emoji, Qt::Key_Backspace);
    EXPECT_EQ(fileContent()[0].emoji, "👩🏽‍🚀");
}

TEST_F(EditorWindowTest, theKeyDeletesTheRowThatWasClickedAfterADeletionWasTakenBack) {
    open({"cOne", "cTwo"}, 1);
    click("Delete");
    click("Delete");
    ASSERT_EQ(names(), Names{"cOne"});
    click("Undo Delete");
    ASSERT_EQ(names(), (Names{"cOne", "cTwo"}));
    QTest::mouseClick(list().viewport(), Qt::LeftButton, Qt::NoModifier, inRow(0));
    EXPECT_EQ(control<QLineEdit>("Name").text(), "cOne");
    QTest::keyClick(&list(), Qt::Key_Delete);
    EXPECT_EQ(names(), Names{"cTwo"});
}

TEST_F(EditorWindowTest, aDragEndsWhereTheRowsChangeOrTheReleaseWasLost) {
    open({"c0", "c1", "c2", "c3"});
    const auto dragFirst = [&] {
        QTest::mousePress(list().viewport(), Qt::LeftButton, {}, inRow(0));
        QTest::mouseMove(list().viewport(), inRow(2, 0.9));
        ASSERT_EQ(list().draggedRow(), 0);
    };
    dragFirst();
    QTest::keyClick(&list(), Qt::Key_Delete);
    QTest::mouseRelease(list().viewport(), Qt::LeftButton, {}, inRow(2, 0.9));
    EXPECT_EQ(names(), (Names{"c1", "c2", "c3"}));
    dragFirst();
    const QPoint place = inRow(1);
    QMouseEvent move(QEvent::MouseMove, place, list().viewport()->mapToGlobal(place), Qt::NoButton,
                     Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(list().viewport(), &move);
    EXPECT_EQ(list().draggedRow(), std::nullopt);
}

TEST_F(EditorWindowTest, textsOfAnyLengthAreShownAsTheyAreAndCanBeEdited) {
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
