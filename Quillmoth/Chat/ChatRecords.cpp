#include "Quillmoth/Chat/ChatRecords.h"

#include "Foundation/JSONReader.h"
#include "Foundation/JSONWriter.h"
#include "Platform/UUIDSource.h"
#include "Quillmoth/Chat/ChatMessageJSON.h"

#include <utility>

namespace quillmoth {

static bool visitFields(auto& fields, RecordOf<ChatBody> auto& body) {
    return fields.required("model", body.model) && fields.required("messages", body.messages) &&
           fields.optional("temperature", body.temperature) && fields.optional("top_p", body.top_p) &&
           fields.optional("stream", body.stream) &&
           fields.optional("presence_penalty", body.presence_penalty) &&
           fields.optional("frequency_penalty", body.frequency_penalty);
}

static bool visitFields(auto& fields, RecordOf<ChatUsage> auto& usage) {
    return fields.optional("prompt_tokens", usage.promptTokens) &&
           fields.optional("completion_tokens", usage.completionTokens) &&
           fields.optional("total_tokens", usage.totalTokens);
}

static bool visitFields(auto& fields, RecordOf<Message> auto& message) {
    return fields.required("role", message.role) && fields.required("content", message.content);
}

static bool visitFields(auto& fields, RecordOf<ChatChoice> auto& choice) {
    return fields.required("message", choice.message) &&
           fields.optional("finish_reason", choice.finishReason) && fields.required("index", choice.index);
}

static bool visitFields(auto& fields, RecordOf<ChatResponse> auto& response) {
    return fields.required("id", response.id) && fields.required("object", response.object) &&
           fields.required("created", response.created) && fields.required("model", response.model) &&
           fields.required("usage", response.usage) && fields.required("choices", response.choices);
}

static bool visitFields(auto& fields, RecordOf<MessageDelta> auto& delta) {
    return fields.optional("role", delta.role) && fields.optional("content", delta.content);
}

static bool visitFields(auto& fields, RecordOf<ChatChoiceDelta> auto& choice) {
    return fields.optional("delta", choice.delta) && fields.optional("finish_reason", choice.finishReason) &&
           fields.optional("index", choice.index);
}

static bool visitFields(auto& fields, RecordOf<ChatResponseDelta> auto& delta) {
    return fields.optional("id", delta.id) && fields.optional("object", delta.object) &&
           fields.optional("created", delta.created) && fields.optional("model", delta.model) &&
           fields.optional("usage", delta.usage) && fields.optional("choices", delta.choices);
}

ChatMessage makeChatMessage(platform::UUIDSource& uuidSource, std::string role, std::string content) {
    return {.id = uuidSource.makeUUID(), .role = std::move(role), .content = std::move(content)};
}

void makeMissingIDs(std::vector<ChatMessage>& messages, platform::UUIDSource& uuidSource) {
    for (ChatMessage& message : messages) {
        if (!message.id)
            message.id = uuidSource.makeUUID();
    }
}

Result<std::string> writeJSON(const ChatBody& body) {
    return writeJSONText(body);
}

Result<std::string> writeJSON(const ChatMessage& message) {
    return writeJSONText(message);
}

Result<std::string> writeJSON(const ChatResponse& response) {
    return writeJSONText(response);
}

Result<std::string> writeJSON(const ChatResponseDelta& delta) {
    return writeJSONText(delta);
}

Result<ChatBody> readChatBody(std::string_view json, platform::UUIDSource& uuidSource) {
    auto body = readJSON<ChatBody>(json);
    if (body)
        makeMissingIDs(body->messages, uuidSource);
    return body;
}

Result<ChatMessage> readChatMessage(std::string_view json, platform::UUIDSource& uuidSource) {
    auto message = readJSON<ChatMessage>(json);
    if (message && !message->id)
        message->id = uuidSource.makeUUID();
    return message;
}

Result<ChatResponse> readChatResponse(std::string_view json) {
    return readJSON<ChatResponse>(json);
}

Result<ChatResponseDelta> readChatResponseDelta(std::string_view json) {
    return readJSON<ChatResponseDelta>(json);
}

} // namespace quillmoth
