#include "Platform/Linux/Sway/SwayConfig.h"

#include "Foundation/ASCII.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <map>
#include <sstream>
#include <utility>
#include <vector>

namespace quillmoth::platform {

namespace {

using KeycodeOf = std::function<std::optional<std::uint32_t>(const std::string& name)>;
using Variables = std::map<std::string, std::string>;

/// The first name of each is the one that is written.
constexpr std::pair<std::string_view, keys::CarbonModifiers> kSwayModifiers[] = {
    {"shift", keys::kCarbonShift},   {"control", keys::kCarbonCommand}, {"mod1", keys::kCarbonOption},
    {"mod4", keys::kCarbonControl},  {"ctrl", keys::kCarbonCommand},    {"alt", keys::kCarbonOption},
    {"super", keys::kCarbonControl}, {"logo", keys::kCarbonControl}};
constexpr std::size_t kWrittenModifiers = 4;

/// Each variable by the longest of those names that it begins with.
std::string withVariables(std::string text, const Variables& variables) {
    for (auto sign = text.find('$'); sign != std::string::npos; sign = text.find('$', sign + 1)) {
        const std::string* best = nullptr;
        std::size_t length = 0;
        for (const auto& [name, value] : variables) {
            if (name.size() > length && text.compare(sign, name.size(), name) == 0) {
                best = &value;
                length = name.size();
            }
        }
        if (best)
            text.replace(sign, length, *best);
    }
    return text;
}

std::optional<SwayCombination> readCombination(const std::string& text, bool isCode,
                                               const KeycodeOf& keycodeOf) {
    SwayCombination combination;
    std::istringstream parts(text);
    for (std::string part; std::getline(parts, part, '+');) {
        const std::string small = lowercasedASCII(part);
        const auto* modifier = std::find_if(std::begin(kSwayModifiers), std::end(kSwayModifiers),
                                            [&](const auto& each) { return each.first == small; });
        if (modifier != std::end(kSwayModifiers)) {
            combination.modifiers |= modifier->second;
            continue;
        }
        std::optional<std::uint32_t> keycode;
        if (std::uint32_t number = 0;
            isCode && std::from_chars(part.data(), part.data() + part.size(), number).ec == std::errc())
            keycode = number;
        else if (!isCode)
            keycode = keycodeOf(part);
        // Of more keys than one, or of a modifier that hot keys do not know.
        if (!keycode || combination.keycode != 0)
            return std::nullopt;
        combination.keycode = *keycode;
    }
    return combination;
}

/// The command of a line that binds `wanted`.
std::optional<std::string> commandOf(std::istringstream& line, bool isCode, const SwayCombination& wanted,
                                     const KeycodeOf& keycodeOf) {
    std::string word;
    while (line >> word && word.starts_with("--")) {
    }
    if (readCombination(word, isCode, keycodeOf) != wanted)
        return std::nullopt;
    std::string command;
    std::getline(line >> std::ws, command);
    return command;
}

} // namespace

std::string writtenSwayCombination(const SwayCombination& combination) {
    constexpr std::string_view kWritten[kWrittenModifiers] = {"Shift", "Control", "Mod1", "Mod4"};
    std::string text;
    for (std::size_t index = 0; index < kWrittenModifiers; ++index) {
        if (combination.modifiers & kSwayModifiers[index].second)
            (text += kWritten[index]) += '+';
    }
    return text + std::to_string(combination.keycode);
}

std::optional<std::string> boundSwayCommand(std::string_view configuration, const SwayCombination& wanted,
                                            const KeycodeOf& keycodeOf) {
    Variables variables;
    std::optional<std::string> found;
    int depth = 0;
    std::istringstream lines{std::string(configuration)};
    for (std::string text; std::getline(lines, text);) {
        std::istringstream line(withVariables(text, variables));
        std::string word;
        line >> word;
        if (word == "set") {
            // Its own name is not to be replaced by what it was before.
            std::istringstream plain(text);
            std::string name;
            plain >> word >> name;
            line >> word;
            std::getline(line >> std::ws, variables[name]);
        } else if ((word == "bindsym" || word == "bindcode") && depth == 0) {
            if (auto command = commandOf(line, word == "bindcode", wanted, keycodeOf))
                found = std::move(command);
        } else if ((word == "unbindsym" || word == "unbindcode") && depth == 0) {
            if (commandOf(line, word == "unbindcode", wanted, keycodeOf))
                found.reset();
        }
        depth += static_cast<int>(std::count(text.begin(), text.end(), '{')) -
                 static_cast<int>(std::count(text.begin(), text.end(), '}'));
    }
    return found;
}

} // namespace quillmoth::platform
