#include "Quillmoth/Assistant/AnswerStream.h"

#include "Foundation/FatalError.h"
#include "Foundation/Limits.h"
#include "Foundation/Log.h"
#include "Foundation/Text.h"
#include "Platform/MainQueue.h"
#include "Quillmoth/Assistant/AnswerFaults.h"
#include "Quillmoth/Assistant/DataModel.h"
#include "Quillmoth/Chat/ChatDeltaReader.h"
#include "Quillmoth/Chat/ChatRequests.h"
#include "Quillmoth/Chat/ChatRoute.h"

#include <algorithm>
#include <utility>

namespace quillmoth {

namespace {

constexpr const char* kSafetySystemPrompt = "You are a helpful assistant.";
// Keeps the command field's text from being empty while a request runs.
constexpr const char* kBlank = " ";
// What the service sends behind the last piece of an answer. It ends nothing here.
constexpr const char* kClosingLine = "[DONE]";

std::string arrayText(const std::vector<ChatMessage>& messages) {
    std::string text = "[";
    for (const ChatMessage& message : messages) {
        if (text.size() > 1)
            text += ", ";
        text += message.role + ": " + message.content;
    }
    return text + "]";
}

} // namespace

/// One request, and what has come of its answer.
struct AnswerStream::Answer {
    /// What was sent, to be given back to the user on a transport error. None where a former answer was taken
    /// away to be replaced, which differs in some more points.
    std::optional<std::string> sentText;
    ChatDeltaReader reader = {};
    bool hasRecord = false;
    bool hasText = false;
    /// A record without a choice has been logged.
    bool hasToldOfEmptiness = false;
    /// The service has said that this was all of it.
    bool isClosed = false;
    /// Of its text so far, in bytes.
    std::size_t length = 0;
    /// It was cut.
    bool isTooLong = false;
    std::weak_ptr<EventSource> source = {};
};

void AnswerStream::send(std::string text) {
    if (text.empty()) {
        logLine("EXIT PROMPT EQUAL NIL");
        return;
    }
    const auto route = wantedChatRoute(platform_.userDefaults);
    if (!route) {
        model_._error = route.error().description;
        // A conversation that was begun for this text goes; one that has been held stays.
        if (model_._messages->size() == 1)
            model_._messages = std::vector<ChatMessage>();
        model_._command = std::move(text);
        return;
    }
    if (model_._messages->empty())
        model_.appendMessage("system", kSafetySystemPrompt);
    model_._command = std::string(kBlank);
    model_.appendMessage("user", text);
    model_._isLoading = true;
    StreamRequest request = makeStreamRequest(*route, model_._messages, platform_.userDefaults);
    model_._responseValue = std::string(kBlank);
    connect(std::move(request), std::move(text));
}

void AnswerStream::regenerate() {
    if (model_._isLoading)
        return;
    const auto route = wantedChatRoute(platform_.userDefaults);
    if (!route) {
        model_._error = route.error().description;
        return;
    }
    model_._command = std::string(kBlank);
    if (model_._messages->empty())
        fatalError("Nothing to regenerate: the conversation holds no message");
    model_._messages.mutate([](std::vector<ChatMessage>& messages) { messages.pop_back(); });
    model_._error = std::string();
    model_._isLoading = true;
    logUserText(arrayText(model_._messages));
    StreamRequest request = makeStreamRequest(*route, model_._messages, platform_.userDefaults);
    model_._responseValue = std::string();
    connect(std::move(request), std::nullopt);
}

bool AnswerStream::isRefused() {
    const auto route = wantedChatRoute(platform_.userDefaults);
    if (!route)
        model_._error = route.error().description;
    return !route;
}

void AnswerStream::cancel() {
    if (const auto source = model_._eventSource.get()) {
        source->disconnect();
        cancelled_.push_back(source);
    }
    model_._isLoading = false;
    model_._command = std::string();
    model_._isCancelRequest = true;
}

void AnswerStream::connect(StreamRequest streamRequest, std::optional<std::string> sentText) {
    const auto source =
        EventSource::create(platform_.mainQueue, platform_.urlSessions, platform_.operationQueues,
                            std::move(streamRequest.request), std::move(streamRequest.headers));
    model_._eventSource = source;
    const auto answer = std::make_shared<Answer>(Answer{.sentText = std::move(sentText), .source = source});
    const std::weak_ptr<DataModel> weak = model_.weak_from_this();
    source->onOpen([this, weak, answer] {
        if (const auto model = weak.lock())
            opened(answer);
    });
    source->onMessage([this, weak, answer](const std::optional<std::string>&,
                                           const std::optional<std::string>&,
                                           const std::optional<std::string>& data) {
        if (const auto model = weak.lock())
            decodeStreamChunk(data, answer);
    });
    source->onComplete(
        [this, weak, answer, which = source.get()](std::optional<int> statusCode, std::optional<bool>,
                                                   const std::optional<platform::URLError>& error) {
            const auto model = weak.lock();
            if (!model)
                return;
            completed(*answer, *which, statusCode, error);
            std::erase_if(cancelled_, [&](const auto& each) { return each.get() == which; });
        });
    source->connect();
}

void AnswerStream::opened(const std::shared_ptr<Answer>& answer) {
    const bool isRegenerated = !answer->sentText;
    if (isRegenerated)
        model_._responseValue = std::string();
    platform_.mainQueue.async([this, weak = model_.weak_from_this(), isRegenerated] {
        const auto model = weak.lock();
        if (!model)
            return;
        if (!isRegenerated)
            model_._responseValue = std::string();
        model_.appendMessage("assistant", "");
        model_._command = std::string(kBlank);
    });
}

void AnswerStream::decodeStreamChunk(const std::optional<std::string>& data,
                                     const std::shared_ptr<Answer>& answer) {
    if (!data)
        return;
    answer->isClosed = answer->isClosed || *data == kClosingLine;
    const ChatResponseDelta* chunk = answer->reader.read(*data);
    if (chunk == nullptr || !chunk->choices)
        return;
    answer->hasRecord = true;
    if (chunk->choices->empty()) {
        // Services send such pieces with their usage figures, or ahead of the answer.
        if (!std::exchange(answer->hasToldOfEmptiness, true))
            logLine("ignoring a piece of the answer without a choice");
        return;
    }
    const auto& delta = chunk->choices->front().delta;
    if (!delta)
        return;
    platform_.mainQueue.async(
        [this, weak = model_.weak_from_this(), answer, content = delta->content.value_or(std::string())] {
            if (const auto model = weak.lock())
                deliver(*answer, content);
        });
}

/// Takes what still fits; behind that nothing more is fetched.
std::string_view AnswerStream::withinLimit(Answer& answer, std::string_view content) {
    if (answer.isTooLong)
        return {};
    const std::string_view taken = prefixOfBytes(content, limits::kAnswer - answer.length);
    answer.length += taken.size();
    answer.isTooLong = taken.size() < content.size();
    const auto source = answer.source.lock();
    if (answer.isTooLong && source)
        source->disconnect();
    return taken;
}

void AnswerStream::deliver(Answer& answer, std::string_view whole) {
    const std::string_view content = withinLimit(answer, whole);
    answer.hasText = answer.hasText || !content.empty();
    const auto growResponse = [&] {
        model_._responseValue.grow([&](std::string& response) { response += content; });
    };
    const auto growMessage = [&] {
        model_._messages.grow(
            [&](std::vector<ChatMessage>& messages) { messages.back().content += content; });
    };
    const bool hasMessage = !model_._messages->empty();
    if (answer.sentText) {
        growResponse();
        if (hasMessage)
            growMessage();
        return;
    }
    // The conversation may have been closed while the piece was on its way.
    if (!hasMessage)
        return;
    growMessage();
    growResponse();
}

void AnswerStream::completed(const Answer& answer, const EventSource& source, std::optional<int> statusCode,
                             const std::optional<platform::URLError>& error) {
    if (model_._isCancelRequest) {
        model_._isCancelRequest = false;
        return;
    }
    if (const auto latest = model_._eventSource.get())
        latest->disconnect();
    classifyStatus(statusCode, answer.sentText.has_value());
    model_._isLoading = false;
    model_._command = std::string();
    if (error) {
        dropTwo();
        if (answer.sentText)
            model_._command = *answer.sentText;
        model_._error = error->localizedDescription;
    } else if (statusCode == 200) {
        checkAnswer(answer, source);
    }
}

void AnswerStream::classifyStatus(std::optional<int> statusCode, bool archives) {
    model_._error = statusFault(statusCode);
    if (!statusCode || statusCode == 200)
        return;
    const bool stored = archives && (statusCode == 400 || statusCode == 429);
    if (stored)
        model_._responseValue = "Error " + std::to_string(*statusCode);
    dropTwo();
    if (stored)
        model_.archiveConversation();
}

/// A 200 promises an answer. What is missing of it is told.
void AnswerStream::checkAnswer(const Answer& answer, const EventSource& source) {
    const auto lost = source.taskError();
    if (answer.isTooLong) {
        model_._error = tooLongFault();
    } else if (!answer.hasText) {
        giveTextBack(answer.sentText);
        model_._error = noTextFault(source.request().url, lost, answer.hasRecord);
    } else if (lost && !answer.isClosed) {
        model_._error = cutShortFault(*lost);
    }
}

/// Takes the question and the message for its answer away, and puts the question into the command field.
void AnswerStream::giveTextBack(const std::optional<std::string>& sentText) {
    const std::vector<ChatMessage>& messages = model_._messages;
    const std::size_t count = messages.size();
    if (count < 2 || messages.back().role != "assistant" || !messages.back().content.empty())
        return;
    const std::string text = sentText.value_or(messages[count - 2].content);
    dropTwo();
    model_._command = text;
}

/// All there are where there are fewer: the conversation may have been closed meanwhile, or have come from
/// the history with less in it.
void AnswerStream::dropTwo() {
    model_._messages.mutate([](std::vector<ChatMessage>& messages) {
        messages.resize(messages.size() - std::min<std::size_t>(messages.size(), 2));
    });
}

} // namespace quillmoth
