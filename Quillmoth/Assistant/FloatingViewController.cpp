#include "Quillmoth/Assistant/FloatingViewController.h"

#include "Foundation/FatalError.h"
#include "Foundation/Text.h"
#include "Platform/MainQueue.h"
#include "Quillmoth/Assistant/CaptureTexts.h"
#include "Quillmoth/Chat/ChatRoute.h"

#include <utility>

namespace quillmoth {

namespace {

constexpr std::string_view kSearchPlaceholder = "Search for prompts preset or ask AI...";
constexpr std::string_view kAskPlaceholder = "Ask AI...";
constexpr platform::MainQueue::Seconds kFormFocusDelay{0.1};
constexpr platform::MainQueue::Seconds kFocusRequestLife{0.05};

} // namespace

std::shared_ptr<FloatingViewController> FloatingViewController::create(std::shared_ptr<DataModel> model,
                                                                       const platform::Platform& platform) {
    auto controller = std::make_shared<FloatingViewController>(std::move(model), platform);
    controller->observe();
    return controller;
}

FloatingViewController::FloatingViewController(std::shared_ptr<DataModel> model,
                                               const platform::Platform& platform)
    : model_(std::move(model)), platform_(platform) {}

void FloatingViewController::observe() {
    const auto changed = [this](std::string_view) { scheduleUpdate(); };
    modelSubscription_ = model_->objectWillChange([this](std::string_view field) {
        listRewritten_ = listRewritten_ || field == model_->_filteredData.name();
        scheduleUpdate();
    });
    promptsSubscription_ = model_->_PromptM.get()->objectWillChange(changed);
    ownSubscription_ = objectWillChange(changed);
}

void FloatingViewController::scheduleUpdate() {
    if (std::exchange(updateScheduled_, true))
        return;
    platform_.mainQueue.async([weak = weak_from_this()] {
        const auto controller = weak.lock();
        // An update on demand may have come first.
        if (controller && controller->updateScheduled_)
            controller->update();
    });
}

void FloatingViewController::update() {
    updateScheduled_ = false;
    const Seen now{
        .command = model_->_command,
        .isLoading = model_->_isLoading,
        .nonContextPrompt = model_->_nonContextPrompt,
        .isOnTop = model_->_isOnTopBinding,
        .selectedIndex = model_->_selectedIndex,
        .keyHistorySelected = model_->_keyHistorySelected,
    };
    const Seen before = std::exchange(seen_, now);
    followCommand(before);
    if (!now.isLoading && before.isLoading)
        model_->_didFocus = true;
    if (now.nonContextPrompt != before.nonContextPrompt)
        formToggled(now.nonContextPrompt);
    if (now.isOnTop != before.isOnTop)
        pinPanel(now.isOnTop);
    if (now.selectedIndex != before.selectedIndex)
        scrollToPreset_.emit(now.selectedIndex);
    if (now.keyHistorySelected != before.keyHistorySelected)
        scrollToHistory_.emit(now.keyHistorySelected);
    serveFocusRequest();
    updated_.emit();
}

/// Narrows the list to what the command finds, when the command is new, and when something else has listed
/// all presets again: a capture, or a change of the presets. Leaving the form lists all of them too, and
/// there they are to stay.
void FloatingViewController::followCommand(const Seen& before) {
    const bool isNewList = std::exchange(listRewritten_, false) && !seen_.command.empty() &&
                           seen_.nonContextPrompt == before.nonContextPrompt;
    if (seen_.command == before.command && !isNewList)
        return;
    commandChanged(seen_.command);
    // Only lists that something else makes count.
    listRewritten_ = false;
}

void FloatingViewController::commandChanged(const std::string& value) {
    model_->clampSelection();
    if (value.empty()) {
        model_->refreshList();
        model_->clampSelection();
        return;
    }
    if (firstCharacter(value) == ":")
        return;
    model_->filterPrompts(value);
}

void FloatingViewController::formToggled(bool shown) {
    platform_.mainQueue.asyncAfter(kFormFocusDelay, [weak = weak_from_this(), shown] {
        const auto controller = weak.lock();
        if (!controller || shown)
            return;
        controller->_focusField = kCommandField;
        controller->fieldFocus_.emit();
    });
}

void FloatingViewController::pinPanel(bool pinned) {
    if (!model_->_FloatingViewPanel.get())
        fatalError("There is no panel to pin");
    model_->_FloatingViewPanel.get()->isOntop = pinned;
}

void FloatingViewController::serveFocusRequest() {
    if (!model_->_didFocus)
        return;
    platform_.mainQueue.asyncAfter(kFocusRequestLife, [weak = weak_from_this()] {
        if (const auto controller = weak.lock())
            controller->model_->_didFocus = false;
    });
    platform_.mainQueue.async([weak = weak_from_this(), choices = focusChoices_] {
        const auto controller = weak.lock();
        if (controller && controller->focusChoices_ == choices)
            controller->fieldFocus_.emit();
    });
}

void FloatingViewController::focusChosen() {
    ++focusChoices_;
    if (model_->_didFocus)
        model_->_didFocus = false;
}

FloatingViewController::Content FloatingViewController::content() const {
    if (model_->_nonContextPrompt)
        return Content::form;
    if (model_->_openHistory)
        return Content::history;
    if (!model_->_responseValue->empty() || model_->_isLoading)
        return Content::conversation;
    if (model_->_isContext && model_->_command->empty())
        return Content::presets;
    return Content::hintAndPresets;
}

std::string_view FloatingViewController::placeholder() const {
    return *model_->_status == kContextFound ? kSearchPlaceholder : kAskPlaceholder;
}

bool FloatingViewController::offersSettings() const {
    const std::string& error = model_->_error;
    if (error.starts_with(kPermissionMessage))
        return true;
    const auto route = chatRoute(platform_.userDefaults);
    return !error.empty() && !route && error.starts_with(route.error().description);
}

FloatingViewController::RowMark FloatingViewController::presetMark(std::int64_t index) const {
    if (model_->_selectedIndex == index)
        return RowMark::selected;
    return model_->_hoverIndex == index ? RowMark::hovered : RowMark::none;
}

FloatingViewController::RowMark FloatingViewController::historyMark(std::int64_t index) const {
    if (model_->_keyHistorySelected == index)
        return RowMark::selected;
    return model_->_keyHistoryHover == index ? RowMark::hovered : RowMark::none;
}

std::vector<FloatingViewController::BarItem> FloatingViewController::bottomBar() const {
    std::vector<BarItem> items{BarItem::select, BarItem::history, BarItem::onTop};
    if (model_->_responseValue->empty()) {
        items.push_back(BarItem::status);
        return items;
    }
    if (!model_->_openHistory)
        items.push_back(BarItem::regenerate);
    items.push_back(BarItem::cancelOrNewChat);
    items.push_back(BarItem::copyAll);
    return items;
}

std::string_view FloatingViewController::cancelLabel() const {
    return model_->_isLoading ? "Cancel" : "New chat";
}

} // namespace quillmoth
