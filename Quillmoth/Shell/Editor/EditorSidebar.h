#pragma once

#include "Quillmoth/Editor/PromptEditorView.h"
#include "Quillmoth/Shell/Editor/PresetListModel.h"

#include <QWidget>

#include <functional>

class QButtonGroup;
class QStackedWidget;

namespace quillmoth {

class PresetListView;

/// One tab's rows with "+ Add" directly below.
class PresetPage final : public QWidget {
public:
    struct Callbacks {
        /// Something changed that the rest of the window shows.
        std::function<void()> changed;
        /// The user wants to go on in the form.
        std::function<void()> edit;
    };

    PresetPage(PromptEditorView& view, PromptTab& tab, Callbacks callbacks);

    void refresh();
    void takeFocus();

private:
    void add();
    void choose(int row);
    void move(int row, int gap);
    void remove();

    PromptEditorView& view_;
    PromptTab& tab_;
    Callbacks callbacks_;
    PresetListModel rows_;
    PresetListView* list_;
};

/// The tabs, the page of the one on show, and "Prompt Library".
class EditorSidebar final : public QWidget {
public:
    /// `view` outlives the sidebar.
    EditorSidebar(PromptEditorView& view, PresetPage::Callbacks callbacks);

    void refresh();

    /// Puts the keyboard into the list on show.
    void takeFocus();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QWidget* makeTabs();
    [[nodiscard]] PresetPage& shownPage() const;
    void showTab(int number);

    PromptEditorView& view_;
    PresetPage::Callbacks callbacks_;
    QButtonGroup* tabs_;
    QStackedWidget* pages_;
};

} // namespace quillmoth
