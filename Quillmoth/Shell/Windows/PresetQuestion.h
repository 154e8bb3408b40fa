#pragma once

#include "Quillmoth/Shell/Controls/ShellWindow.h"

#include <QString>

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>

class QLineEdit;
class QPushButton;

namespace quillmoth {

class TextArea;

/// A preset that comes from outside, and what adds it.
struct PresetOffer {
    QString name;
    /// Empty for none.
    QString systemPrompt;
    QString prompt;
    std::function<void()> add;
};

/// Shows a preset that a link carries and asks whether to add it. Nothing but the button adds it: Return and
/// Escape, and closing the window, do not. Main thread.
class PresetQuestionWindow final : public ShellWindow {
public:
    explicit PresetQuestionWindow(ColorScheme& colorScheme);

    void showOffer(const PresetOffer& offer);

    /// Called once for each offer.
    std::function<void(bool adds)> onAnswer;

protected:
    void takeFirstFocus() override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void answer(bool adds);

    QLineEdit* name_;
    TextArea* systemPrompt_;
    TextArea* prompt_;
    QPushButton* add_;
    QPushButton* refuse_;
    bool isOpen_ = false;
};

/// Asks about one preset after the other. Main thread.
class PresetQuestions {
public:
    /// `makeWindow` is called with the first question.
    explicit PresetQuestions(std::function<std::unique_ptr<PresetQuestionWindow>()> makeWindow)
        : makeWindow_(std::move(makeWindow)) {}

    /// False where too many are waiting; this one is dropped then.
    bool ask(PresetOffer offer);

private:
    void showNext();
    void answered(bool adds);

    std::function<std::unique_ptr<PresetQuestionWindow>()> makeWindow_;
    std::unique_ptr<PresetQuestionWindow> window_;
    /// The first one is being asked about.
    std::deque<PresetOffer> offers_;
};

} // namespace quillmoth
