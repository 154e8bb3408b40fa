#include "Quillmoth/Chat/ServiceAddresses.h"

#include "Foundation/ASCII.h"
#include "Foundation/Log.h"
#include "Foundation/Text.h"
#include "Foundation/URL.h"
#include "Platform/UserDefaults.h"
#include "Quillmoth/Chat/ChatRequests.h"

#include <cstdlib>
#include <optional>

namespace quillmoth {

namespace {

/// `value` as an address, or none where it is empty or not usable.
std::optional<std::string> checked(std::string_view value, const std::string& setting) {
    value = trimmed(value);
    if (value.empty())
        return std::nullopt;
    if (!isServiceAddress(value)) {
        // The value itself may hold a password.
        logLine("ignoring " + setting + ": not an address of the form https://host:port/path");
        return std::nullopt;
    }
    return std::string(value.substr(0, value.find_last_not_of('/') + 1));
}

std::string address(const char* variable, const char* key, std::string_view builtIn,
                    const platform::UserDefaults& userDefaults) {
    // Nothing in this process changes its environment.
    const char* environment = std::getenv(variable); // NOLINT(concurrency-mt-unsafe)
    if (environment != nullptr) {
        if (auto configured = checked(environment, variable))
            return *configured;
    }
    if (auto configured = checked(userDefaults.string(key).value_or(""), key))
        return *configured;
    return std::string(builtIn.substr(0, builtIn.find_last_not_of('/') + 1));
}

} // namespace

bool isServiceAddress(std::string_view address) {
    const auto url = isASCII(address) ? URL::parse(address, {}) : std::nullopt;
    const bool isWhole = url && url->isWeb() && !url->userInfo && !url->query && !url->fragment;
    // A name that a name server may know.
    return isWhole && url->host->find_first_of("%!$&'()*+,;=") == std::string::npos &&
           (!url->port || url->portNumber());
}

ServiceAddresses serviceAddresses(const platform::UserDefaults& userDefaults) {
    return {.openAI = address("QUILLMOTH_OPENAI_BASE_URL", "openAIBaseURL", kOpenAI, userDefaults),
            .gateway = address("QUILLMOTH_GATEWAY_BASE_URL", "gatewayBaseURL", QUILLMOTH_GATEWAY_BASE_URL,
                               userDefaults)};
}

} // namespace quillmoth
