#include "Quillmoth/Chat/ServiceAddresses.h"

#include "Foundation/ASCII.h"
#include "Foundation/Loopback.h"
#include "Foundation/Text.h"
#include "Foundation/URL.h"
#include "Platform/UserDefaults.h"

#include <cstdlib>

namespace quillmoth {

namespace {

constexpr const char* kForm = " is no address of the form https://host:port/path. Nothing was sent. ";
constexpr const char* kNoGateway =
    "There is no key yet, and no gateway to ask without one. Nothing was sent. Fill in your key in Settings.";

/// Where an address can be set, and what the user is told where it cannot be used. The address itself may
/// hold a password.
struct Source {
    const char* variable;
    const char* key;
    std::string_view builtIn;
    const char* unusable;
    const char* remedy;
};

constexpr Source kOpenAISource{
    .variable = "QUILLMOTH_OPENAI_BASE_URL",
    .key = "openAIBaseURL",
    .builtIn = kOpenAI,
    .unusable = "What is set as the server's address",
    .remedy = "Correct it in Settings.",
};
constexpr Source kGatewaySource{
    .variable = "QUILLMOTH_GATEWAY_BASE_URL",
    .key = "gatewayBaseURL",
    .builtIn = QUILLMOTH_GATEWAY_BASE_URL,
    .unusable = "What is set as \"gatewayBaseURL\" in the settings file",
    .remedy = "Correct it there.",
};

std::string withoutSlashes(std::string_view address) {
    return std::string(address.substr(0, address.find_last_not_of('/') + 1));
}

/// The address that counts, maybe an empty one.
Result<std::string> address(const Source& source, const platform::UserDefaults& userDefaults) {
    // Nothing in this process changes its environment.
    const char* variable = std::getenv(source.variable); // NOLINT(concurrency-mt-unsafe)
    const auto environment = trimmed(variable != nullptr ? std::string_view(variable) : std::string_view());
    if (!environment.empty()) {
        if (isServiceAddress(environment))
            return withoutSlashes(environment);
        return Error{std::string("What the environment variable ") + source.variable + " holds" + kForm +
                     "Correct it or unset it, and start Quillmoth again."};
    }
    const auto stored = userDefaults.object(source.key);
    const auto* text = stored ? std::get_if<std::string>(&*stored) : nullptr;
    const auto value = trimmed(text != nullptr ? std::string_view(*text) : std::string_view());
    if (!value.empty() && isServiceAddress(value))
        return withoutSlashes(value);
    // What is no text is no address either.
    if (!value.empty() || (stored && text == nullptr))
        return Error{std::string(source.unusable) + kForm + source.remedy};
    return withoutSlashes(source.builtIn);
}

} // namespace

bool isServiceAddress(std::string_view address) {
    const auto url = isASCII(address) ? URL::parse(address, {}) : std::nullopt;
    const bool isWhole = url && url->isWeb() && !url->userInfo && !url->query && !url->fragment;
    // A name that a name server may know.
    return isWhole && url->host->find_first_of("%!$&'()*+,;=") == std::string::npos &&
           (!url->port || url->portNumber());
}

Result<std::string> openAIAddress(const platform::UserDefaults& userDefaults) {
    return address(kOpenAISource, userDefaults);
}

Result<std::string> gatewayAddress(const platform::UserDefaults& userDefaults) {
    auto result = address(kGatewaySource, userDefaults);
    if (result && result->empty())
        return Error{kNoGateway};
    return result;
}

std::optional<std::string> unencryptedOrigin(std::string_view address) {
    const auto url = URL::parse(address, {});
    if (!url || !url->isWeb() || !equalIgnoringASCIICase(*url->scheme, "http"))
        return std::nullopt;
    const std::string host = lowercasedASCII(*url->host);
    if (isLoopbackHost(host))
        return std::nullopt;
    return "http://" + host + ":" + std::to_string(url->portNumber().value_or(80));
}

} // namespace quillmoth
