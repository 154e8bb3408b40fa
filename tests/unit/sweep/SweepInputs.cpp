#include "tests/unit/sweep/SweepInputs.h"

#include <limits>

namespace quillmoth::sweep {

namespace {

constexpr std::string_view kPlaceholder = "{selected text}";
constexpr std::string_view kDeep = "[[[[[[[[[[[[[[[[";

constexpr std::string_view kTexts[] = {
    "",         " ",  "a",       "ca",        ":a",         "Mail",     "Summary", "hello",        "a[0",
    "x]y",      "[]", "[a][b",   "[whom] b",  kPlaceholder, "\xFF\xFE", "😀 Topic", "\\\"quoted\\", "\n\n",
    "e\u0301[", "]]", "[ [ ] ]", "\u202Eabc", "null",       "-1"};

constexpr std::string_view kSigns[] = {"[",  "]",     "{",       "}",    "\"",  ",",    ":",      "null",
                                       "-1", "1e999", "\\u0000", "\xFF", kDeep, "\n\n", "data: ", "[DONE]"};

constexpr std::string_view kPresetFiles[] = {
    "",
    "[]",
    "[{}]",
    "{}",
    "null",
    "[1]",
    R"([{"emoji":"","name":"","prompt":""}])",
    R"([{"emoji":"x","name":"a","prompt":"a[0"},{"emoji":"x","name":"b","prompt":"x]y","promptType":"nonContext"}])",
    R"([{"id":"1","emoji":"x","name":"Call","prompt":"A [call] to [whom]","promptType":"nonContext"},)"
    R"({"id":"1","emoji":"x","name":"Mail","prompt":"Mail: {selected text}","promptType":"context"},)"
    R"({"emoji":"x","name":"Odd","prompt":"[","promptType":"other"}])",
    R"([{"emoji":"x","name":"ca","prompt":"[a][a]","systemPrompt":"s","promptType":"nonContext"},)"
    R"({"emoji":"x","name":"plain","prompt":"say it","promptType":"nonContext"}])",
};

constexpr std::string_view kHistoryFiles[] = {
    "",
    "[]",
    "[{}]",
    "{}",
    R"([{"topic":"none","message":[],"created":0}])",
    R"([{"topic":"answer","message":[{"role":"assistant","content":"a"}],"created":1},)"
    R"({"topic":"odd","message":[{"role":"","content":""}],"created":1e300}])",
    R"([{"topic":"two","message":[{"role":"user","content":"q"},{"role":"assistant","content":"a"}],"created":-1},)"
    R"({"topic":"whole","message":[{"role":"system","content":"s"},{"role":"user","content":"q"},)"
    R"({"role":"assistant","content":"a"}],"created":1}])",
    R"([{"topic":"system","message":[{"role":"system","content":"s"}],"created":"soon"}])",
};

constexpr std::string_view kPieces[] = {
    R"(data: {"choices":[{"delta":{"content":"a"},"index":0}]})",
    R"(data: {"choices":[{"delta":{"content":"b\n"},"index":0}]})",
    R"(data: {"choices":[{"delta":{"role":"assistant"},"index":0}]})",
    R"(data: {"choices":[],"usage":{"total_tokens":3}})",
    R"(data: {"choices":[{}]})",
    R"(data: {"choices":null})",
    R"(data: {"error":{"message":"no"}})",
    "data: [DONE]",
    "data: []",
    "event: x\nid: 1\nretry: 99999999999999999999",
    ": nothing",
    "<html>Log in</html>",
};

constexpr std::string_view kTopicAnswers[] = {
    R"({"id":"1","object":"o","created":1,"model":"m","usage":{},"choices":[]})",
    R"({"id":"1","object":"o","created":1,"model":"m","usage":{},"choices":[{"index":0,"message":{"role":"assistant",)"
    R"("content":"🌍 Topic"}}]})",
    R"({"error":{"message":"no"}})",
    "",
};

constexpr std::string_view kLinks[] = {
    "quillmoth://promptEditor",
    "quillmoth://x?data",
    "quillmoth://x?data=%7B%7D",
    "quillmoth://x?data=%FF",
    "quillmoth://x?data=%7B%22emoji%22%3A%22%22%2C%22name%22%3A%22N%22%2C%22prompt%22%3A%22a%5B0%22%7D",
    "quillmoth://"
    "x?data=%7B%22emoji%22%3A%22%22%2C%22name%22%3A%22N%22%2C%22prompt%22%3A%22%5Ba%5D%22%2C%22promptType%22"
    "%3A%22nonContext%22%7D",
    "quillmoth:?data=[]",
    "quillmoth://:x/?data=1",
    "https://quillmoth.example/?data=1",
    "",
};

constexpr std::string_view kHotKeys[] = {
    R"({"carbonKeyCode":49,"carbonModifiers":2048})",
    R"({"carbonKeyCode":-1,"carbonModifiers":2048})",
    R"({"carbonKeyCode":4294967296,"carbonModifiers":-9223372036854775808})",
    R"({"carbonKeyCode":65536,"carbonModifiers":9223372036854775807})",
    R"({"carbonKeyCode":1e400})",
    "[",
    ""};

constexpr const char* kHotKey = "KeyboardShortcuts_showFloatingPanel";

constexpr std::string_view kKeys[] = {"saveFontSize",   "markdownOnStorage", "useCopyHack",
                                      "model",          "openapikey",        "openAIBaseURL",
                                      "gatewayBaseURL", "firstTime",         kHotKey};

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNumbers[] = {0, -1, 16, 13, 1e300, -1e300, kNaN, kInfinity};

std::string perhapsDamaged(std::string_view bytes, Dice& dice) {
    return dice.once(4) ? damaged(std::string(bytes), dice) : std::string(bytes);
}

} // namespace

std::string text(Dice& dice) {
    return std::string(dice.of(kTexts));
}

std::string damaged(std::string bytes, Dice& dice) {
    const std::size_t place = dice.below(bytes.size() + 1);
    switch (dice.below(4)) {
    case 0:
        bytes.resize(place);
        break;
    case 1:
        bytes.insert(place, dice.of(kSigns));
        break;
    case 2:
        bytes.insert(place, bytes.substr(0, 64));
        break;
    default:
        bytes.erase(place, 1 + dice.below(8));
        break;
    }
    return bytes;
}

std::string presetsFile(Dice& dice) {
    return perhapsDamaged(dice.of(kPresetFiles), dice);
}

std::string historyFile(Dice& dice) {
    return perhapsDamaged(dice.of(kHistoryFiles), dice);
}

std::string link(Dice& dice) {
    return perhapsDamaged(dice.of(kLinks), dice);
}

std::string streamBytes(Dice& dice) {
    std::string bytes;
    for (std::size_t count = 1 + dice.below(3); count > 0; --count)
        bytes.append(dice.of(kPieces)).append("\n\n");
    return perhapsDamaged(bytes, dice);
}

std::string topicAnswer(Dice& dice) {
    return perhapsDamaged(dice.of(kTopicAnswers), dice);
}

int status(Dice& dice) {
    constexpr int kStatuses[] = {200, 200, 200, 201, 204, 301, 400, 401, 404, 429, 500, 503, 0, -1, 999};
    return dice.of(kStatuses);
}

std::pair<std::string, platform::DefaultsValue> setting(Dice& dice) {
    const std::string key(dice.of(kKeys));
    switch (dice.below(5)) {
    case 0:
        return {key, dice.once(2)};
    case 1:
        return {key, dice.of(kNumbers)};
    case 2:
        return {key, static_cast<std::int64_t>(dice.below(100)) - 50};
    case 3:
        return {key, text(dice)};
    default:
        return {kHotKey, std::string(dice.of(kHotKeys))};
    }
}

} // namespace quillmoth::sweep
