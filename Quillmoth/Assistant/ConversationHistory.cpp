// Conversations are summarised and stored when they are closed.

#include "Foundation/FatalError.h"
#include "Foundation/Log.h"
#include "Platform/Clock.h"
#include "Platform/MainQueue.h"
#include "Platform/URLSession.h"
#include "Quillmoth/Assistant/DataModel.h"
#include "Quillmoth/Chat/ChatRequests.h"
#include "Quillmoth/Prompts/JSONFunction.h"

#include <algorithm>
#include <utility>

namespace quillmoth {

namespace {

constexpr const char* kSummaryPrompt =
    "In not more than 1 sentence, what have we been talking about? Answer in this specific pattern only: "
    "[emoji][topics name]  use only 1 emoji (Not two, not three) related to the topic at the front of the "
    "sentence, make topics name as short as possible but specific";

bool isAnswered(const std::vector<ChatMessage>& messages) {
    return std::any_of(messages.begin(), messages.end(), [](const ChatMessage& message) {
        return message.role == "assistant" && !message.content.empty();
    });
}

/// Whatever the ids.
bool sayTheSame(const std::vector<ChatMessage>& first, const std::vector<ChatMessage>& second) {
    return std::equal(first.begin(), first.end(), second.begin(), second.end(),
                      [](const ChatMessage& one, const ChatMessage& other) {
                          return one.role == other.role && one.content == other.content;
                      });
}

std::string topicOfDate(const platform::Clock& clock, double secondsSince1970) {
    return "😀 Chat: " + clock.localDateAndMinute(secondsSince1970);
}

/// A conversation on its way into the history: as it was when it was closed.
struct Closed {
    std::weak_ptr<DataModel> model;
    std::vector<ChatMessage> messages;
    std::int64_t index = 0;
    std::string journalKey = {};
};

/// On a queue of the session's: touches the model on the main queue only.
void summaryArrived(platform::MainQueue& mainQueue, Closed closed, const std::optional<std::string>& data,
                    const std::optional<platform::URLError>& error) {
    const bool isTooLarge = error && error->code == platform::URLError::Code::tooLarge;
    if (error && !isTooLarge) {
        logLine(error->localizedDescription);
        return;
    }
    if (!data && !isTooLarge)
        return;
    auto response = isTooLarge ? Error{error->localizedDescription} : readChatResponse(*data);
    if (!response || response->choices.empty()) {
        logLine(response ? "ignoring an answer with the topic that has no choice"
                         : "Unexpected saving error: " + response.error().description);
        mainQueue.async([closed = std::move(closed)]() mutable {
            if (const auto model = closed.model.lock())
                model->storeConversationWithDate(std::move(closed.messages), closed.index, closed.journalKey);
        });
        return;
    }
    mainQueue.async(
        [closed = std::move(closed), topic = std::move(response->choices.front().message.content)]() mutable {
            if (const auto model = closed.model.lock())
                model->storeConversation(topic, std::move(closed.messages), closed.index, closed.journalKey);
        });
}

} // namespace

void DataModel::archiveConversation() {
    // Of what nobody has answered there is nothing to keep: a first request that was refused leaves a system
    // message alone.
    if (!isAnswered(_messages))
        return;
    Closed closed{weak_from_this(), _messages, _chatWithHistory, journal_.close()};
    std::vector<ChatMessage> asked = closed.messages;
    asked.push_back(makeChatMessage(platform_.uuidSource, "user", kSummaryPrompt));
    const auto sent = sendChatRequest(
        asked, modelSetting(platform_.userDefaults), *platform_.urlSessions.sharedSession(),
        platform_.userDefaults,
        [&mainQueue = platform_.mainQueue, closed](const std::optional<std::string>& data,
                                                   const std::optional<platform::URLResponse>&,
                                                   const std::optional<platform::URLError>& error) {
            summaryArrived(mainQueue, closed, data, error);
        });
    if (!sent)
        storeConversationWithDate(std::move(closed.messages), closed.index);
}

void DataModel::storeConversation(const std::string& topic, std::vector<ChatMessage> messages,
                                  std::int64_t index, const std::string& journalKey) {
    const double created = platform_.clock.secondsSince1970();
    if (index < 0) {
        _oldMessages.mutate([&](std::vector<oldMessagesStruct>& conversations) {
            conversations.insert(conversations.begin(), {topic, std::move(messages), created});
        });
    } else {
        if (index >= static_cast<std::int64_t>(_oldMessages->size()))
            fatalError("Index out of range: " + std::to_string(index) + " in _oldMessages of " +
                       std::to_string(_oldMessages->size()));
        const auto entry = static_cast<std::size_t>(index);
        _oldMessages.mutate([&](auto& conversations) { conversations[entry].message = std::move(messages); });
        _oldMessages.mutate([&](auto& conversations) { conversations[entry].topic = topic; });
    }
    saveHistory({journalKey});
}

void DataModel::storeConversationWithDate(std::vector<ChatMessage> messages, std::int64_t index,
                                          const std::string& journalKey) {
    storeConversation(topicOfDate(platform_.clock, platform_.clock.secondsSince1970()), std::move(messages),
                      index, journalKey);
}

void DataModel::saveHistory(std::vector<std::string> journalKeys) {
    // Not called once the file, which is a part of the model, has gone.
    jsonFunction::saveJSONFile(*_oldMessages, history_, [this, keys = std::move(journalKeys)] {
        for (const std::string& key : keys)
            journal_.stored(key);
    });
}

void DataModel::recoverConversations() {
    std::vector<std::string> keys;
    for (JournalledConversation& each : journal_.recover()) {
        const bool isKnown = std::any_of(_oldMessages->begin(), _oldMessages->end(), [&](const auto& known) {
            return sayTheSame(known.message, each.messages);
        });
        if (isKnown || !isAnswered(each.messages)) {
            journal_.stored(each.key);
            continue;
        }
        keys.push_back(each.key);
        _oldMessages.mutate([&](std::vector<oldMessagesStruct>& conversations) {
            conversations.insert(conversations.begin(), {topicOfDate(platform_.clock, each.created),
                                                         std::move(each.messages), each.created});
        });
    }
    if (!keys.empty())
        saveHistory(std::move(keys));
}

} // namespace quillmoth
