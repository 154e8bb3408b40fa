#include "Quillmoth/Chat/ServiceAddresses.h"

#include "Foundation/Log.h"
#include "Foundation/Text.h"
#include "Platform/UserDefaults.h"
#include "Quillmoth/Chat/ChatRequests.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <optional>

namespace quillmoth {

namespace {

bool isUnreserved(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view("-._~").find(c) != std::string_view::npos;
}

bool consists(std::string_view text, std::string_view alsoAllowed) {
    return std::all_of(text.begin(), text.end(), [&](char c) {
        return isUnreserved(c) || alsoAllowed.find(c) != std::string_view::npos;
    });
}

/// Takes "http://" or "https://", in any case, from the front.
bool takeScheme(std::string_view& rest) {
    for (const std::string_view scheme : {"http://", "https://"}) {
        const auto front = rest.substr(0, scheme.size());
        if (std::equal(front.begin(), front.end(), scheme.begin(), scheme.end(), [](char given, char wanted) {
                return (given >= 'A' && given <= 'Z' ? given - 'A' + 'a' : given) == wanted;
            })) {
            rest.remove_prefix(scheme.size());
            return true;
        }
    }
    return false;
}

bool isHost(std::string_view host) {
    if (host.starts_with('['))
        return host.ends_with(']') && host.size() > 3 &&
               host.find_first_not_of("0123456789abcdefABCDEF:.", 1) == host.size() - 1;
    return !host.empty() && consists(host, "");
}

bool isPort(std::string_view port) {
    std::uint16_t number = 0;
    const auto result = std::from_chars(port.data(), port.data() + port.size(), number);
    return result.ec == std::errc() && result.ptr == port.data() + port.size() && number != 0;
}

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
    if (!takeScheme(address))
        return false;
    const auto pathStart = std::min(address.find('/'), address.size());
    const auto path = address.substr(pathStart);
    auto authority = address.substr(0, pathStart);
    const auto colon = authority.rfind(':');
    if (colon != std::string_view::npos && authority.find(']', colon) == std::string_view::npos) {
        if (!isPort(authority.substr(colon + 1)))
            return false;
        authority = authority.substr(0, colon);
    }
    // RFC 3986, 3.3: the characters of a path.
    return isHost(authority) && consists(path, "/%!$&'()*+,;=:@");
}

ServiceAddresses serviceAddresses(const platform::UserDefaults& userDefaults) {
    return {.openAI = address("QUILLMOTH_OPENAI_BASE_URL", "openAIBaseURL", kOpenAI, userDefaults),
            .gateway = address("QUILLMOTH_GATEWAY_BASE_URL", "gatewayBaseURL", QUILLMOTH_GATEWAY_BASE_URL,
                               userDefaults)};
}

} // namespace quillmoth
