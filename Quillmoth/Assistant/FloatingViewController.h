#pragma once

#include "Foundation/Published.h"
#include "Quillmoth/Assistant/DataModel.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmoth {

/// All of the panel's content but its drawing: what is shown in which state, what each key, click and control
/// does, and how the view follows changes of the model. A toolkit's view draws it and hands it its events.
/// Main thread.
class FloatingViewController final : public ObservableObject,
                                     public std::enable_shared_from_this<FloatingViewController> {
public:
    static constexpr std::int64_t kCommandField = 9999;
    static constexpr double kFontStep = 2;
    static constexpr double kLargestFont = 40;
    static constexpr double kSmallestFont = 12;
    static constexpr double kDefaultFont = 16;

    /// What the list area shows below the error.
    enum class Content { form, history, conversation, presets, hintAndPresets };

    /// Commands of the text system in the command field.
    enum class FieldCommand { moveUp, moveDown, complete, cancelOperation, insertNewline, other };
    enum class FieldAnswer {
        /// The field does with the key what it does with any.
        notConsumed,
        consumed,
        /// The field inserts a line break, and does nothing else with the key.
        insertLineBreak,
    };

    enum class Key {
        replaceSelection,
        regenerate,
        larger,
        smaller,
        defaultSize,
        cancel,
        history,
        markdown,
        copyAll,
        onTop
    };

    enum class BarItem { select, history, onTop, status, regenerate, cancelOrNewChat, copyAll };

    enum class RowMark { none, hovered, selected };

    [[nodiscard]] static std::shared_ptr<FloatingViewController> create(std::shared_ptr<DataModel> model,
                                                                        const platform::Platform& platform);

    [[nodiscard]] DataModel& model() const { return *model_; }

    // What to show
    [[nodiscard]] Content content() const;
    [[nodiscard]] std::string_view placeholder() const;
    static constexpr std::string_view kHint =
        "Start talking to the AI assistant or select the text on the screen to provide context.";
    static constexpr std::string_view kTypedCommandEmoji = "⌨️";
    static constexpr std::string_view kTypedCommandName = "Use typed command for prompt";
    /// Whether the error is one that the settings can mend.
    [[nodiscard]] bool offersSettings() const;
    [[nodiscard]] RowMark presetMark(std::int64_t index) const;
    [[nodiscard]] RowMark historyMark(std::int64_t index) const;
    /// From the leading edge, behind the "🧙🏻".
    [[nodiscard]] std::vector<BarItem> bottomBar() const;
    /// "Cancel" or "New chat".
    [[nodiscard]] std::string_view cancelLabel() const;

    // What happens
    void viewAppeared();
    void commandEdited(const std::string& text);
    FieldAnswer fieldCommand(FieldCommand command, bool shiftHeld);
    void presetRowClicked(std::int64_t index);
    void presetRowDoubleClicked(std::int64_t index);
    void presetRowEntered(std::int64_t index);
    void historyRowClicked(std::int64_t index);
    void historyRowDoubleClicked(std::int64_t index);
    void historyRowEntered(std::int64_t index);
    /// Takes the stored font size and Markdown switch over.
    void messageRowAppeared();
    void formFieldAppeared(std::int64_t id);
    void formAppeared();
    void formFieldEdited(std::int64_t id, const std::string& text);
    void returnInFormField(std::int64_t id);
    [[nodiscard]] bool isPresent(Key key) const;
    /// Runs the key's action where the key is present. False where it is not.
    bool press(Key key);
    void barItemClicked(BarItem item);
    void backClicked();
    /// Opens the settings in place of the panel.
    void settingsClicked();
    /// The user has led the focus elsewhere: what has asked for it for the field so far is over.
    void focusChosen();
    /// The user goes on: the notice has been read.
    void noticeRead();

    /// Does now what changes of the model lead to, which otherwise waits for the next turn of the main queue.
    void update();

    /// Called at most once a turn after changes, when everything has settled: draw again.
    Subscription onUpdate(std::function<void()> subscriber) {
        return updated_.subscribe(std::move(subscriber));
    }

    /// The command field is to take the focus of the panel.
    Subscription onFieldFocus(std::function<void()> subscriber) {
        return fieldFocus_.subscribe(std::move(subscriber));
    }

    /// The selected row has changed: scroll to it.
    Subscription onScrollToPreset(std::function<void(std::int64_t index)> subscriber) {
        return scrollToPreset_.subscribe(std::move(subscriber));
    }

    Subscription onScrollToHistory(std::function<void(std::int64_t index)> subscriber) {
        return scrollToHistory_.subscribe(std::move(subscriber));
    }

    /// Point size of rows and messages.
    Published<double> _fontSize{*this, "_fontSize", kDefaultFont};
    Published<bool> _markdownOn{*this, "_markdownOn", true};
    /// Which input has the focus: kCommandField, or the id of a blank of the form.
    Published<std::optional<std::int64_t>> _focusField{*this, "_focusField"};
    /// What has become of an answer that was to be written elsewhere; empty where there is nothing to tell.
    Published<std::string> _notice{*this, "_notice"};

    FloatingViewController(std::shared_ptr<DataModel> model, const platform::Platform& platform);

private:
    /// The values that the view was last brought up to date with.
    struct Seen {
        std::string command;
        bool isLoading = false;
        bool nonContextPrompt = false;
        bool isOnTop = false;
        std::int64_t selectedIndex = 0;
        std::int64_t keyHistorySelected = 0;
    };

    void observe();
    void scheduleUpdate();
    void followCommand(const Seen& before);
    void commandChanged(const std::string& value);
    void formToggled(bool shown);
    void pinPanel(bool pinned);
    void serveFocusRequest();
    void run();
    [[nodiscard]] bool isRunnable();
    [[nodiscard]] bool selectFormPreset();
    void giveFormBack();
    void leaveUnlistedRow();
    void askAgain();
    void toggleHistoryWithSelection();
    void changeFontSize(double size);
    void toggleMarkdown();
    void replaceSelection();
    void comeBack(const std::string& why);
    void copyAll();
    void resignPanel();

    std::shared_ptr<DataModel> model_;
    platform::Platform platform_;
    Seen seen_;
    // The preset of the form on show, as it was when the form opened.
    std::optional<PromptData> formPreset_;
    bool updateScheduled_ = false;
    bool listRewritten_ = false;
    /// How often the user has led the focus elsewhere.
    std::uint64_t focusChoices_ = 0;
    Signal<> updated_;
    Signal<> fieldFocus_;
    Signal<std::int64_t> scrollToPreset_;
    Signal<std::int64_t> scrollToHistory_;
    Subscription modelSubscription_;
    Subscription promptsSubscription_;
    Subscription ownSubscription_;
};

} // namespace quillmoth
