// A conversation to the service, and the answer back into the model.

#include "Foundation/FatalError.h"
#include "Foundation/Log.h"
#include "Platform/MainQueue.h"
#include "Quillmoth/Assistant/DataModel.h"
#include "Quillmoth/Chat/ChatRequests.h"

#include <utility>

namespace quillmoth {

namespace {

constexpr const char* kSafetySystemPrompt = "You are a helpful assistant.";
// Keeps the command field's text from being empty while a request runs.
constexpr const char* kBlank = " ";
// What the service sends behind the last piece of an answer. It ends nothing here.
constexpr const char* kClosingLine = "[DONE]";
constexpr const char* kTooLong = "Error 400: Bad request. Your request is too long.";
constexpr const char* kInvalidKey = "Error 401: Your API key is invalid, Please check again.";
constexpr const char* kNoModel = "Error 404: The model does not exist.";
constexpr const char* kRateLimit =
    "Error 429: Rate limit reached for requests.\n"
    "The most likely cause is you have spent all of your OpenAI free tokens, To upgrade to a OpenAI paid "
    "plan, "
    "visit https://platform.openai.com/account/billing , set up a paid account, add a credit or debit card, "
    "and "
    "generate a new API key if your old one was generated before the upgrade.\n"
    "If you have already upgraded to a paid plan before, ensure that you have not reached your monthly "
    "limit.";

std::string errorText(std::optional<int> statusCode) {
    if (!statusCode)
        return "No internet connection";
    switch (*statusCode) {
    case 200:
        return "";
    case 400:
        return kTooLong;
    case 401:
        return kInvalidKey;
    case 404:
        return kNoModel;
    case 429:
        return kRateLimit;
    default:
        return "Error " + std::to_string(*statusCode);
    }
}

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

/// The points in which the two ways of starting a stream differ.
struct DataModel::StreamCallbacks {
    /// Run in the callback itself, before its work is posted.
    std::function<void(DataModel&)> beforeOpenHop;
    /// Run in the posted work, first.
    std::function<void(DataModel&)> inOpenHop;
    void (DataModel::*append)(const std::string& piece);
    /// What was sent, to be given back to the user on a transport error.
    std::optional<std::string> sentText;
};

void DataModel::sendPrompt(std::string text) {
    if (text.empty()) {
        logLine("EXIT PROMPT EQUAL NIL");
        return;
    }
    if (_messages->empty())
        appendMessage("system", kSafetySystemPrompt);
    _command = std::string(kBlank);
    appendMessage("user", text);
    _isLoading = true;
    StreamRequest request = makeStreamRequest(_messages, platform_.userDefaults);
    _responseValue = std::string(kBlank);
    connectStream(std::move(request),
                  {
                      .beforeOpenHop = [](DataModel&) {},
                      .inOpenHop = [](DataModel& model) { model._responseValue = std::string(); },
                      .append = &DataModel::appendPiece,
                      .sentText = std::move(text),
                  });
}

void DataModel::regenerate() {
    if (_isLoading)
        return;
    _command = std::string(kBlank);
    if (_messages->empty())
        fatalError("Nothing to regenerate: the conversation holds no message");
    _messages.mutate([](std::vector<ChatMessage>& messages) { messages.pop_back(); });
    _error = std::string();
    _isLoading = true;
    logLine(arrayText(_messages));
    StreamRequest request = makeStreamRequest(_messages, platform_.userDefaults);
    _responseValue = std::string();
    connectStream(std::move(request),
                  {
                      .beforeOpenHop = [](DataModel& model) { model._responseValue = std::string(); },
                      .inOpenHop = [](DataModel&) {},
                      .append = &DataModel::appendRegeneratedPiece,
                      .sentText = std::nullopt,
                  });
}

void DataModel::connectStream(StreamRequest streamRequest, StreamCallbacks callbacks) {
    _eventSource = EventSource::create(platform_.mainQueue, platform_.urlSessions, platform_.operationQueues,
                                       std::move(streamRequest.request), std::move(streamRequest.headers));
    EventSource& source = *_eventSource.get();
    const std::weak_ptr<DataModel> weak = weak_from_this();

    source.onOpen([weak, before = std::move(callbacks.beforeOpenHop), in = std::move(callbacks.inOpenHop)] {
        const auto model = weak.lock();
        if (!model)
            return;
        before(*model);
        model->platform_.mainQueue.async([weak, in] {
            if (const auto model = weak.lock()) {
                in(*model);
                model->streamOpened();
            }
        });
    });
    const auto progress = std::make_shared<StreamProgress>();
    source.onMessage([weak, progress, append = callbacks.append](const std::optional<std::string>&,
                                                                 const std::optional<std::string>&,
                                                                 const std::optional<std::string>& data) {
        const auto model = weak.lock();
        if (!model)
            return;
        progress->isClosed = progress->isClosed || data == kClosingLine;
        const bool isRecord =
            model->decodeStreamChunk(data, [weak, progress, append](const std::string& content) {
                progress->hasText = progress->hasText || !content.empty();
                if (const auto model = weak.lock())
                    (model.get()->*append)(content);
            });
        progress->hasRecord = progress->hasRecord || isRecord;
    });
    source.onComplete([weak, progress, sentText = std::move(callbacks.sentText),
                       which = &source](std::optional<int> statusCode, std::optional<bool>,
                                        const std::optional<platform::URLError>& error) {
        const auto model = weak.lock();
        if (!model)
            return;
        if (model->finishStream(statusCode, error, sentText) && statusCode == 200)
            model->checkAnswer(*progress, *which, sentText);
        std::erase_if(model->cancelledSources_, [&](const auto& each) { return each.get() == which; });
    });
    source.connect();
}

void DataModel::streamOpened() {
    appendMessage("assistant", "");
    _command = std::string(kBlank);
}

bool DataModel::decodeStreamChunk(const std::optional<std::string>& data,
                                  const std::function<void(const std::string&)>& deliver) {
    if (!data)
        return false;
    const ChatResponseDelta* chunk = deltaReader_.read(*data);
    if (chunk == nullptr || !chunk->choices)
        return false;
    if (chunk->choices->empty())
        fatalError("A piece of the answer came with no choice in it");
    const auto& delta = chunk->choices->front().delta;
    if (!delta)
        return true;
    platform_.mainQueue.async(
        [deliver, content = delta->content.value_or(std::string())] { deliver(content); });
    return true;
}

void DataModel::appendPiece(const std::string& piece) {
    _responseValue.mutate([&](std::string& response) { response += piece; });
    if (!_messages->empty())
        _messages.mutate([&](std::vector<ChatMessage>& messages) { messages.back().content += piece; });
}

void DataModel::appendRegeneratedPiece(const std::string& piece) {
    if (_messages->empty())
        fatalError("A piece of the answer came with no message to take it");
    _messages.mutate([&](std::vector<ChatMessage>& messages) { messages.back().content += piece; });
    _responseValue.mutate([&](std::string& response) { response += piece; });
}

bool DataModel::finishStream(std::optional<int> statusCode, const std::optional<platform::URLError>& error,
                             const std::optional<std::string>& sentText) {
    if (_isCancelRequest) {
        _isCancelRequest = false;
        return false;
    }
    if (const auto source = _eventSource.get())
        source->disconnect();
    classifyStatus(statusCode, sentText.has_value());
    _isLoading = false;
    _command = std::string();
    if (!error)
        return true;
    dropTwo();
    if (sentText)
        _command = *sentText;
    _error = error->localizedDescription;
    return true;
}

void DataModel::classifyStatus(std::optional<int> statusCode, bool archives) {
    _error = errorText(statusCode);
    if (!statusCode || statusCode == 200)
        return;
    const bool stored = archives && (statusCode == 400 || statusCode == 429);
    if (stored)
        _responseValue = "Error " + std::to_string(*statusCode);
    dropTwo();
    if (stored)
        archiveConversation();
}

void DataModel::dropTwo() {
    if (_messages->size() < 2)
        fatalError("A failed request is to take two messages away, and there are " +
                   std::to_string(_messages->size()));
    _messages.mutate([](std::vector<ChatMessage>& messages) { messages.resize(messages.size() - 2); });
}

} // namespace quillmoth
