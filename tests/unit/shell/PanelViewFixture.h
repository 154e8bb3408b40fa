#pragma once

#include "tests/unit/shell/PanelFixture.h"

#include <QKeyEvent>
#include <QTest>

#include <gtest/gtest.h>

namespace quillmoth {

/// An open panel with a few presets, and the user's hands.
class PanelViewFixture : public testing::Test {
protected:
    explicit PanelViewFixture(FloatingViewOptions options = {})
        : panel({makePreset("📣", "Call to action", "A call to [whom] for [what]!", "nonContext"),
                 makePreset("📧", "Write an email", "Write an email", "nonContext"),
                 makePreset("💡", "Brainstorm ideas", "Ideas", "nonContext"),
                 makePreset("🌐", "Translate", "Translate: {selected text}")},
                std::move(options)),
          model(*panel.model), field(panel.view->commandArea().field()), list(panel.view->listArea()) {
        panel.open();
    }

    void press(QWidget& widget, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
               bool repeat = false) {
        QKeyEvent event(QEvent::KeyPress, key, modifiers, QString(), repeat);
        QApplication::sendEvent(&widget, &event);
        panel.settle();
    }

    void type(QWidget& widget, const QString& text) {
        QTest::keyClicks(&widget, text);
        panel.settle();
    }

    /// As the model has it.
    void command(const std::string& text) {
        model._command = text;
        panel.settle();
    }

    void openHistory(std::size_t conversations) {
        model._openHistory = true;
        model._oldMessages =
            std::vector<oldMessagesStruct>(conversations, {.topic = "A", .message = {}, .created = 0});
        panel.settle();
    }

    void converse(const std::string& answer) {
        model._messages = {{"S", "system", "You're a helpful assistant!"},
                           {"U", "user", "Why?"},
                           {"A", "assistant", answer}};
        model._responseValue = answer;
        panel.settle();
    }

    PanelUnderTest panel;
    DataModel& model;
    SearchTextField& field;
    ListArea& list;
};

} // namespace quillmoth
