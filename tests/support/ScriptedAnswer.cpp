#include "tests/support/ScriptedAnswer.h"

#include "Foundation/JSONWriter.h"

#include <algorithm>
#include <random>

namespace quillmoth::test {

namespace {

/// What stands in a whole answer beside the choices.
void writeResponseFields(JSONWriter& writer) {
    for (const char* field : {"id", "object", "model"}) {
        writer.key(field);
        writer.value("scripted");
    }
    writer.key("created");
    writer.value(std::int64_t{1700000000});
    writer.key("usage");
    writer.beginObject();
    writer.endObject();
}

std::string choicesRecord(const char* member, std::string_view content) {
    std::string json;
    JSONWriter writer(json);
    const bool isWhole = std::string_view(member) == "message";
    writer.beginObject();
    if (isWhole)
        writeResponseFields(writer);
    writer.key("choices");
    writer.beginArray();
    writer.beginObject();
    writer.key(member);
    writer.beginObject();
    if (isWhole) {
        writer.key("role");
        writer.value("assistant");
    }
    writer.key("content");
    writer.value(content);
    writer.endObject();
    writer.key("index");
    writer.value(std::int64_t{0});
    writer.endObject();
    writer.endArray();
    writer.endObject();
    return json;
}

} // namespace

std::string chatEvent(std::string_view content) {
    return "data: " + choicesRecord("delta", content) + "\n\n";
}

std::string chatResponse(std::string_view content) {
    return choicesRecord("message", content);
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
