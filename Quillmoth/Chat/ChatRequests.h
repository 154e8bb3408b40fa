#pragma once

#include "Platform/URLSession.h"
#include "Quillmoth/Chat/ChatRecords.h"

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillmoth::platform {
class UserDefaults;
}

/// How a conversation becomes an HTTP request. Settings are read from the defaults store at each call.
namespace quillmoth {

/// Scheme, host, port and path prefix of the two services, without a slash at the end. The environment
/// (QUILLMOTH_OPENAI_BASE_URL, QUILLMOTH_GATEWAY_BASE_URL) comes before the defaults keys (openAIBaseURL,
/// gatewayBaseURL), and those before the built-in values; an empty value counts as none.
struct ServiceAddresses {
    std::string openAI;
    std::string gateway;
};

[[nodiscard]] ServiceAddresses serviceAddresses(const platform::UserDefaults& userDefaults);

/// The `model` setting, "gpt-3.5-turbo" where it is missing.
[[nodiscard]] std::string modelSetting(const platform::UserDefaults& userDefaults);

/// The `openapikey` setting without the blanks and line ends that were pasted around it, empty where it is
/// missing. Blanks alone are a key, and stay.
[[nodiscard]] std::string keySetting(const platform::UserDefaults& userDefaults);

/// `key` as keySetting gives it.
[[nodiscard]] std::string_view withoutPastedBlanks(std::string_view key);

struct StreamRequest {
    platform::URLRequest request;
    /// For the event source.
    std::map<std::string, std::string> headers;
};

/// The request for a streamed answer to `messages`. An address that is no URL is a fatal fault.
[[nodiscard]] StreamRequest makeStreamRequest(const std::vector<ChatMessage>& messages,
                                              const platform::UserDefaults& userDefaults);

/// Sends a request for an answer in one piece, and returns at once. `completion` is called once, on a queue
/// of the session's.
void sendChatRequest(const std::vector<ChatMessage>& messages, const std::string& model,
                     platform::URLSession& session, const platform::UserDefaults& userDefaults,
                     platform::URLSession::CompletionHandler completion);

} // namespace quillmoth
