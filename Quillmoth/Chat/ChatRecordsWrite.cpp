#include "Foundation/JSONWriter.h"
#include "Quillmoth/Chat/ChatMessageJSON.h"
#include "Quillmoth/Chat/ChatRecords.h"

namespace quillmoth {

void writeFields(JSONWriter& writer, const ChatMessage& message) {
    writer.field("role", message.role);
    writer.field("content", message.content);
}

// JSONWriter finds these by their arguments' namespace, so they cannot be in an unnamed one.

static void writeFields(JSONWriter& writer, const ChatBody& body) {
    writer.field("model", body.model);
    writer.field("messages", body.messages);
    writer.field("temperature", body.temperature);
    writer.field("top_p", body.top_p);
    writer.field("stream", body.stream);
    writer.field("presence_penalty", body.presence_penalty);
    writer.field("frequency_penalty", body.frequency_penalty);
}

static void writeFields(JSONWriter& writer, const ChatUsage& usage) {
    writer.field("prompt_tokens", usage.promptTokens);
    writer.field("completion_tokens", usage.completionTokens);
    writer.field("total_tokens", usage.totalTokens);
}

static void writeFields(JSONWriter& writer, const Message& message) {
    writer.field("role", message.role);
    writer.field("content", message.content);
}

static void writeFields(JSONWriter& writer, const ChatChoice& choice) {
    writer.field("message", choice.message);
    writer.field("finish_reason", choice.finishReason);
    writer.field("index", choice.index);
}

static void writeFields(JSONWriter& writer, const ChatResponse& response) {
    writer.field("id", response.id);
    writer.field("object", response.object);
    writer.field("created", response.created);
    writer.field("model", response.model);
    writer.field("usage", response.usage);
    writer.field("choices", response.choices);
}

static void writeFields(JSONWriter& writer, const MessageDelta& delta) {
    writer.field("role", delta.role);
    writer.field("content", delta.content);
}

static void writeFields(JSONWriter& writer, const ChatChoiceDelta& choice) {
    writer.field("delta", choice.delta);
    writer.field("finish_reason", choice.finishReason);
    writer.field("index", choice.index);
}

static void writeFields(JSONWriter& writer, const ChatResponseDelta& delta) {
    writer.field("id", delta.id);
    writer.field("object", delta.object);
    writer.field("created", delta.created);
    writer.field("model", delta.model);
    writer.field("usage", delta.usage);
    writer.field("choices", delta.choices);
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

} // namespace quillmoth
