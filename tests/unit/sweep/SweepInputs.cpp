#include "tests/unit/sweep/SweepInputs.h"

#include "Foundation/Text.h"

#include <fstream>
#include <limits>
#include <map>
#include <vector>

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

constexpr const char* kHotKey = "KeyboardShortcuts_showFloatingPanel";

constexpr std::string_view kKeys[] = {"saveFontSize",   "markdownOnStorage", "useCopyHack",
                                      "model",          "openapikey",        "openAIBaseURL",
                                      "gatewayBaseURL", "firstTime",         kHotKey};

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNumbers[] = {0, -1, 16, 13, 1e300, -1e300, kNaN, kInfinity};

/// A section of inputs.txt.
const std::vector<std::string>& inputs(const std::string& section) {
    static const auto all = [] {
        std::map<std::string, std::vector<std::string>> sections;
        std::ifstream file(QUILLMOTH_SOURCES "/tests/unit/sweep/inputs.txt");
        std::string name;
        for (std::string line; std::getline(file, line);) {
            if (line.starts_with("== "))
                name = line.substr(3);
            else
                sections[name].push_back(replacingAll(line, "\u00B6", "\n"));
        }
        return sections;
    }();
    return all.at(section);
}

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

std::string input(const std::string& section, Dice& dice) {
    return perhapsDamaged(dice.of(inputs(section)), dice);
}

std::string streamBytes(Dice& dice) {
    std::string bytes;
    for (std::size_t count = 1 + dice.below(3); count > 0; --count)
        bytes.append(dice.of(inputs("pieces"))).append("\n\n");
    return perhapsDamaged(bytes, dice);
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
        return {kHotKey, dice.of(inputs("hot keys"))};
    }
}

} // namespace quillmoth::sweep
