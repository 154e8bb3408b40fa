#pragma once

#include "Foundation/Result.h"

#include <optional>
#include <string>
#include <string_view>

namespace quillmoth::platform {
class UserDefaults;
}

namespace quillmoth {

/// The built-in address of the chat-completions service.
inline constexpr std::string_view kOpenAI = "https://api.openai.com";

/// True for an http or https URL of scheme, host, and maybe a port and a path; nothing else may be in it.
[[nodiscard]] bool isServiceAddress(std::string_view address);

/// Scheme, host, port and path prefix of the chat-completions service, without a slash at the end. The
/// environment (QUILLMOTH_OPENAI_BASE_URL) comes before the defaults key (openAIBaseURL), and that before the
/// built-in value; an empty value counts as none. Fails, in words for the user, where the one that counts
/// cannot be used: no other takes its place.
[[nodiscard]] Result<std::string> openAIAddress(const platform::UserDefaults& userDefaults);

/// The same of the gateway (QUILLMOTH_GATEWAY_BASE_URL, gatewayBaseURL). Fails too where there is none, as
/// where the program was built without.
[[nodiscard]] Result<std::string> gatewayAddress(const platform::UserDefaults& userDefaults);

/// "http://host:port" of an address whose connections others can read: plain http that leaves the machine.
/// None for any other address.
[[nodiscard]] std::optional<std::string> unencryptedOrigin(std::string_view address);

} // namespace quillmoth
