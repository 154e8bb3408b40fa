#pragma once

#include "KeyboardShortcuts/Center.h"
#include "Platform/KeyboardLayout.h"
#include "Platform/MainQueue.h"
#include "Quillmoth/Settings/Recording.h"
#include "Quillmoth/Shell/Windows/LocalEventMonitor.h"

#include <QLineEdit>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QKeyEvent;

namespace quillmoth {

class SymbolButton;

/// What a recorder works with. The services outlive it.
struct RecorderServices {
    KeyboardShortcuts::Center& shortcuts;
    platform::KeyboardLayout& layout;
    platform::MainQueue& mainQueue;
    /// The virtual key code of a native scan code; none where it has none.
    std::function<std::optional<std::uint16_t>(std::uint32_t nativeScanCode)> virtualKeyCode;
    /// Has the desktop leave its own key combinations to the window, which has the keyboard, until the result
    /// goes; may be left empty.
    std::function<Subscription(std::uint64_t window)> inhibitShortcuts;
    std::function<std::vector<MainMenuItem>()> mainMenu;
    /// Shows a warning and calls `done` when it has been closed.
    std::function<void(const QString& message, const QString& informativeText, std::function<void()> done)>
        alert;
    std::function<void()> beep;
};

/// The field in which the user presses a shortcut. While it has the focus it takes the keys, and all hot keys
/// pause. Main thread.
class RecorderCocoa final : public QLineEdit {
public:
    using Change = std::function<void(const std::optional<KeyboardShortcuts::Shortcut>&)>;

    RecorderCocoa(KeyboardShortcuts::Name name, RecorderServices services, Change onChange = {});
    ~RecorderCocoa() override;

    [[nodiscard]] bool isRecording() const { return eventMonitor_ != nullptr; }

    [[nodiscard]] QString prompt() const { return prompt_; }

    [[nodiscard]] bool hasClearButton() const;
    void clickClearButton();

    [[nodiscard]] QSize sizeHint() const override;

    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void showEvent(QShowEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void beginRecording();
    void endEditing();
    /// Keys that others have taken, the present hot key among them, come here too then.
    void holdKeyboard();
    void freeKeyboard();
    void blur();
    void refreshText();
    void showText(const std::optional<KeyboardShortcuts::Shortcut>& shortcut);
    void showPrompt(std::string_view key);
    /// In this keyboard's words, for tooltip and assistive technology.
    void describe();
    void textDidChange();
    bool handle(QObject* receiver, QEvent& event);
    void handleRelease(const QMouseEvent& event);
    bool handleKey(const QKeyEvent& event);
    void carryOut(const RecordingStep& step);
    void refuse(const QString& message, const QString& informativeText);

    static constexpr int kMinimumWidth = 130;

    RecorderServices services_;
    Change onChange_;
    KeyboardShortcuts::Name shortcutName_;
    std::unique_ptr<LocalEventMonitor> eventMonitor_;
    QTimer grabTimer_;
    Subscription inhibition_;
    Subscription observer_;
    bool canBecomeKey_ = false;
    SymbolButton* cancelButton_;
    QString prompt_;
    QString words_;
    // Lets work that comes late find out that the field has gone.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

} // namespace quillmoth
