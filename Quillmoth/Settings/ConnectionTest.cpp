#include "Quillmoth/Settings/ConnectionTest.h"

#include "Foundation/JSONReader.h"
#include "Foundation/Limits.h"
#include "Platform/MainQueue.h"
#include "Platform/UserDefaults.h"
#include "Quillmoth/Chat/ChatRoute.h"
#include "Quillmoth/Chat/ServiceAddresses.h"
#include "Quillmoth/Settings/SettingsModel.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace quillmoth {

namespace {

constexpr double kAnswerSeconds = 15;

using Answer = ConnectionTest::Answer;

struct ModelEntry {
    std::string id;
};

struct ModelList {
    std::vector<ModelEntry> data;
};

Answer listAnswer(const std::string& server, const std::string& model, bool hasKey, std::string_view json) {
    const auto list = readJSON<ModelList>(json);
    if (!list)
        return {.text = server + " answered, but not as an OpenAI-compatible server does."};
    const auto count = list->data.size();
    const std::string reached = "Connected to " + server + ". It offers " + std::to_string(count) +
                                (count == 1 ? " model" : " models");
    const bool offersModel = std::any_of(list->data.begin(), list->data.end(),
                                         [&](const ModelEntry& entry) { return entry.id == model; });
    if (!offersModel)
        return {.text = reached + ", but not “" + model + "”."};
    if (!hasKey)
        return {.text =
                    reached + ". Fill in a key to use it: without one Quillmoth does not ask this server."};
    return {.isGood = true, .text = reached + ", “" + model + "” among them."};
}

Answer statusAnswer(const std::string& server, int status, bool hasKey) {
    const std::string code = " (" + std::to_string(status) + ").";
    if (status == 401 || status == 403)
        return {.text = server + (hasKey ? " refused the key" : " asks for a key") + code};
    if (status == 404 || status == 405)
        return {.text = server + " has no list of models" + code + " Check the path of the address."};
    if (status == 429)
        return {.text = server + " takes no more requests for the moment" + code};
    return {.text = server + " answered with an error" + code};
}

} // namespace

bool visitFields(JSONFields& fields, ModelEntry& entry) {
    return fields.required("id", entry.id);
}

bool visitFields(JSONFields& fields, ModelList& list) {
    return fields.required("data", list.data);
}

ConnectionTest::Answer connectionAnswer(const std::string& server, const std::string& model, bool hasKey,
                                        const std::optional<std::string>& data,
                                        const std::optional<platform::URLResponse>& response,
                                        const std::optional<platform::URLError>& error) {
    if (error && error->code == platform::URLError::Code::tooLarge)
        return {.text =
                    "The list of models of " + server + " could not be read: " + error->localizedDescription};
    if (error || !response || !response->statusCode)
        return {.text = "Could not connect to " + server + ": " +
                        (error ? error->localizedDescription : "there was no answer.")};
    if (*response->statusCode != 200)
        return statusAnswer(server, *response->statusCode, hasKey);
    return listAnswer(server, model, hasKey, data.value_or(""));
}

ConnectionTest::ConnectionTest(const platform::Platform& platform)
    : platform_(platform), self_(std::make_shared<ConnectionTest*>(this)) {}

ConnectionTest::~ConnectionTest() {
    if (task_)
        task_->cancel();
}

void ConnectionTest::start(Completion completion) {
    if (task_)
        task_->cancel();
    completion_ = std::move(completion);
    const auto number = ++number_;
    const auto deliver = [mainQueue = &platform_.mainQueue, weak = std::weak_ptr(self_),
                          number](Answer answer) {
        mainQueue->async([weak, number, answer = std::move(answer)] {
            if (const auto self = weak.lock())
                (*self)->finish(number, answer);
        });
    };
    const auto address = openAIAddress(platform_.userDefaults);
    if (!address) {
        deliver({.text = address.error().description});
        return;
    }
    const SettingsModel settings(platform_.userDefaults);
    const std::string key = settings.apiKey();
    const bool hasKey = !key.empty() || !settings.keyObstacle().empty();
    if (const auto route = wantedChatRoute(platform_.userDefaults); hasKey && !route) {
        deliver({.text = route.error().description});
        return;
    }
    const std::string server = *address;
    platform::URLRequest request;
    request.url = server + "/v1/models";
    request.timeoutInterval = kAnswerSeconds;
    request.largestAnswer = limits::kModelList;
    if (!key.empty())
        request.addValue("Bearer " + key, "Authorization");
    task_ = platform_.urlSessions.sharedSession()->dataTask(
        request, [deliver, server, model = settings.model(),
                  hasKey = !key.empty()](const std::optional<std::string>& data,
                                         const std::optional<platform::URLResponse>& response,
                                         const std::optional<platform::URLError>& error) {
            deliver(connectionAnswer(server, model, hasKey, data, response, error));
        });
    task_->resume();
}

void ConnectionTest::finish(std::uint64_t number, const Answer& answer) {
    if (number != number_)
        return;
    task_.reset();
    if (const auto completion = std::exchange(completion_, nullptr))
        completion(answer);
}

} // namespace quillmoth
