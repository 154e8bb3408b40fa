#pragma once

#include "Foundation/Subscription.h"

#include <QPointer>
#include <QWidget>

#include <functional>

class QMessageBox;
class QPalette;

namespace quillmoth {

class ColorScheme;
class FocusRing;

/// An ordinary window of the program: its look, which follows the desktop's, and the keys that every window
/// answers to. Main thread.
class ShellWindow : public QWidget {
public:
    /// `colorScheme` outlives the window.
    ShellWindow(const QString& title, ColorScheme& colorScheme);
    ~ShellWindow() override;

    /// Shows the window, or brings it to the front.
    void present();

    /// Gives the keyboard to a control of the window, and shows that it has it.
    void focusVisibly(QWidget& control);

    /// What Ctrl+Q does.
    std::function<void()> onQuit;

protected:
    /// To be called once all that the window holds has been made.
    void applyLook();

    /// Called where the window is about to be shown: gives the keyboard to what it belongs to first.
    virtual void takeFirstFocus();

    /// Called after a change of light and dark.
    virtual void themeChanged() {}

    bool focusNextPrevChild(bool next) override;

private:
    void follow(QWidget* focused);
    void placeInTheMiddle();

    ColorScheme& colorScheme_;
    FocusRing* focusRing_ = nullptr;
    bool isMovingFocus_ = false;
    // What the keyboard has moved the focus to last.
    QPointer<QWidget> keyboardFocus_;
    Subscription schemeChange_;
    QMetaObject::Connection focusChange_;
};

struct AlertButton {
    QString title;
    std::function<void()> action;
};

/// Gives the message box the look of the program's windows, in the colours of `palette`.
void styleAlert(QMessageBox& alert, const QPalette& palette);

/// A message box with that look, which is not shown yet and deletes itself when it is closed. `extra` is a
/// further button in front of the one that closes it.
[[nodiscard]] QMessageBox* makeAlert(QWidget* window, bool isWarning, const QString& text,
                                     const QString& informativeText, const AlertButton& extra,
                                     const QPalette& palette);

/// A sheet on the window of `parent`, or a dialog where there is none. Returns at once; `done` is called when
/// it has been closed. `extra` as above.
void showAlert(QWidget* parent, bool isWarning, const QString& text, const QString& informativeText,
               std::function<void()> done = {}, const AlertButton& extra = {});

} // namespace quillmoth
