#pragma once

#include "Foundation/Result.h"
#include "Platform/URLSession.h"
#include "Quillmoth/Chat/ChatRecords.h"
#include "Quillmoth/Chat/ChatRoute.h"

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

/// The request for a streamed answer to `messages`, as chatRoute() leads it.
[[nodiscard]] StreamRequest makeStreamRequest(const ChatRoute& route,
                                              const std::vector<ChatMessage>& messages,
                                              const platform::UserDefaults& userDefaults);

/// Sends a request for a short answer in one piece (limits::kTopicAnswer), and returns at once. `completion`
/// is called once, on a queue of the session's. Fails where chatRoute() does; nothing is sent then, and
/// `completion` is not called.
[[nodiscard]] Result<void> sendChatRequest(const std::vector<ChatMessage>& messages, const std::string& model,
                                           platform::URLSession& session,
                                           const platform::UserDefaults& userDefaults,
                                           platform::URLSession::CompletionHandler completion);

} // namespace quillmoth
