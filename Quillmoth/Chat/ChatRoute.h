#pragma once

#include "Foundation/Result.h"

#include <string>

namespace quillmoth::platform {
class UserDefaults;
}

/// Where a conversation goes, and whether it may. Settings are read from the defaults store at each call.
namespace quillmoth {

struct ChatRoute {
    /// Scheme, host, port and path prefix, without a slash at the end.
    std::string address;
    /// Empty on the way to the gateway.
    std::string key;
};

/// The route of the next request. Fails where nothing may be sent, in words for the user: the address that is
/// set cannot be used, there is none, or the key would go unencrypted to a server that the user has not
/// agreed to, or the key is there and cannot be read for now. An address of the chat service that cannot be
/// used refuses also what would go to the gateway.
[[nodiscard]] Result<ChatRoute> chatRoute(const platform::UserDefaults& userDefaults);

/// The same for what the user asks for now. Where the key cannot be read, the desktop may ask the user for
/// what it takes; it fails all the same, and later tries succeed.
[[nodiscard]] Result<ChatRoute> wantedChatRoute(platform::UserDefaults& userDefaults);

/// Whether the user has agreed that the key goes unencrypted to `origin`, as unencryptedOrigin() gives it.
[[nodiscard]] bool sendsKeyUnencrypted(const platform::UserDefaults& userDefaults, const std::string& origin);
void setSendsKeyUnencrypted(platform::UserDefaults& userDefaults, const std::string& origin, bool agreed);

} // namespace quillmoth
