#include "tests/support/ScriptedAnswer.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <random>

namespace quillmoth::test {

namespace {

using json = nlohmann::ordered_json;

std::string written(const json& record) {
    return record.dump(-1, ' ', false, json::error_handler_t::replace);
}

} // namespace

std::string chatEvent(std::string_view content) {
    const json choice{{"delta", {{"content", content}}}, {"index", 0}};
    return "data: " + written({{"choices", json::array({choice})}}) + "\n\n";
}

std::string chatResponse(std::string_view content) {
    const json choice{{"message", {{"role", "assistant"}, {"content", content}}}, {"index", 0}};
    return written({{"id", "scripted"},
                    {"object", "scripted"},
                    {"model", "scripted"},
                    {"created", 1700000000},
                    {"usage", json::object()},
                    {"choices", json::array({choice})}});
}

ScriptedAnswer eventStream(std::vector<std::string> pieces) {
    ScriptedAnswer answer{.headers = {{"Content-Type", "text/event-stream"}, {"Cache-Control", "no-cache"}}};
    for (std::string& piece : pieces)
        answer.steps.push_back(Send{std::move(piece)});
    return answer;
}

ScriptedAnswer chatStream(const std::vector<std::string>& contents) {
    std::vector<std::string> pieces;
    pieces.reserve(contents.size() + 1);
    for (const std::string& content : contents)
        pieces.push_back(chatEvent(content));
    pieces.emplace_back("data: [DONE]\n\n");
    return eventStream(std::move(pieces));
}

ScriptedAnswer jsonAnswer(int status, std::string body) {
    return {.status = status,
            .headers = {{"Content-Type", "application/json"}},
            .steps = {Send{std::move(body)}},
            .framing = Framing::contentLength};
}

ScriptedAnswer redirectAnswer(int status, const std::string& location) {
    return {.status = status, .headers = {{"Location", location}}, .framing = Framing::contentLength};
}

ScriptedAnswer silentAnswer() {
    return {.steps = {WaitForClient{}}, .sendsHead = false};
}

ScriptedAnswer cutRandomly(ScriptedAnswer answer, std::uint32_t seed) {
    std::mt19937 random(seed);
    std::vector<Step> steps;
    for (Step& step : answer.steps) {
        const auto* send = std::get_if<Send>(&step);
        if (send == nullptr) {
            steps.push_back(std::move(step));
            continue;
        }
        for (std::string_view rest = send->bytes; !rest.empty();) {
            const std::size_t length = std::min<std::size_t>(rest.size(), 1 + random() % 24);
            steps.push_back(Send{std::string(rest.substr(0, length))});
            rest.remove_prefix(length);
        }
    }
    answer.steps = std::move(steps);
    return answer;
}

} // namespace quillmoth::test
