#pragma once

#include <cstddef>
#include <string>

/// What the writing process writes, and the driver expects to find.
namespace quillmoth::test {

constexpr const char* kReplaced[] = {"presets", "history"};
constexpr const char* kJournal = "journal";
constexpr const char* kDefaults = "defaults.json";
constexpr const char* kCount = "count";

/// The content of a file when it is saved for the `number`th time: of another length each time, and up to
/// some 200 KB, so that it takes a few writes.
inline std::string savedContent(std::size_t number) {
    const std::string name = std::to_string(number);
    return name + '\n' + std::string(number * 7919 % 200'000, static_cast<char>('a' + number % 26)) + '\n' +
           name;
}

inline std::string journalEntry(std::size_t number) {
    return std::to_string(number) + ' ' + std::string(number * 31 % 500, 'j') + '\n';
}

} // namespace quillmoth::test
