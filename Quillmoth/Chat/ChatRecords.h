#pragma once

#include "Foundation/Result.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmoth::platform {
class UUIDSource;
}

/// The JSON records of a chat-completions endpoint. An optional field without a value is left out when
/// writing and reads as absent from a missing key or null; a value of the wrong type, or a missing required
/// key, fails the whole record. Unknown keys are ignored.
namespace quillmoth {

/// One message of a conversation. Written as `role` and `content` only; `id` never leaves the process.
struct ChatMessage {
    std::optional<std::string> id;
    /// "system", "user" or "assistant".
    std::string role;
    std::string content;

    friend bool operator==(const ChatMessage&, const ChatMessage&) = default;
};

/// A message with a new id.
[[nodiscard]] ChatMessage makeChatMessage(platform::UUIDSource& uuidSource, std::string role,
                                          std::string content);

/// The body of a request.
struct ChatBody {
    std::string model;
    std::vector<ChatMessage> messages;
    std::optional<float> temperature;
    std::optional<float> top_p;
    std::optional<bool> stream;
    std::optional<float> presence_penalty;
    std::optional<float> frequency_penalty;

    friend bool operator==(const ChatBody&, const ChatBody&) = default;
};

/// Token counts.
struct ChatUsage {
    std::optional<std::int64_t> promptTokens;
    std::optional<std::int64_t> completionTokens;
    std::optional<std::int64_t> totalTokens;

    friend bool operator==(const ChatUsage&, const ChatUsage&) = default;
};

/// The answer within a ChatChoice.
struct Message {
    std::string role;
    std::string content;

    friend bool operator==(const Message&, const Message&) = default;
};

struct ChatChoice {
    Message message;
    std::optional<std::string> finishReason;
    std::int64_t index = 0;

    friend bool operator==(const ChatChoice&, const ChatChoice&) = default;
};

/// A whole answer in one piece.
struct ChatResponse {
    std::string id;
    std::string object;
    std::int64_t created = 0;
    std::string model;
    ChatUsage usage;
    std::vector<ChatChoice> choices;

    friend bool operator==(const ChatResponse&, const ChatResponse&) = default;
};

struct MessageDelta {
    std::optional<std::string> role;
    std::optional<std::string> content;

    friend bool operator==(const MessageDelta&, const MessageDelta&) = default;
};

struct ChatChoiceDelta {
    std::optional<MessageDelta> delta;
    std::optional<std::string> finishReason;
    std::optional<std::int64_t> index;

    friend bool operator==(const ChatChoiceDelta&, const ChatChoiceDelta&) = default;
};

/// One piece of a streamed answer.
struct ChatResponseDelta {
    std::optional<std::string> id;
    std::optional<std::string> object;
    std::optional<std::int64_t> created;
    std::optional<std::string> model;
    std::optional<ChatUsage> usage;
    std::optional<std::vector<ChatChoiceDelta>> choices;

    friend bool operator==(const ChatResponseDelta&, const ChatResponseDelta&) = default;
};

/// JSON text of a record. Fails where a text is not UTF-8.
[[nodiscard]] Result<std::string> writeJSON(const ChatBody& body);
[[nodiscard]] Result<std::string> writeJSON(const ChatMessage& message);
[[nodiscard]] Result<std::string> writeJSON(const ChatResponse& response);
[[nodiscard]] Result<std::string> writeJSON(const ChatResponseDelta& delta);

/// Reads one record from a whole JSON text.
[[nodiscard]] Result<ChatBody> readChatBody(std::string_view json, platform::UUIDSource& uuidSource);
[[nodiscard]] Result<ChatMessage> readChatMessage(std::string_view json, platform::UUIDSource& uuidSource);
[[nodiscard]] Result<ChatResponse> readChatResponse(std::string_view json);
[[nodiscard]] Result<ChatResponseDelta> readChatResponseDelta(std::string_view json);

} // namespace quillmoth
