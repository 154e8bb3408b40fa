#include "tests/unit/shell/PanelViewFixture.h"

#include <QAccessible>
#include <QClipboard>
#include <QMimeData>

namespace quillmoth {
namespace {

class PanelFormTest : public PanelViewFixture {
protected:
    void openForm() {
        model._selectedIndex = 0;
        press(field, Qt::Key_Return);
    }
};

TEST_F(PanelFormTest, ReturnWalksTheFormFromTopToBottomAndSendsIt) {
    openForm();
    ASSERT_EQ(list.form().fields().size(), 2U);
    PanelTextEdit& whom = list.form().fields()[0]->edit();
    PanelTextEdit& what = list.form().fields()[1]->edit();
    EXPECT_TRUE(whom.isVisible() && what.isVisible());
    EXPECT_EQ(panel.surface().focusWidget(), &whom);
    type(whom, QStringLiteral("writers"));
    EXPECT_EQ(whom.text(), QStringLiteral("writers"));
    press(whom, Qt::Key_Return);
    EXPECT_EQ(panel.surface().focusWidget(), &what);
    whom.setFocus(Qt::MouseFocusReason);
    EXPECT_FALSE(whom.textCursor().hasSelection()) << "the caret is where the pointer has put it";
    what.setFocus(Qt::TabFocusReason);
    type(what, QStringLiteral("ink"));
    press(what, Qt::Key_Return);
    ASSERT_FALSE(model._messages->empty());
    EXPECT_EQ(model._messages->back().content, "A call to writers for ink!");
    panel.platform.mainQueue.advance(0.2);
    panel.settle();
    EXPECT_EQ(panel.surface().focusWidget(), &field);
}

TEST_F(PanelFormTest, BackLeavesTheFormAndItsNextOpeningLooksTheSame) {
    const auto places = [&] {
        std::vector<QRect> all;
        for (const BracketField* blank : list.form().fields())
            all.push_back(blank->geometry());
        return all;
    };
    openForm();
    EXPECT_TRUE(field.isHidden());
    const auto first = places();
    panel.view->commandArea().backButton().click();
    panel.settle();
    EXPECT_FALSE(field.isHidden());
    EXPECT_TRUE(list.form().fields().empty());
    openForm();
    EXPECT_EQ(places(), first);
    press(list.form().fields()[0]->edit(), Qt::Key_Escape);
    EXPECT_FALSE(field.isHidden()) << "Escape leads out of a blank too";
}

TEST_F(PanelFormTest, AScreenReaderHearsTheTextThatIsShown) {
    openForm();
    QAccessibleInterface* spoken = nullptr;
    for (QWidget* child : list.form().findChildren<QWidget*>()) {
        if (dynamic_cast<ChipText*>(child) != nullptr)
            spoken = QAccessible::queryAccessibleInterface(child);
    }
    ASSERT_NE(spoken, nullptr);
    EXPECT_EQ(spoken->text(QAccessible::Name), QStringLiteral("A call to [whom] for [what]!"));
    model._PromptM.get()->edit(0, [](PromptData& preset) { preset.prompt = "For [you]"; });
    panel.view->commandArea().backButton().click();
    panel.settle();
    openForm();
    EXPECT_EQ(spoken->text(QAccessible::Name), QStringLiteral("For [you]"));
}

TEST_F(PanelFormTest, ABlankHasOneLineWhateverComesIn) {
    model._PromptM.get()->edit(0, [](auto& preset) { preset.prompt = "For [two\nlines]"; });
    openForm();
    PanelTextEdit& blank = list.form().fields()[0]->edit();
    EXPECT_EQ(blank.text(), QStringLiteral("[two lines]"));

    QMimeData lines;
    lines.setText(QStringLiteral("a\r\nb\u2028c\u2029d"));
    const std::vector<std::pair<QString, std::function<void()>>> ways{
        {QString(), [&] { press(blank, Qt::Key_Return, Qt::ShiftModifier); }},
        {QString(), [&] { press(blank, Qt::Key_Enter, Qt::ShiftModifier | Qt::KeypadModifier); }},
        {QStringLiteral("a b c d"),
         [&] {
             QGuiApplication::clipboard()->setText(lines.text());
             blank.paste();
         }},
        {QStringLiteral("a b c d"),
         [&] {
             QDragEnterEvent enter(QPoint(1, 1), Qt::CopyAction, &lines, Qt::LeftButton, {});
             QApplication::sendEvent(blank.viewport(), &enter);
             QDropEvent drop(QPointF(1, 1), Qt::CopyAction, &lines, Qt::LeftButton, {});
             QApplication::sendEvent(blank.viewport(), &drop);
         }},
        {QStringLiteral("x y"),
         [&] {
             QInputMethodEvent commit;
             commit.setCommitString(QStringLiteral("x\ny"));
             QApplication::sendEvent(&blank, &commit);
         }},
    };
    for (const auto& [expected, happen] : ways) {
        blank.selectAll();
        blank.textCursor().removeSelectedText();
        happen();
        EXPECT_EQ(blank.text(), expected);
        EXPECT_EQ(model._extractedTexts.get()[1].text, expected.toStdString());
        EXPECT_EQ(blank.textCursor().position(), expected.size());
    }
    blank.undo();
    EXPECT_EQ(blank.text(), QString());
    EXPECT_TRUE(model._messages->empty());
}

TEST_F(PanelFormTest, AFormWithoutABlankIsSentByReturnAndLeftByEscape) {
    model._PromptM.get()->append({makePreset("🧩", "Odd", "a[0", "nonContext")});
    const auto open = [&] {
        model._selectedIndex = 4;
        press(field, Qt::Key_Return);
        ASSERT_TRUE(field.isHidden());
        ASSERT_EQ(panel.surface().focusWidget(), panel.view);
    };
    open();
    press(*panel.view, Qt::Key_Escape);
    EXPECT_FALSE(field.isHidden());
    EXPECT_TRUE(model._messages->empty());
    open();
    press(*panel.view, Qt::Key_Return, {}, true);
    EXPECT_TRUE(model._messages->empty()) << "the key is still held that opened it";
    press(*panel.view, Qt::Key_Return);
    ASSERT_FALSE(model._messages->empty());
    EXPECT_EQ(model._messages->back().content, "a[0");
}

TEST_F(PanelFormTest, AFormIsSentThoughTheSelectionHasGoneAndGivesItsTextBackWhereItsPresetHas) {
    const auto element = std::make_shared<platform::FakeAXUIElement>("element");
    element->set("AXSelectedText", std::string());
    panel.platform.accessibility.systemWide().set("AXFocusedUIElement", platform::AXUIElementRef(element));
    openForm();
    model.captureContext();
    ASSERT_EQ(model._selectedIndex, DataModel::kTypedCommand);
    press(list.form().fields()[1]->edit(), Qt::Key_Return);
    ASSERT_EQ(model._messages->size(), 2U);
    EXPECT_EQ(model._messages->back().content, "A call to [whom] for [what]!");
    press(field, Qt::Key_Escape);
    press(field, Qt::Key_Escape);

    openForm();
    model._PromptM.get()->remove(0);
    press(list.form().fields()[1]->edit(), Qt::Key_Return);
    EXPECT_TRUE(model._messages->empty());
    EXPECT_EQ(*model._command, "A call to [whom] for [what]!");
    EXPECT_FALSE(model._error->empty());
    EXPECT_FALSE(field.isHidden());
}

} // namespace
} // namespace quillmoth
