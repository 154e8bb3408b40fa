// What Return sends: the choice of system message and the composition of the text.

#include "Foundation/FatalError.h"
#include "Foundation/Log.h"
#include "Foundation/Text.h"
#include "Quillmoth/Assistant/DataModel.h"

#include <algorithm>

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

} // namespace

const PromptData& DataModel::presetAt(std::int64_t index) const {
    return elementAt(prompts(), index, "prompts");
}

PromptData DataModel::promptForIndex(std::int64_t index) const {
    if (index != kTypedCommand)
        return presetAt(index);
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
    if (_isLoading)
        return;
    if (_openHistory)
        openStoredConversation();
    else if (_nonContextPrompt)
        sendForm();
    else if (!_isContext)
        runWithoutContext();
    else
        runWithContext();
}

void DataModel::openStoredConversation() {
    if (_keyHistorySelected < 0)
        return;
    _messages = elementAt(*_oldMessages, _keyHistorySelected, "_oldMessages").message;
    _openHistory = false;
    _browseHistory = true;
    _responseValue = std::string("openChat");
    _chatWithHistory = _keyHistorySelected;
}

void DataModel::sendForm() {
    _nonContextPrompt = false;
    std::string text;
    for (const ExtractedText& piece : *_extractedTexts)
        text += piece.text;
    _messages = std::vector<ChatMessage>();
    appendMessage("system", presetAt(_selectedIndex).systemPrompt.value_or(kSystemPrompt));
    sendPrompt(text);
}

void DataModel::runWithoutContext() {
    if (_selectedIndex != kTypedCommand && holdsBracket(promptForIndex(_selectedIndex).prompt)) {
        openForm();
        return;
    }
    std::string text;
    if (_messages->size() > 2) {
        text = _command;
    } else {
        const PromptData prompt = promptForIndex(_selectedIndex);
        _messages = std::vector<ChatMessage>();
        appendMessage("system", prompt.systemPrompt.value_or(kSystemPrompt));
        text = prompt.prompt;
    }
    logLine("prompt " + text);
    sendPrompt(text);
}

void DataModel::openForm() {
    _nonContextPrompt = true;
    _focusTemp = std::vector<std::int64_t>();
    _extractedTexts = extractBracketedTexts(presetAt(_selectedIndex).prompt);
}

void DataModel::runWithContext() {
    if (!_messages->empty()) {
        sendPrompt(_command);
        return;
    }
    const PromptData prompt = promptForIndex(_selectedIndex);
    logLine(prompt.prompt);
    _messages = std::vector<ChatMessage>();
    appendMessage("system", prompt.systemPrompt.value_or(kContextSystemPrompt));
    if (_selectedIndex == kTypedCommand)
        sendPrompt(*_command + " : ###\n " + *_selectedValue + " ###");
    else
        sendPrompt(replacingAll(prompt.prompt, kContextPlaceholder, *_selectedValue));
}

} // namespace quillmoth
