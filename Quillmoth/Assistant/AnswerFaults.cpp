#include "Quillmoth/Assistant/AnswerFaults.h"

#include "Foundation/Limits.h"
#include "Foundation/URL.h"

namespace quillmoth {

namespace {

constexpr const char* kTooLong = "Error 400: Bad request. Your request is too long.";
constexpr const char* kInvalidKey = "Error 401: Your API key is invalid, Please check again.";
constexpr const char* kNoModel = "Error 404: The model does not exist.";
constexpr const char* kRateLimit =
    "Error 429: Rate limit reached for requests.\n"
    "The most likely cause is you have spent all of your OpenAI free tokens, To upgrade to a OpenAI paid "
    "plan, "
    "visit https://platform.openai.com/account/billing , set up a paid account, add a credit or debit card, "
    "and "
    "generate a new API key if your old one was generated before the upgrade.\n"
    "If you have already upgraded to a paid plan before, ensure that you have not reached your monthly "
    "limit.";
constexpr const char* kCutShort =
    " The answer is not complete. What has come of it is kept; Ctrl+R asks for it again.";
constexpr const char* kSendAgain = " Your text is back in the field; Return sends it again.";
constexpr const char* kNoText = " sent an answer without text.";
constexpr const char* kNoService =
    " did not answer as a chat service does. Your text is back in the field. Check the address of the server "
    "in Settings, and whether this network wants you to log in first.";

/// Host and port of an address.
std::string serverOf(const std::string& address) {
    const auto url = URL::parse(address);
    if (!url || !url->host)
        return address;
    return *url->host + (url->port ? ":" + *url->port : "");
}

} // namespace

std::string statusFault(std::optional<int> statusCode) {
    if (!statusCode)
        return "No internet connection";
    switch (*statusCode) {
    case 200:
        return "";
    case 400:
        return kTooLong;
    case 401:
        return kInvalidKey;
    case 404:
        return kNoModel;
    case 429:
        return kRateLimit;
    default:
        return "Error " + std::to_string(*statusCode);
    }
}

std::string cutShortFault(const platform::URLError& lost) {
    return lost.localizedDescription + kCutShort;
}

std::string tooLongFault() {
    return "The answer is longer than " + std::to_string(limits::kAnswer / limits::kMegabyte) +
           " MB. What has come up to there is kept; the rest was not fetched.";
}

std::string noTextFault(const std::string& url, const std::optional<platform::URLError>& lost,
                        bool hasRecord) {
    std::string fault = lost ? lost->localizedDescription : serverOf(url);
    if (!lost)
        fault.append(hasRecord ? kNoText : kNoService);
    if (lost || hasRecord)
        fault.append(kSendAgain);
    return fault;
}

} // namespace quillmoth
