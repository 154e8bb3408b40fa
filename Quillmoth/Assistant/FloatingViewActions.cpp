// What each key, click and control of the panel does.

#include "Foundation/FatalError.h"
#include "Platform/Application.h"
#include "Platform/MainQueue.h"
#include "Platform/Pasteboard.h"
#include "Platform/UserDefaults.h"
#include "Platform/Workspace.h"
#include "Quillmoth/Assistant/FloatingViewController.h"
#include "Quillmoth/Assistant/WriteTexts.h"
#include "Quillmoth/Capture/SelectionWriter.h"

#include <algorithm>
#include <cmath>

namespace quillmoth {

namespace {

constexpr const char* kFontSizeKey = "saveFontSize";
constexpr const char* kMarkdownKey = "markdownOnStorage";

} // namespace

void FloatingViewController::viewAppeared() {
    model_->refreshList();
    model_->clampSelection();
}

void FloatingViewController::commandEdited(const std::string& text) {
    model_->_command = text;
    update();
}

FloatingViewController::FieldAnswer FloatingViewController::fieldCommand(FieldCommand command,
                                                                         bool shiftHeld) {
    // The list and the selection that the key acts on are those of what was typed before it.
    update();
    switch (command) {
    case FieldCommand::moveUp:
        leaveUnlistedRow();
        model_->selectPrevious();
        return FieldAnswer::notConsumed;
    case FieldCommand::moveDown:
        model_->selectNext();
        return FieldAnswer::notConsumed;
    case FieldCommand::complete:
    case FieldCommand::cancelOperation:
        model_->dismissStep();
        return FieldAnswer::consumed;
    case FieldCommand::insertNewline:
        if (shiftHeld)
            return FieldAnswer::insertLineBreak;
        run();
        return FieldAnswer::consumed;
    case FieldCommand::other:
        break;
    }
    return FieldAnswer::notConsumed;
}

void FloatingViewController::presetRowClicked(std::int64_t index) {
    model_->_selectedIndex = index;
}

void FloatingViewController::presetRowDoubleClicked(std::int64_t index) {
    model_->_command = std::string();
    model_->_selectedIndex = index;
    run();
}

void FloatingViewController::presetRowEntered(std::int64_t index) {
    model_->_hoverIndex = index;
}

void FloatingViewController::historyRowClicked(std::int64_t index) {
    model_->_keyHistorySelected = index;
}

void FloatingViewController::historyRowDoubleClicked(std::int64_t index) {
    model_->_keyHistorySelected = index;
    run();
}

void FloatingViewController::historyRowEntered(std::int64_t index) {
    model_->_keyHistoryHover = index;
}

void FloatingViewController::messageRowAppeared() {
    _markdownOn = platform_.userDefaults.boolean(kMarkdownKey, true);
    const double size = platform_.userDefaults.number(kFontSizeKey, kDefaultFont);
    _fontSize = std::isfinite(size) ? std::clamp(size, kSmallestFont, kLargestFont) : kDefaultFont;
}

void FloatingViewController::formFieldAppeared(std::int64_t id) {
    model_->_focusTemp.mutate([&](std::vector<std::int64_t>& ids) { ids.insert(ids.begin(), id); });
}

void FloatingViewController::formAppeared() {
    platform_.mainQueue.async([weak = weak_from_this()] {
        const auto controller = weak.lock();
        if (!controller)
            return;
        const std::vector<std::int64_t>& order = controller->model_->_focusTemp;
        if (order.empty())
            // A bracket that makes no blank: nothing is to be filled in, and the panel takes the keys itself.
            controller->fieldFocus_.emit();
        else
            controller->_focusField = order.front();
    });
}

void FloatingViewController::formFieldEdited(std::int64_t id, const std::string& text) {
    const std::vector<ExtractedText>& pieces = model_->_extractedTexts;
    const auto found =
        std::find_if(pieces.begin(), pieces.end(), [&](const ExtractedText& each) { return each.id == id; });
    // A field that is about to go belongs to a form that has gone.
    if (found == pieces.end())
        return;
    const auto place = static_cast<std::size_t>(found - pieces.begin());
    model_->_extractedTexts.mutate([&](std::vector<ExtractedText>& texts) { texts[place].text = text; });
}

void FloatingViewController::returnInFormField(std::int64_t id) {
    const std::vector<std::int64_t>& order = model_->_focusTemp;
    const auto greatest = std::max_element(order.begin(), order.end());
    const bool isLast = greatest == order.end() ? id >= 0 : id >= *greatest;
    const auto found = std::find(order.begin(), order.end(), id);
    const std::size_t next = found == order.end() ? 1 : static_cast<std::size_t>(found - order.begin()) + 1;
    if (isLast || next >= order.size()) {
        run();
        return;
    }
    _focusField = order[next];
}

bool FloatingViewController::isPresent(Key key) const {
    return key != Key::regenerate || !model_->_responseValue->empty();
}

bool FloatingViewController::press(Key key) {
    update();
    if (!isPresent(key))
        return false;
    switch (key) {
    case Key::replaceSelection:
        replaceSelection();
        break;
    case Key::regenerate:
        askAgain();
        break;
    case Key::larger:
        if (_fontSize < kLargestFont)
            changeFontSize(_fontSize + kFontStep);
        break;
    case Key::smaller:
        if (_fontSize > kSmallestFont)
            changeFontSize(_fontSize - kFontStep);
        break;
    case Key::defaultSize:
        changeFontSize(kDefaultFont);
        break;
    case Key::cancel:
        model_->dismissStep();
        break;
    case Key::history:
        toggleHistoryWithSelection();
        break;
    case Key::markdown:
        toggleMarkdown();
        break;
    case Key::copyAll:
        copyAll();
        break;
    case Key::onTop:
        model_->_isOnTopBinding = !model_->_isOnTopBinding;
        break;
    }
    return true;
}

void FloatingViewController::barItemClicked(BarItem item) {
    update();
    switch (item) {
    case BarItem::select:
        run();
        break;
    case BarItem::history:
        model_->_openHistory = !model_->_openHistory;
        break;
    case BarItem::onTop:
        model_->_isOnTopBinding = !model_->_isOnTopBinding;
        break;
    case BarItem::regenerate:
        askAgain();
        break;
    case BarItem::cancelOrNewChat:
        model_->dismissStep();
        break;
    case BarItem::copyAll:
        copyAll();
        break;
    case BarItem::status:
        break;
    }
}

void FloatingViewController::backClicked() {
    model_->dismissStep();
}

void FloatingViewController::settingsClicked() {
    resignPanel();
    platform_.application.activateIgnoringOtherApps();
    platform_.application.showSettingsWindow();
}

/// Regenerating takes the last message away, which has to be an answer. Where the question is the last one,
/// as after an early cancel, an empty answer is added for that; where there is no question nothing happens.
void FloatingViewController::askAgain() {
    const std::vector<ChatMessage>& messages = model_->_messages;
    if (std::none_of(messages.begin(), messages.end(),
                     [](const ChatMessage& message) { return message.role == "user"; }))
        return;
    if (!model_->_isLoading && model_->_messages->back().role == "user")
        model_->_messages.mutate([](auto& messages) { messages.push_back({std::nullopt, "assistant", ""}); });
    model_->regenerate();
}

void FloatingViewController::toggleHistoryWithSelection() {
    model_->_openHistory = !model_->_openHistory;
    model_->_keyHistorySelected = 0;
    model_->_keyHistoryHover = -1;
}

void FloatingViewController::changeFontSize(double size) {
    _fontSize = std::clamp(size, kSmallestFont, kLargestFont);
    platform_.userDefaults.set(kFontSizeKey, _fontSize.get());
}

void FloatingViewController::toggleMarkdown() {
    _markdownOn = !_markdownOn;
    platform_.userDefaults.set(kMarkdownKey, _markdownOn.get());
}

void FloatingViewController::replaceSelection() {
    resignPanel();
    const std::string& answer = model_->_responseValue;
    const std::string application = platform_.workspace.frontmostApplicationName();
    const WriteResult result = model_->replaceSelection(answer);
    if (result != WriteResult::written)
        comeBack(textFor(result, application, !answer.empty()));
}

/// An answer that did not get to where it was to go is still here, and nearer at hand than before.
void FloatingViewController::comeBack(const std::string& why) {
    if (!model_->_responseValue->empty()) {
        platform_.pasteboard.clearContents();
        platform_.pasteboard.setString(model_->_responseValue);
    }
    _notice = why;
    model_->_FloatingViewPanel.get()->comeBack();
}

void FloatingViewController::noticeRead() {
    if (!_notice->empty())
        _notice = std::string();
}

void FloatingViewController::copyAll() {
    platform_.pasteboard.clearContents();
    platform_.pasteboard.setString(model_->_responseValue);
    resignPanel();
}

void FloatingViewController::resignPanel() {
    if (!model_->_FloatingViewPanel.get())
        fatalError("There is no panel to close");
    model_->_FloatingViewPanel.get()->resignMainWindow();
}

} // namespace quillmoth
