#include "Quillmoth/Chat/ChatRequests.h"

#include "Foundation/Limits.h"
#include "Foundation/Text.h"
#include "Platform/UserDefaults.h"

#include <utility>

namespace quillmoth {

namespace {

constexpr double kTimeoutInterval = 60.0;
constexpr std::string_view kCompletionsPath = "/v1/chat/completions";
constexpr std::string_view kGatewayPath = "/api/v1/chat/completions";
constexpr std::string_view kGatewayStreamPath = "/api/v1/chat/completions/stream";

std::string bearer(const std::string& key) {
    return "Bearer " + key;
}

platform::URLRequest makeRequest(const std::string& address, std::string_view path) {
    return {.url = address + std::string(path),
            .cachePolicy = platform::URLRequestCachePolicy::useProtocolCachePolicy,
            .timeoutInterval = kTimeoutInterval,
            .httpMethod = "GET",
            .headers = {},
            .httpBody = std::nullopt};
}

/// The body stays empty where a message cannot be written.
void complete(platform::URLRequest& request, const std::string& model,
              const std::vector<ChatMessage>& messages, bool stream) {
    request.addValue("application/json", "Content-Type");
    request.httpMethod = "POST";
    auto body = writeJSON(ChatBody{.model = model,
                                   .messages = messages,
                                   .temperature = 1.0F,
                                   .top_p = 1.0F,
                                   .stream = stream,
                                   .presence_penalty = 0.0F,
                                   .frequency_penalty = 0.0F});
    if (body)
        request.httpBody = std::move(*body);
}

} // namespace

std::string modelSetting(const platform::UserDefaults& userDefaults) {
    return userDefaults.string("model").value_or("gpt-3.5-turbo");
}

std::string_view withoutPastedBlanks(std::string_view key) {
    const auto inner = trimmed(key);
    return inner.empty() ? key : inner;
}

std::string keySetting(const platform::UserDefaults& userDefaults) {
    return std::string(withoutPastedBlanks(userDefaults.string("openapikey").value_or("")));
}

StreamRequest makeStreamRequest(const ChatRoute& route, const std::vector<ChatMessage>& messages,
                                const platform::UserDefaults& userDefaults) {
    auto request = makeRequest(route.address, route.key.empty() ? kGatewayStreamPath : kCompletionsPath);
    complete(request, modelSetting(userDefaults), messages, true);
    return {.request = std::move(request), .headers = {{"Authorization", bearer(route.key)}}};
}

Result<void> sendChatRequest(const std::vector<ChatMessage>& messages, const std::string& model,
                             platform::URLSession& session, const platform::UserDefaults& userDefaults,
                             platform::URLSession::CompletionHandler completion) {
    const auto route = chatRoute(userDefaults);
    if (!route)
        return route.error();
    auto request = makeRequest(route->address, route->key.empty() ? kGatewayPath : kCompletionsPath);
    if (!route->key.empty())
        request.addValue(bearer(route->key), "Authorization");
    complete(request, model, messages, false);
    request.largestAnswer = limits::kTopicAnswer;
    session.dataTask(request, std::move(completion))->resume();
    return {};
}

} // namespace quillmoth
