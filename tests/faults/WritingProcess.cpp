// Saves files as the program does, until it is killed, and says what it does on standard output:
//   ask NUMBER                  all files are about to be saved for this time
//   done NAME NUMBER            the file is on the disk
//   fail NAME NUMBER WORDS
//   all NUMBER                  all that was asked for up to here has been done
// Usage: writing-process FOLDER FIRST-NUMBER [LAST-NUMBER]

#include "Platform/Posix/FileUserDefaults.h"
#include "Platform/Posix/FileWriter.h"

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>

#include <unistd.h>

using namespace quillmoth;

namespace {

/// The content of a file when it is saved for the `number`th time: of another length each time, and up to
/// some 200 KB, so that it takes a few writes. saving_faults.py expects these.
std::string savedContent(std::size_t number) {
    const std::string name = std::to_string(number);
    return name + '\n' + std::string(number * 7919 % 200'000, static_cast<char>('a' + number % 26)) + '\n' +
           name;
}

std::string journalEntry(std::size_t number) {
    return std::to_string(number) + ' ' + std::string(number * 31 % 500, 'j') + '\n';
}

/// In one piece, from whichever thread.
void say(const std::string& line) {
    const std::string whole = line + '\n';
    if (write(STDOUT_FILENO, whole.data(), whole.size()) < 0)
        std::_Exit(1);
}

platform::FileWriter::Done sayWhen(const char* name, std::size_t number) {
    return [name, number](const Result<void>& result) {
        const std::string what = std::string(name) + ' ' + std::to_string(number);
        say(result ? "done " + what : "fail " + what + ' ' + result.error().description);
    };
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 3)
        return 2;
    const std::string folder = std::string(argv[1]) + '/';
    const std::size_t first = std::strtoul(argv[2], nullptr, 10);
    const std::size_t last =
        argc > 3 ? std::strtoul(argv[3], nullptr, 10) : std::numeric_limits<std::size_t>::max();
    platform::FileWriter writer;
    platform::FileUserDefaults defaults(folder + "defaults.json", writer);
    defaults.setFaultHandler([](const std::string& words) { say("fail defaults.json 0 " + words); });
    for (std::size_t number = first; number <= last; ++number) {
        say("ask " + std::to_string(number));
        for (const char* name : {"presets", "history"})
            writer.replace(folder + name, savedContent(number), sayWhen(name, number));
        writer.append(folder + "journal", journalEntry(number), sayWhen("journal", number));
        defaults.set("count", static_cast<std::int64_t>(number));
        // Now and then it waits, so that some of what is saved is not replaced by the next.
        if (number % 3 == 0 || number == last) {
            writer.flush();
            say("all " + std::to_string(number));
        }
    }
    return 0;
}
