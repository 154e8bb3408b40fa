#pragma once

#include "Foundation/Subscription.h"
#include "Quillmoth/Editor/PromptEditorView.h"
#include "Quillmoth/Shell/Controls/ShellWindow.h"

#include <memory>

class QPushButton;
class QShortcut;
class QStackedWidget;

namespace quillmoth::platform {
class MainQueue;
}

namespace quillmoth {

class EditorSidebar;
class ElidedTitle;
class PresetFileMenu;
class PresetForm;

/// The window "Prompt Editor": a strip with the preset's name, the sidebar and the form. It follows the
/// store. Made once, when it is first asked for, and only hidden when the user closes it.
class PromptEditorWindow final : public ShellWindow {
public:
    /// The services of `platform` and `colorScheme` outlive the window.
    PromptEditorWindow(std::shared_ptr<DataModel> model, const platform::Platform& platform,
                       ColorScheme& colorScheme);
    ~PromptEditorWindow() override;

    /// Selects the preset of that index, and shows its row.
    void showPreset(std::int64_t index);

    /// Shows what the store and the selection hold now.
    void refresh();

    [[nodiscard]] PromptEditorView& view() { return view_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void takeFirstFocus() override;
    void themeChanged() override;

private:
    [[nodiscard]] QWidget* makeStrip();
    [[nodiscard]] QWidget* makeBody();
    void makeShortcuts();
    void toggleSidebar();
    void undoDelete();
    void showImported(std::size_t added);
    void storeWillChange();

    PromptEditorView view_;
    platform::MainQueue& mainQueue_;
    ElidedTitle* title_;
    QPushButton* undo_;
    PresetFileMenu* files_;
    QShortcut* undoKey_;
    EditorSidebar* sidebar_;
    PresetForm* form_;
    QStackedWidget* detail_;
    // Work on the main queue holds it weakly.
    std::shared_ptr<bool> isRefreshDue_ = std::make_shared<bool>(false);
    Subscription storeSubscription_;
};

} // namespace quillmoth
