#include "Quillmoth/Shell/Panel/PanelButton.h"
#include "Quillmoth/Shell/Panel/PanelKeys.h"
#include "Quillmoth/Shell/Panel/PanelMenu.h"
#include "Quillmoth/Shell/Panel/Spinner.h"
#include "Quillmoth/Shell/Panel/SpokenStatus.h"
#include "tests/unit/shell/PanelViewFixture.h"

#include <QClipboard>
#include <QMouseEvent>
#include <QWheelEvent>

#include <set>

namespace quillmoth {
namespace {

class PanelViewTest : public PanelViewFixture {
protected:
    void pointAt(RowList& rows, int position) {
        const QPointF place = rows.rowRect(position).center();
        QMouseEvent move(QEvent::MouseMove, place, rows.mapToGlobal(place), Qt::NoButton, Qt::NoButton, {});
        QApplication::sendEvent(&rows, &move);
        panel.settle();
    }
};

TEST_F(PanelViewTest, WhatIsTypedBecomesTheCommandAndFiltersTheList) {
    EXPECT_EQ(list.presets().rowCount(), 4);
    type(field, QStringLiteral("ema"));
    EXPECT_EQ(*model._command, "ema");
    EXPECT_EQ(list.presets().rowCount(), 2);
    command("");
    EXPECT_EQ(field.text(), QString());
    EXPECT_EQ(list.presets().rowCount(), 4);
    QWidget& status = panel.view->bottomBar().widgetFor(BottomBar::Item::status);
    EXPECT_TRUE(status.isHidden());
    model._status = std::string("No selection");
    model._command = std::string("by itself");
    panel.platform.runUntilIdle();
    EXPECT_TRUE(QTest::qWaitFor([&] { return field.text() == QStringLiteral("by itself"); }, 2000));
    EXPECT_EQ(status.accessibleName(), QStringLiteral("No selection"));
}

TEST_F(PanelViewTest, TheFieldsKeysMoveSelectionAndCaretAddALineAndRun) {
    field.setText(QStringLiteral("one\ntwo"));
    press(field, Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(model._selectedIndex, -1) << "that selects text";
    press(field, Qt::Key_Down);
    EXPECT_EQ(model._selectedIndex, 0);
    press(field, Qt::Key_Up);
    EXPECT_EQ(model._selectedIndex, -1);
    EXPECT_LE(field.textCursor().position(), 3);
    field.setText(QStringLiteral("a"));
    field.moveCursor(QTextCursor::End);
    press(field, Qt::Key_Return, Qt::ShiftModifier);
    // Typing goes on in the field, wherever the Tab key has led, and Return runs there too.
    QWidget& bar = panel.view->bottomBar().widgetFor(BottomBar::Item::history);
    bar.setFocus();
    type(bar, QStringLiteral("b"));
    EXPECT_EQ(panel.surface().focusWidget(), &field);
    EXPECT_EQ(*model._command, "a\nb");
    EXPECT_TRUE(model._messages->empty());
    press(*panel.view, Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_TRUE(model._messages->empty());
    press(*panel.view, Qt::Key_Return);
    ASSERT_EQ(model._messages->size(), 2U);
    EXPECT_EQ(model._messages->back().content, "a\nb");
}

TEST_F(PanelViewTest, ArrowsInTheBarMoveTheSelectionAndReturnRunsIt) {
    QWidget& bar = panel.view->bottomBar().widgetFor(BottomBar::Item::history);
    for (const int key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_Down}) {
        bar.setFocus();
        press(bar, key);
    }
    EXPECT_EQ(model._selectedIndex, 1);
    ASSERT_EQ(panel.surface().focusWidget(), &field);
    press(field, Qt::Key_Return);
    ASSERT_EQ(model._messages->size(), 2U);
    EXPECT_EQ(model._messages->back().content, "Write an email");

    openHistory(2);
    press(bar, Qt::Key_Down);
    EXPECT_EQ(model._keyHistorySelected, 1);
}

TEST_F(PanelViewTest, ATabAMomentAfterTheFieldWasAskedToTakeTheFocusIsNotUndone) {
    for (const bool isServed : {false, true}) {
        field.setFocus();
        model._didFocus = true;
        if (isServed)
            panel.settle();
        else
            panel.controller->update();
        press(field, Qt::Key_Tab);
        const QWidget* chosen = panel.surface().focusWidget();
        ASSERT_NE(chosen, &field);
        model._status = std::string("a change");
        panel.settle();
        EXPECT_EQ(panel.surface().focusWidget(), chosen) << isServed;
    }
}

TEST_F(PanelViewTest, ATextLeftInTheFieldIsSelectedWhenThePanelOpensAgain) {
    type(field, QStringLiteral("ema"));
    panel.panel().close();
    panel.open();
    EXPECT_EQ(field.textCursor().selectedText(), QStringLiteral("ema"));
    type(field, QStringLiteral("c"));
    EXPECT_EQ(*model._command, "c");
    field.undo();
    EXPECT_EQ(field.text(), QStringLiteral("ema"));
    // The blank that stands in the field while an answer is waited for.
    panel.panel().close();
    model._command = std::string(" ");
    panel.open();
    EXPECT_FALSE(field.textCursor().hasSelection());
}

TEST_F(PanelViewTest, ThreeClicksSelectALineOfTheField) {
    command("one two\nthree");
    const QPointF place(field.cursorRect().center());
    for (int click = 1; click <= 3; ++click) {
        const auto type = click == 2 ? QEvent::MouseButtonDblClick : QEvent::MouseButtonPress;
        QMouseEvent press(type, place, field.viewport()->mapToGlobal(place), Qt::LeftButton, Qt::LeftButton,
                          {});
        QApplication::sendEvent(field.viewport(), &press);
        EXPECT_EQ(field.textCursor().selectedText() == QStringLiteral("three"), click > 1) << click;
    }
    press(field, Qt::Key_Home);
    EXPECT_FALSE(field.textCursor().hasSelection());
}

TEST_F(PanelViewTest, KeyEquivalentsWorkFromEveryInputInEveryState) {
    FloatingViewController& controller = *panel.controller;
    const Qt::KeyboardModifiers control = Qt::ControlModifier;
    const auto font = [&](double size) {
        return [&controller, size] { return *controller._fontSize == size; };
    };
    const std::vector<std::tuple<int, Qt::KeyboardModifiers, std::function<bool()>>> cases{
        {Qt::Key_Plus, control | Qt::ShiftModifier, font(18)},
        {Qt::Key_Equal, control, font(20)},
        {Qt::Key_Minus, control, font(18)},
        {Qt::Key_0, control, font(16)},
        {Qt::Key_H, control, [&] { return *model._openHistory; }},
        {Qt::Key_H, control, [&] { return !*model._openHistory; }},
        {Qt::Key_M, control, [&] { return !*controller._markdownOn; }},
        {Qt::Key_T, control, [&] { return *model._isOnTopBinding; }},
        {Qt::Key_T, control, [&] { return !*model._isOnTopBinding; }},
        {Qt::Key_C, control | Qt::ShiftModifier, [&] { return panel.platform.pasteboard.contents == ""; }},
    };
    for (QWidget* input : {static_cast<QWidget*>(&field), static_cast<QWidget*>(panel.view),
                           &panel.view->bottomBar().widgetFor(BottomBar::Item::history)}) {
        panel.platform.userDefaults.set("markdownOnStorage", true);
        controller._markdownOn = true;
        panel.platform.pasteboard.contents.reset();
        for (const auto& [key, modifiers, hasHappened] : cases) {
            press(*input, key, modifiers);
            EXPECT_TRUE(hasHappened()) << key;
        }
        panel.open();
    }
}

TEST_F(PanelViewTest, AHeldKeyDoesNotStepTwice) {
    press(field, Qt::Key_T, Qt::ControlModifier);
    press(field, Qt::Key_T, Qt::ControlModifier, true);
    EXPECT_TRUE(model._isOnTopBinding);
    press(field, Qt::Key_Equal, Qt::ControlModifier, true);
    EXPECT_EQ(panel.controller->_fontSize, 18) << "but for the size";
    type(field, QStringLiteral("x"));
    press(field, Qt::Key_Escape, Qt::NoModifier, true);
    EXPECT_EQ(*model._command, "x");
}

TEST_F(PanelViewTest, ClicksReachTheRowUnderThePointer) {
    PresetList& presets = list.presets();
    const QPoint third = presets.rowRect(2).center();
    QTest::mouseClick(&presets, Qt::LeftButton, {}, third);
    EXPECT_EQ(model._selectedIndex, 1);
    const QPoint between(third.x(), presets.rowRect(2).bottom() + 1);
    EXPECT_EQ(presets.rowAt(between.y()), -1);
    pointAt(presets, 3);
    EXPECT_EQ(model._hoverIndex, 2);
    QTest::mouseDClick(&presets, Qt::LeftButton, {}, third);
    EXPECT_EQ(model._messages->back().content, "Write an email");
}

TEST_F(PanelViewTest, TheRowThatComesBeneathThePointerIsMarked) {
    pointAt(list.presets(), 1);
    EXPECT_EQ(model._hoverIndex, 0);
    type(field, QStringLiteral("ema"));
    EXPECT_EQ(model._hoverIndex, 1);
    type(field, QStringLiteral("z"));
    EXPECT_EQ(model._hoverIndex, -1);
    pointAt(list.presets(), 0);
    EXPECT_EQ(model._hoverIndex, -1);

    openHistory(50);
    pointAt(list.history(), 2);
    EXPECT_EQ(model._keyHistoryHover, 2);
    list.scrollView().scrollTo(3 * list.history().rowRect(1).top());
    EXPECT_EQ(model._keyHistoryHover, 5);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&list.history(), &leave);
    list.scrollView().scrollTo(0);
    EXPECT_EQ(model._keyHistoryHover, 5);
}

TEST_F(PanelViewTest, TheFieldGrowsToItsLimitAndThePanelWithIt) {
    const auto commandHeight = [&] { return panel.view->commandArea().height(); };
    EXPECT_EQ(commandHeight(), 34);
    const int before = panel.surface().height();
    command("one\ntwo\nthree");
    EXPECT_EQ(commandHeight(), 34 + 2 * 24);
    EXPECT_EQ(panel.surface().height(), before);
    command(std::string(40, '\n'));
    EXPECT_EQ(commandHeight(), 300);
    EXPECT_GE(list.height(), 200);
    EXPECT_GT(panel.surface().height(), before);
    command("");
    EXPECT_EQ(panel.surface().height(), before);
}

TEST_F(PanelViewTest, TheFieldIsAsHighAsALongTextUpToItsLimit) {
    std::set<int> heights;
    for (const std::string& text : {std::string(4500, 'i'), "first\n" + std::string(4500, 'W')}) {
        model._command = text;
        for (const int width : {612, 1500, 2500, 4000, 8000}) {
            panel.surface().setFrame(QRect(0, 0, width, 500));
            panel.settle();
            const int height = panel.view->commandArea().height();
            EXPECT_EQ(height, qMin(300, qCeil(field.document()->size().height()) + 10)) << width;
            heights.insert(height);
        }
    }
    EXPECT_GT(heights.size(), 4U);
}

TEST_F(PanelViewTest, WordsAreKeptTogetherUntilOneIsSoLongThatLookingForItsEndTakesASecond) {
    for (const auto& [word, mode] : {std::pair{"ten words ", QTextOption::WrapAtWordBoundaryOrAnywhere},
                                     {"tenletters", QTextOption::WrapAnywhere}}) {
        QGuiApplication::clipboard()->setText(QString(word).repeated(1001));
        field.selectAll();
        field.paste();
        EXPECT_EQ(field.wordWrapMode(), mode);
    }
}

TEST_F(PanelViewTest, AStreamedAnswerCostsItsLastLines) {
    model._isLoading = true;
    converse("A");
    const auto costOfPieces = [&](int count) {
        const std::size_t before = panel.services.engine.linesShaped();
        for (int index = 0; index < count; ++index) {
            model._messages.grow([](auto& messages) { messages.back().content += " more words of it"; });
            panel.view->refresh();
        }
        return panel.services.engine.linesShaped() - before;
    };
    const std::size_t early = costOfPieces(200);
    costOfPieces(3000);
    const std::size_t late = costOfPieces(200);
    EXPECT_LE(late, early + early / 2);
    EXPECT_LE(late, 200U * 3);
}

TEST_F(PanelViewTest, EarlierAnswersArePlainDuringAStreamAndKeepTheirLayout) {
    converse("# Title\n\nSome *words*.");
    MessageContent* const answer = list.conversation().contentAt(2);
    panel.surface().grab();
    EXPECT_EQ(answer->item().parts().size(), 1U);
    const auto goesOn = [&](const std::string& piece, bool isLoading) {
        model._isLoading = isLoading;
        model._messages.grow([&](auto& messages) { messages.back().content += piece; });
        panel.settle();
        panel.surface().grab();
    };
    model._messages.grow([](auto& messages) {
        messages.push_back({"U2", "user", "And?"});
        messages.push_back({"A2", "assistant", ""});
    });
    goesOn("More.", true);
    EXPECT_TRUE(answer->item().parts().empty());
    EXPECT_EQ(answer->item().content().documentText(), answer->text());
    const std::size_t before = panel.services.engine.linesShaped();
    goesOn("", false);
    EXPECT_EQ(list.conversation().contentAt(2), answer);
    EXPECT_EQ(answer->item().parts().size(), 1U);
    EXPECT_LE(panel.services.engine.linesShaped() - before, 2U) << "those of the new answer";
    goesOn("", true);
    goesOn("", false);
    EXPECT_LE(panel.services.engine.linesShaped() - before, 2U);
}

TEST_F(PanelViewTest, AStreamCostsOneRefreshAFrame) {
    model._isLoading = true;
    converse("A");
    const int before = panel.view->refreshCount();
    for (int index = 0; index < 1000; ++index) {
        model._messages.mutate([](auto& messages) { messages.back().content += " x"; });
        panel.platform.mainQueue.runUntilIdle();
    }
    // The loop is far shorter than a second.
    EXPECT_LE(panel.view->refreshCount() - before, 60);
}

TEST_F(PanelViewTest, OneMessageHasTheSelectionWhichIsCopiedUnlessTheFieldHasOneOfItsOwn) {
    converse("Hello moth");
    const auto drag = [&](std::size_t index) {
        MessageContent* message = list.conversation().contentAt(index);
        QTest::mousePress(message, Qt::LeftButton, {}, QPoint(0, 5));
        QMouseEvent move(QEvent::MouseMove, QPointF(400, 5), QPointF(400, 5), Qt::NoButton, Qt::LeftButton,
                         {});
        QApplication::sendEvent(message, &move);
        return message->selectedText();
    };
    const auto copied = [&] {
        press(field, Qt::Key_C, Qt::ControlModifier);
        return QGuiApplication::clipboard()->text();
    };
    EXPECT_EQ(drag(1), QStringLiteral("Why?"));
    EXPECT_EQ(drag(2), QStringLiteral("Hello moth"));
    EXPECT_EQ(list.conversation().contentAt(1)->selectedText(), QString());
    EXPECT_EQ(copied(), QStringLiteral("Hello moth"));
    command("my own");
    field.selectAll();
    EXPECT_EQ(copied(), QStringLiteral("my own"));
    model._error = std::string("Error 500");
    panel.settle();
    field.moveCursor(QTextCursor::End);
    list.error().item().selectAll();
    EXPECT_EQ(copied(), QStringLiteral("Error 500"));
}

TEST_F(PanelViewTest, AMenuIsWalkedByKeysSkipsWhatIsOffAndGivesTheFocusBack) {
    int selections = 0;
    const auto open = [&](const QString& selected) {
        field.setFocus();
        openSelectionMenu(field, {}, selected, [&] { ++selections; });
        return panel.surface().focusWidget();
    };
    const auto marked = [&] {
        const auto* item = qobject_cast<QAbstractButton*>(panel.surface().focusWidget());
        return item != nullptr ? item->text() : QString();
    };
    QWidget* menu = open(QString());
    ASSERT_NE(menu, &field);
    for (const int key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Up}) {
        press(*menu, key);
        EXPECT_EQ(marked(), "Select All") << "nothing is selected that could be copied";
    }
    press(*menu, Qt::Key_Return, {}, true);
    EXPECT_EQ(selections, 0) << "the key is only held";
    press(*menu, Qt::Key_Return);
    EXPECT_EQ(selections, 1);
    EXPECT_EQ(panel.surface().focusWidget(), &field);
    menu = open("words");
    press(*menu, Qt::Key_Down);
    EXPECT_EQ(marked(), "Copy");
    press(*menu, Qt::Key_Escape);
    EXPECT_EQ(panel.surface().focusWidget(), &field);
    EXPECT_EQ(selections, 1);
    menu = open("words");
    panel.view->resize(panel.view->size() + QSize(1, 0));
    panel.surface().resize(panel.surface().size() + QSize(30, 0));
    panel.settle();
    EXPECT_EQ(panel.surface().focusWidget(), &field) << "it goes with the size that it was placed in";
    QContextMenuEvent byKey(QContextMenuEvent::Keyboard, QPoint(5, 5), field.mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(&field, &byKey);
    EXPECT_FALSE(marked().isEmpty()) << "it begins at its first item, where a key has opened it";
    press(*panel.surface().focusWidget(), Qt::Key_Escape);
}

TEST_F(PanelViewTest, PageKeysAndTheWheelScroll) {
    openHistory(50);
    ScrollView& scroll = list.scrollView();
    press(field, Qt::Key_PageDown, Qt::ShiftModifier);
    EXPECT_EQ(scroll.position(), 0);
    press(field, Qt::Key_PageDown);
    EXPECT_EQ(scroll.position(), list.height() - 40);
    press(field, Qt::Key_PageUp);
    EXPECT_EQ(scroll.position(), 0);
    for (const auto& [angle, position] : {std::pair{-120, 60}, {-1, 60}, {-1, 61}, {120, 1}}) {
        QWheelEvent wheel({10, 10}, scroll.mapToGlobal(QPointF(10, 10)), {}, {0, angle}, Qt::NoButton, {},
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(&scroll, &wheel);
        EXPECT_EQ(scroll.position(), position);
    }
}

TEST_F(PanelViewTest, WaitingAndItsEndAndErrorsAreSpokenAndTheSpinnerTurnsMeanwhile) {
    const Spinner& spinner = panel.view->commandArea().spinner();
    for (const bool isLoading : {true, false}) {
        model._isLoading = isLoading;
        panel.settle();
        EXPECT_EQ(spinner.isHidden(), !isLoading);
    }
    model._error = std::string("Error 500");
    panel.settle();
    model._error = std::string();
    panel.settle();
    QStringList spoken;
    for (QWidget* child : panel.view->findChildren<QWidget*>()) {
        if (dynamic_cast<SpokenMessage*>(child) != nullptr)
            spoken.append(child->accessibleName());
    }
    EXPECT_EQ(spoken, QStringList({"Waiting for the answer", "Answer finished", "Error 500"}));
}

TEST_F(PanelViewTest, TheNewestMessageStandsFirstAnswersAtTheLeftAndQuestionsAtTheRight) {
    converse("Because.");
    model._messages.mutate([](auto& messages) { messages.push_back({"T", "tool", "hidden"}); });
    panel.settle();
    const ConversationView& all = list.conversation();
    const QWidget* const instruction = all.contentAt(0);
    const QWidget* const question = all.contentAt(1);
    const QWidget* const answer = all.contentAt(2);
    EXPECT_EQ(all.contentAt(3), nullptr) << "of an unknown role";
    EXPECT_EQ(answer->y(), 60 + 30) << "behind its place";
    EXPECT_EQ(answer->x(), 62);
    EXPECT_EQ(question->geometry().right() + 1, all.width() - 62);
    EXPECT_GT(question->y(), answer->geometry().bottom());
    EXPECT_GT(instruction->y(), question->geometry().bottom());
    EXPECT_EQ(instruction->accessibleDescription() + question->accessibleDescription() +
                  answer->accessibleName(),
              "InstructionQuestionAnswer");
}

TEST_F(PanelViewTest, WhatIsReadStaysInItsPlaceWhileTheNewestAnswerGrowsAboveIt) {
    model._isLoading = true;
    model._messages = {{"U", "user", std::string(200, '\n') + "end"}, {"A", "assistant", "new"}};
    panel.settle();
    list.scrollView().scrollTo(400);
    const MessageContent& read = *list.conversation().contentAt(0);
    const int before = read.mapTo(&list, QPoint()).y();
    model._messages.grow([](auto& messages) { messages.back().content += "\nand\nmore"; });
    panel.settle();
    EXPECT_GT(list.scrollView().position(), 400);
    EXPECT_EQ(read.mapTo(&list, QPoint()).y(), before);
    model._messages.grow([](auto& messages) { messages.push_back({"B", "user", "next"}); });
    panel.settle();
    EXPECT_EQ(list.scrollView().position(), 0) << "a new message is looked at";
    openHistory(50);
    list.scrollView().scrollTo(400);
    model._openHistory = false;
    panel.settle();
    EXPECT_EQ(list.scrollView().position(), 0) << "what else is shown begins at its top";
}

TEST(PanelKeys, ControlAndALetterOfAnotherAlphabetIsTheLatinLetterOfTheSameKey) {
    const auto latin = [](int key, Qt::KeyboardModifiers modifiers, quint32 scanCode) {
        const QKeyEvent event(QEvent::KeyPress, key, modifiers, scanCode, 0, 0);
        const auto equivalent = latinEquivalent(event);
        return equivalent ? equivalent->key() : 0;
    };
    constexpr int kCyrillic = 0x421;
    EXPECT_EQ(latin(kCyrillic, Qt::ControlModifier, 54), Qt::Key_C);
    EXPECT_EQ(latin(kCyrillic, Qt::ControlModifier | Qt::ShiftModifier, 10), Qt::Key_1);
    EXPECT_EQ(latin(kCyrillic, Qt::ControlModifier, 58), Qt::Key_M);
    EXPECT_EQ(latin(kCyrillic, Qt::ControlModifier, 59), 0);
    EXPECT_EQ(latin(kCyrillic, Qt::ShiftModifier, 54), 0);
    EXPECT_EQ(latin(Qt::Key_X, Qt::ControlModifier, 54), 0);
    EXPECT_EQ(latin(Qt::Key_F1, Qt::ControlModifier, 54), 0);
}

TEST_F(PanelViewTest, AnErrorStandsAboveWhateverFollowsAndThatForMissingAccessibilityLeadsToTheSettings) {
    model._error = std::string("Error 401");
    converse("Answer");
    EXPECT_FALSE(list.error().isHidden());
    EXPECT_FALSE(list.conversation().isHidden());
    EXPECT_LT(list.error().geometry().bottom(), list.conversation().y());
    EXPECT_FALSE(list.settingsButton().isVisible());
    panel.platform.accessibility.isTrusted = false;
    panel.platform.accessibility.systemWide().fail("AXFocusedUIElement", -25212);
    model.captureContext();
    panel.settle();
    PanelButton& button = list.settingsButton();
    ASSERT_TRUE(button.isVisible());
    EXPECT_GT(button.mapTo(&list, QPoint()).y(), list.error().mapTo(&list, QPoint()).y());
    press(field, Qt::Key_Tab);
    for (int count = 0; count < 10 && !button.hasFocus(); ++count)
        QTest::keyClick(panel.view->window(), Qt::Key_Tab);
    EXPECT_TRUE(button.hasFocus());
    press(button, Qt::Key_Return);
    EXPECT_FALSE(panel.panel().isOpen);
    EXPECT_EQ(panel.platform.application.calls,
              (std::vector<std::string>{"activateIgnoringOtherApps", "showSettingsWindow"}));
}

} // namespace
} // namespace quillmoth
