// What Return sends: the choice of system message and the composition of the text.

#include "Foundation/FatalError.h"
#include "Foundation/Log.h"
#include "Foundation/Text.h"
#include "Quillmoth/Assistant/DataModel.h"

#include <algorithm>
#include <utility>

namespace quillmoth {

namespace {

constexpr const char* kTypedSystemPrompt = "Your are helpful assistant";
constexpr const char* kSystemPrompt = "You are a helpful assistant";
constexpr const char* kContextSystemPrompt = "You are a helpful assistant.";
constexpr const char* kContextPlaceholder = "{selected text}";

template<class Element>
const Element& elementAt(const std::vector<Element>& array, std::int64_t index, const char* name) {
    if (index < 0 || index >= static_cast<std::int64_t>(array.size()))
        fatalError("Index out of range: " + std::to_string(index) + " in " + name + " of " +
                   std::to_string(array.size()));
    return array[static_cast<std::size_t>(index)];
}

/// A bracket that bears a combining mark is another character, and opens no form.
bool holdsBracket(std::string_view prompt) {
    if (prompt.find_first_of("[]") == std::string_view::npos)
        return false;
    const auto all = characters(prompt);
    return std::any_of(all.begin(), all.end(),
                       [](std::string_view character) { return character == "[" || character == "]"; });
}

const PromptData& presetAt(const DataModel& model, std::int64_t index) {
    return elementAt(model._PromptM.get()->prompts(), index, "prompts");
}

void openStoredConversation(DataModel& model) {
    const std::int64_t row = model._keyHistorySelected;
    if (row < 0)
        return;
    model._messages = elementAt(*model._oldMessages, row, "_oldMessages").message;
    model._openHistory = false;
    model._browseHistory = true;
    model._responseValue = std::string("openChat");
    model._chatWithHistory = row;
}

void openForm(DataModel& model) {
    model._nonContextPrompt = true;
    model._focusTemp = std::vector<std::int64_t>();
    model._extractedTexts = extractBracketedTexts(presetAt(model, model._selectedIndex).prompt);
}

} // namespace

PromptData DataModel::promptForIndex(std::int64_t index) const {
    if (index != kTypedCommand)
        return presetAt(*this, index);
    return {
        .id = std::nullopt,
        .emoji = "",
        .name = "typed",
        .prompt = _command,
        .systemPrompt = kTypedSystemPrompt,
        .promptType = std::nullopt,
        .programType = std::nullopt,
    };
}

void DataModel::runPrompt() {
    _error = std::string();
    fileProblem_.clear();
    if (_isLoading)
        return;
    if (_openHistory)
        openStoredConversation(*this);
    else if (_nonContextPrompt)
        sendForm();
    else if (!_isContext)
        runWithoutContext();
    else
        runWithContext();
}

// Where nothing may be sent, all stays as it was before the key: what was typed, the form, the selected row.

void DataModel::sendForm() {
    if (answerStream_.isRefused()) // the form stays
        return;
    _nonContextPrompt = false;
    std::string text;
    for (const ExtractedText& piece : *_extractedTexts)
        text += piece.text;
    beginConversation(presetAt(*this, _selectedIndex).systemPrompt.value_or(kSystemPrompt));
    sendPrompt(text);
}

void DataModel::runWithoutContext() {
    if (_selectedIndex != kTypedCommand && holdsBracket(promptForIndex(_selectedIndex).prompt)) {
        openForm(*this);
        return;
    }
    if (answerStream_.isRefused())
        return;
    std::string text;
    if (_messages->size() > 2) {
        text = _command;
    } else {
        const PromptData prompt = promptForIndex(_selectedIndex);
        beginConversation(prompt.systemPrompt.value_or(kSystemPrompt));
        text = prompt.prompt;
    }
    logUserText("prompt " + text);
    sendPrompt(text);
}

void DataModel::runWithContext() {
    if (answerStream_.isRefused())
        return;
    if (!_messages->empty()) {
        sendPrompt(_command);
        return;
    }
    const PromptData prompt = promptForIndex(_selectedIndex);
    logUserText(prompt.prompt);
    beginConversation(prompt.systemPrompt.value_or(kContextSystemPrompt));
    if (_selectedIndex == kTypedCommand)
        sendPrompt(*_command + " : ###\n " + *_selectedValue + " ###");
    else
        sendPrompt(replacingAll(prompt.prompt, kContextPlaceholder, *_selectedValue));
}

void DataModel::beginConversation(std::string systemPrompt) {
    _messages = std::vector<ChatMessage>();
    appendMessage("system", std::move(systemPrompt));
}

} // namespace quillmoth
