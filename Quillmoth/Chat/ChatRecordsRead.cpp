#include "Foundation/JSONReader.h"
#include "Platform/UUIDSource.h"
#include "Quillmoth/Chat/ChatMessageJSON.h"
#include "Quillmoth/Chat/ChatRecords.h"

namespace quillmoth {

bool readFields(JSONFields& fields, ChatMessage& message) {
    return fields.required("role", message.role) && fields.required("content", message.content) &&
           fields.optional("id", message.id);
}

// JSONReader finds these by their arguments' namespace, so they cannot be in an unnamed one.

static bool readFields(JSONFields& fields, ChatBody& body) {
    return fields.required("model", body.model) && fields.required("messages", body.messages) &&
           fields.optional("temperature", body.temperature) && fields.optional("top_p", body.top_p) &&
           fields.optional("stream", body.stream) &&
           fields.optional("presence_penalty", body.presence_penalty) &&
           fields.optional("frequency_penalty", body.frequency_penalty);
}

static bool readFields(JSONFields& fields, ChatUsage& usage) {
    return fields.optional("prompt_tokens", usage.promptTokens) &&
           fields.optional("completion_tokens", usage.completionTokens) &&
           fields.optional("total_tokens", usage.totalTokens);
}

static bool readFields(JSONFields& fields, Message& message) {
    return fields.required("role", message.role) && fields.required("content", message.content);
}

static bool readFields(JSONFields& fields, ChatChoice& choice) {
    return fields.required("message", choice.message) &&
           fields.optional("finish_reason", choice.finishReason) && fields.required("index", choice.index);
}

static bool readFields(JSONFields& fields, ChatResponse& response) {
    return fields.required("id", response.id) && fields.required("object", response.object) &&
           fields.required("created", response.created) && fields.required("model", response.model) &&
           fields.required("usage", response.usage) && fields.required("choices", response.choices);
}

static bool readFields(JSONFields& fields, MessageDelta& delta) {
    return fields.optional("role", delta.role) && fields.optional("content", delta.content);
}

static bool readFields(JSONFields& fields, ChatChoiceDelta& choice) {
    return fields.optional("delta", choice.delta) && fields.optional("finish_reason", choice.finishReason) &&
           fields.optional("index", choice.index);
}

static bool readFields(JSONFields& fields, ChatResponseDelta& delta) {
    return fields.optional("id", delta.id) && fields.optional("object", delta.object) &&
           fields.optional("created", delta.created) && fields.optional("model", delta.model) &&
           fields.optional("usage", delta.usage) && fields.optional("choices", delta.choices);
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
