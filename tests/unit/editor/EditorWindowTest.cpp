#include "tests/unit/editor/EditorWindowFixture.h"

#include <QFileDialog>
#include <QMenu>
#include <QMessageBox>

namespace quillmoth {
namespace {

class EditorWindowTest : public EditorWindowFixture {};

TEST_F(EditorWindowTest, whatOthersChangeInTheStoreIsOnShowAfterTheMainQueuesNextTurn) {
    open({"c0"}, 0);
    model->_PromptM.get()->edit(0, [](PromptData& preset) {
        preset.name = "Renamed";
        preset.emoji = "🦋";
    });
    model->_PromptM.get()->append({namedPreset("c1")});
    EXPECT_EQ(platform.mainQueue.pendingCount(), 1U);
    platform.runUntilIdle();
    EXPECT_EQ(control<QLineEdit>("Name").text(), "Renamed");
    EXPECT_EQ(list().model()->rowCount(), 2);
    EXPECT_EQ(list().currentIndex().row(), 0);
}

TEST_F(EditorWindowTest, aKeystrokeRefreshesTheWindowOnce) {
    open({"c0"}, 0);
    type(control<QLineEdit>("Name"), "x");
    // What a refresh would take away.
    for (auto* button : window_->findChildren<QAbstractButton*>())
        button->setVisible(true);
    platform.runUntilIdle();
    EXPECT_TRUE(control<QAbstractButton>("Undo Delete").isVisible());
}

TEST_F(EditorWindowTest, theFormIsShownOnlyForASelection) {
    open({"c0", "n1"});
    EXPECT_THROW(control<QLineEdit>("Name"), std::runtime_error);
    QTest::keyClick(window_->focusWidget(), Qt::Key_Down);
    EXPECT_EQ(control<QLineEdit>("Name").text(), "c0") << "the keyboard is in the list first";
    window_->view().contextTab.selection.reset();
    window_->refresh();
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, inRow(0));
    EXPECT_EQ(control<QLineEdit>("Name").text(), "c0");
    click("Non-context");
    EXPECT_EQ(list().model()->index(0, 0).data().toString(), "🦉n1");
    EXPECT_THROW(control<QLineEdit>("Name"), std::runtime_error);
    click("Context");
    EXPECT_EQ(control<QLineEdit>("Name").text(), "c0");
}

TEST_F(EditorWindowTest, aPresetIsShownInTheTabThatListsIt) {
    open({"c0", "n1", "n2"}, 0);
    window_->showPreset(2);
    EXPECT_EQ(window_->view().shownKind(), PromptEditorView::Kind::nonContext);
    EXPECT_EQ(control<QLineEdit>("Name").text(), "n2");
    EXPECT_EQ(list().currentIndex().row(), 1);
    EXPECT_TRUE(control<QAbstractButton>("Non-context").isChecked());
    window_->showPreset(3);
    EXPECT_EQ(control<QLineEdit>("Name").text(), "n2") << "there is no such preset";
}

TEST_F(EditorWindowTest, theKeyTakesTheSidebarAwayAndBringsItBack) {
    open({"c0"}, 0);
    QTest::keyClick(window_.get(), Qt::Key_F9);
    EXPECT_THROW(list(), std::runtime_error);
    QTest::keyClick(window_.get(), Qt::Key_F9);
    EXPECT_NO_THROW(list());
}

TEST_F(EditorWindowTest, filesAreImportedAndExportedAndToldOf) {
    open({"c0"}, 0);
    platform.documents.files["/new.json"] = *writeJSON(std::vector{namedPreset("n1"), namedPreset("n2")});
    platform.documents.files["/bad.json"] = "[{";
    platform.documents.isDiskFull = true;
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"Import Presets…", "/bad.json", "“bad.json” holds no presets that can be read."},
        {"Import Presets…", "/new.json", "2 presets were added."},
        {"Export All Presets…", "/all.json", "The presets could not be exported."},
    };
    for (const auto& [title, path, told] : cases) {
        click("Import and export");
        for (QAction* action : window_->findChild<QMenu*>()->actions()) {
            if (action->text() == title)
                action->trigger();
        }
        Q_EMIT window_->findChild<QFileDialog*>()->fileSelected(path);
        const auto* alert = window_->findChild<QMessageBox*>();
        ASSERT_NE(alert, nullptr) << title;
        EXPECT_EQ(alert->text(), told);
        delete alert;
        delete window_->findChild<QFileDialog*>();
        delete window_->findChild<QMenu*>();
    }
    EXPECT_EQ(control<QLineEdit>("Name").text(), "n1") << "the first one that came";
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
    for (int count = 0; count < 3; ++count)
        QTest::keyClick(&list(), Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(names(), (Names{"n1", "c0", "c2", "c3"}));
    EXPECT_EQ(control<QLineEdit>("Name").text(), "c0");
}

TEST_F(EditorWindowTest, theButtonsAndTheRadioGroupDoTheirWork) {
    open({"c0", "c1"}, 1);
    click("Add Selected Text");
    EXPECT_EQ(control<QPlainTextEdit>("Prompt").toPlainText(), "prompt of c1{selected text}");
    click("Non - Context");
    EXPECT_EQ(fileContent()[1].promptType, "nonContext");
    EXPECT_EQ(window_->view().nonContextTab.rows(), Rows{1});
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

TEST_F(EditorWindowTest, aDragEndsByEscapeOrWhereTheRowsChangeOrTheReleaseWasLost) {
    open({"c0", "c1", "c2", "c3"});
    const auto dragFirst = [&] {
        QTest::mousePress(list().viewport(), Qt::LeftButton, {}, inRow(0));
        QTest::mouseMove(list().viewport(), inRow(2, 0.9));
        ASSERT_EQ(list().draggedRow(), 0);
    };
    for (const auto& [key, left] :
         {std::pair{Qt::Key_Escape, Names{"c0", "c1", "c2", "c3"}}, {Qt::Key_Delete, {"c1", "c2", "c3"}}}) {
        dragFirst();
        QTest::keyClick(&list(), key);
        QTest::mouseRelease(list().viewport(), Qt::LeftButton, {}, inRow(2, 0.9));
        EXPECT_EQ(names(), left);
    }
    dragFirst();
    const QPoint place = inRow(1);
    QMouseEvent move(QEvent::MouseMove, place, list().viewport()->mapToGlobal(place), Qt::NoButton,
                     Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(list().viewport(), &move);
    EXPECT_EQ(list().draggedRow(), std::nullopt);
}

} // namespace
} // namespace quillmoth
