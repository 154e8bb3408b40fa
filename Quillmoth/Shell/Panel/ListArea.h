#pragma once

#include "Quillmoth/Shell/Panel/ConversationView.h"
#include "Quillmoth/Shell/Panel/FormView.h"
#include "Quillmoth/Shell/Panel/PresetList.h"
#include "Quillmoth/Shell/Panel/ScrollView.h"

namespace quillmoth {

class PanelButton;

/// The middle of the panel: the error, and under it what the model's state asks for, scrolling together.
class ListArea final : public QWidget {
public:
    ListArea(std::shared_ptr<FloatingViewController> controller, const MessageServices& services,
             QWidget* parent);

    /// Takes all changes of the model over.
    void refresh();
    void setActive(bool active);

    /// Scrolls to a row at the next refresh, when the rows are up to date.
    void revealPreset(std::int64_t index) { wantedPreset_ = index; }

    void revealHistory(std::int64_t index) { wantedHistory_ = index; }

    /// Whether presets or stored conversations are to be chosen from.
    [[nodiscard]] bool showsRows() const { return !presets_->isHidden() || !history_->isHidden(); }

    [[nodiscard]] QString selectedText() const;
    void clearSelection();

    [[nodiscard]] ScrollView& scrollView() const { return *scroll_; }

    [[nodiscard]] PresetList& presets() const { return *presets_; }

    [[nodiscard]] HistoryList& history() const { return *history_; }

    [[nodiscard]] ConversationView& conversation() const { return *conversation_; }

    [[nodiscard]] FormView& form() const { return *form_; }

    [[nodiscard]] MessageContent& error() const { return *error_; }

    /// Below an error that the settings can mend.
    [[nodiscard]] PanelButton& settingsButton() const;

    [[nodiscard]] MessageContent& hint() const { return *hint_; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    class Stack;
    class ButtonRow;

    void wireSelections();
    bool refreshTexts();
    bool showContent(FloatingViewController::Content content);
    void refreshContent(bool relayout);
    void refreshConversation(bool relayout);
    void prepareToShow();
    void followPointer();
    void revealWanted();
    void revealRow(const RowList& list, int position);

    std::shared_ptr<FloatingViewController> controller_;
    Stack* stack_;
    ScrollView* scroll_;
    MessageContent* error_;
    ButtonRow* settings_;
    MessageContent* hint_;
    FormView* form_;
    HistoryList* history_;
    ConversationView* conversation_;
    PresetList* presets_;
    std::optional<FloatingViewController::Content> shown_;
    std::optional<std::int64_t> wantedPreset_;
    std::optional<std::int64_t> wantedHistory_;
    bool preparing_ = false;
};

} // namespace quillmoth
