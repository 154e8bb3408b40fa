#include "Quillmoth/Chat/ChatRoute.h"

#include "Platform/UserDefaults.h"
#include "Quillmoth/Chat/ChatRequests.h"
#include "Quillmoth/Chat/ServiceAddresses.h"

#include <utility>

namespace quillmoth {

namespace {

/// The origins that were agreed to, with a blank between them: no origin holds one.
constexpr const char* kOriginsKey = "unencryptedKeyOrigins";
constexpr const char* kRouteKeyKey = "openapikey";

std::string paddedOrigins(const platform::UserDefaults& userDefaults) {
    return " " + userDefaults.string(kOriginsKey).value_or("") + " ";
}

} // namespace

Result<ChatRoute> chatRoute(const platform::UserDefaults& userDefaults) {
    auto server = openAIAddress(userDefaults);
    if (!server)
        return server.error();
    // A key that cannot be read is not an absent one, for which the gateway would be asked.
    if (std::string obstacle = userDefaults.obstacle(kRouteKeyKey); !obstacle.empty())
        return Error{std::move(obstacle)};
    std::string key = keySetting(userDefaults);
    if (key.empty()) {
        auto gateway = gatewayAddress(userDefaults);
        if (!gateway)
            return gateway.error();
        return ChatRoute{.address = std::move(*gateway), .key = {}};
    }
    const auto origin = unencryptedOrigin(*server);
    if (origin && !sendsKeyUnencrypted(userDefaults, *origin))
        return Error{"The connection to " + *origin +
                     " is not encrypted: others on the way could read your key. Nothing was sent. Use an "
                     "address that begins with https, or agree to it in Settings."};
    return ChatRoute{.address = std::move(*server), .key = std::move(key)};
}

Result<ChatRoute> wantedChatRoute(platform::UserDefaults& userDefaults) {
    auto route = chatRoute(userDefaults);
    if (!route)
        userDefaults.makeReadable(kRouteKeyKey);
    return route;
}

bool sendsKeyUnencrypted(const platform::UserDefaults& userDefaults, const std::string& origin) {
    return paddedOrigins(userDefaults).find(" " + origin + " ") != std::string::npos;
}

void setSendsKeyUnencrypted(platform::UserDefaults& userDefaults, const std::string& origin, bool agreed) {
    if (sendsKeyUnencrypted(userDefaults, origin) == agreed)
        return;
    std::string origins = userDefaults.string(kOriginsKey).value_or("");
    if (agreed) {
        origins += (origins.empty() ? "" : " ") + origin;
    } else {
        const std::string padded = paddedOrigins(userDefaults);
        const std::size_t start = padded.find(" " + origin + " ");
        origins = padded.substr(0, start) + padded.substr(start + 1 + origin.size());
        origins = origins.size() > 2 ? origins.substr(1, origins.size() - 2) : "";
    }
    if (origins.empty())
        userDefaults.remove(kOriginsKey);
    else
        userDefaults.set(kOriginsKey, origins);
}

} // namespace quillmoth
