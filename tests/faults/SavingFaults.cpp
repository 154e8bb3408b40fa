// Kills a process with SIGKILL while it saves files, and makes its system calls fail: each file must be the
// old one or the new one. Prints one line with the figures; ends with 1 where a file was neither.
//
// saving-faults [--rounds N] [--calls N] [--seed N]
//   --calls  how many calls of a kind are tried as the first to fail, 8 by default

#include "Platform/Posix/DefaultsFile.h"
#include "tests/faults/ChildReport.h"
#include "tests/faults/SavedFiles.h"
#include "tests/integration/platform/TemporaryFolder.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <random>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace quillmoth::test {

namespace {

struct Figures {
    std::size_t oldFiles = 0;
    std::size_t newFiles = 0;
    std::size_t faults = 0;
    std::size_t told = 0;
    std::size_t wrong = 0;
};

class Driver {
public:
    explicit Driver(unsigned seed) : random_(seed) {}

    void killOnce(const TemporaryFolder& folder);
    void failOnce(const std::string& call, int error, std::size_t from, bool once);

    Figures figures;

private:
    void expect(bool holds, const std::string& what) {
        if (holds)
            return;
        ++figures.wrong;
        std::cerr << where_ << ": " << what << std::endl;
    }

    void checkReplaced(const TemporaryFolder& folder, const ChildReport& report, const std::string& name);
    void checkJournal(const TemporaryFolder& folder, const ChildReport& report);
    void checkDefaults(const TemporaryFolder& folder, const ChildReport& report);
    void checkFailed(const TemporaryFolder& folder, const ChildReport& report, const std::string& call,
                     int error);

    std::mt19937 random_;
    std::string where_;
    std::size_t round_ = 0;
    /// The number with which the files were last saved before this round.
    std::size_t before_ = 0;
};

void Driver::checkReplaced(const TemporaryFolder& folder, const ChildReport& report,
                           const std::string& name) {
    const std::string content = contentOf(folder.path(name));
    const std::size_t number = std::strtoul(content.c_str(), nullptr, 10);
    const auto done = report.done.find(name);
    const std::size_t least = done == report.done.end() ? 0 : done->second;
    ++(number <= before_ ? figures.oldFiles : figures.newFiles);
    expect(content == savedContent(number), name + " is torn");
    expect(number >= least && number <= report.asked,
           name + " holds " + std::to_string(number) + ", and " + std::to_string(least) + " was on the disk");
}

void Driver::checkJournal(const TemporaryFolder& folder, const ChildReport& report) {
    const std::string content = contentOf(folder.path(kJournal));
    std::string asked;
    std::size_t least = 0;
    const auto done = report.done.find(kJournal);
    for (std::size_t number = before_ + 1; number <= report.asked; ++number) {
        asked += journalEntry(number);
        if (done != report.done.end() && number == done->second)
            least = asked.size();
    }
    expect(asked.starts_with(content), "the journal is no beginning of what was appended");
    expect(content.size() >= least, "the journal has lost what was on the disk");
}

void Driver::checkDefaults(const TemporaryFolder& folder, const ChildReport& report) {
    const auto content = platform::DefaultsFile(folder.path(kDefaults)).read();
    expect(content.condition == platform::DefaultsFile::Condition::sound, "the settings are torn");
    const auto count = content.object.value(kCount, std::size_t{0});
    ++(count <= before_ ? figures.oldFiles : figures.newFiles);
    expect(count >= report.all && count <= report.asked, "the settings hold " + std::to_string(count));
}

void Driver::killOnce(const TemporaryFolder& folder) {
    where_ = "round " + std::to_string(++round_);
    std::error_code ignored;
    std::filesystem::remove(folder.path(kJournal), ignored);
    const auto delay = std::chrono::microseconds(std::uniform_int_distribution<int>(0, 40'000)(random_));
    const ChildReport report = runChild(
        {.program = QUILLMOTH_WRITING_PROCESS, .arguments = {folder.path(), std::to_string(before_ + 1)}},
        [delay](int process) {
            std::this_thread::sleep_for(delay);
            kill(process, SIGKILL);
        });
    for (const char* name : kReplaced)
        checkReplaced(folder, report, name);
    checkJournal(folder, report);
    checkDefaults(folder, report);
    before_ = report.asked;
}

void Driver::checkFailed(const TemporaryFolder& folder, const ChildReport& report, const std::string& call,
                         int error) {
    for (const auto& [name, words] : report.failed)
        expect(words.find(std::generic_category().message(error)) != std::string::npos, name + ": " + words);
    for (const char* name : kReplaced) {
        const std::string content = contentOf(folder.path(name));
        const bool hasFailed = report.failed.contains(name);
        // The folder is synced when the new file is in place already.
        const bool mayBeNew = !hasFailed || call == "fsync";
        expect((content == savedContent(1) && hasFailed) || (content == savedContent(2) && mayBeNew),
               std::string(name) + " is neither the old file nor the new one");
    }
    expect(contentOf(folder.path(kJournal)) ==
               journalEntry(1) + (report.failed.contains(kJournal) ? "" : journalEntry(2)),
           "the journal holds part of what could not be appended");
    const auto content = platform::DefaultsFile(folder.path(kDefaults)).read();
    const auto count = content.object.value(kCount, 0);
    const bool hasFailed = report.failed.contains(kDefaults);
    expect((count == 1 && hasFailed) || (count == 2 && (!hasFailed || call == "fsync")),
           "the settings hold " + std::to_string(count));
    expect(folder.names() == std::vector<std::string>({kDefaults, "history", kJournal, "presets"}),
           "a temporary file is left");
}

void Driver::failOnce(const std::string& call, int error, std::size_t from, bool once) {
    where_ = call + (once ? " fails in its call " : " fails from its call ") + std::to_string(from) + ": " +
             std::generic_category().message(error);
    const TemporaryFolder folder;
    for (const char* name : kReplaced)
        setContent(folder.path(name), savedContent(1));
    setContent(folder.path(kJournal), journalEntry(1));
    setContent(folder.path(kDefaults), R"({"count": 1})");
    const ChildReport report = runChild(
        {.program = QUILLMOTH_WRITING_PROCESS,
         .arguments = {folder.path(), "2", "2"},
         .environment = {"LD_PRELOAD=" QUILLMOTH_FAULTY_CALLS, "QUILLMOTH_FAULT_FOLDER=" + folder.path(),
                         "QUILLMOTH_FAULT_CALL=" + call, "QUILLMOTH_FAULT_ERRNO=" + std::to_string(error),
                         "QUILLMOTH_FAULT_FROM=" + std::to_string(from),
                         "QUILLMOTH_FAULT_ONCE=" + std::string(once ? "1" : "")}});
    ++figures.faults;
    figures.told += report.failed.size();
    expect(from > 1 || !report.failed.empty(), "nothing has failed");
    checkFailed(folder, report, call, error);
}

int run(std::size_t rounds, std::size_t calls, unsigned seed) {
    const auto start = std::chrono::steady_clock::now();
    Driver driver(seed);
    const TemporaryFolder folder;
    for (const char* name : kReplaced)
        setContent(folder.path(name), savedContent(0));
    setContent(folder.path(kDefaults), R"({"count": 0})");
    for (std::size_t round = 0; round < rounds; ++round)
        driver.killOnce(folder);
    for (const char* call : {"open", "write", "fsync", "rename"}) {
        for (const int error : {ENOSPC, EIO, EROFS, EDQUOT}) {
            for (std::size_t from = 1; from <= calls; ++from) {
                driver.failOnce(call, error, from, false);
                // A file that cannot be made is written in place, where it can be opened the next time.
                if (call != std::string_view("open"))
                    driver.failOnce(call, error, from, true);
            }
        }
    }
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    const Figures& figures = driver.figures;
    std::cout << "faults: " << rounds << " rounds of kill -9 left " << figures.oldFiles << " old and "
              << figures.newFiles << " new files; of " << figures.faults << " failing disks " << figures.told
              << " failures were told; " << figures.wrong
              << " files were neither old nor new, or not as told (" << static_cast<int>(seconds.count())
              << " s, seed " << seed << ')' << std::endl;
    return figures.wrong == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

} // namespace quillmoth::test

int main(int argc, char** argv) {
    std::size_t rounds = 1000;
    std::size_t calls = 8;
    unsigned seed = std::random_device()();
    for (int place = 1; place + 1 < argc; place += 2) {
        const std::string_view option = argv[place];
        const unsigned long value = std::strtoul(argv[place + 1], nullptr, 10);
        if (option == "--rounds")
            rounds = value;
        else if (option == "--calls")
            calls = value;
        else if (option == "--seed")
            seed = static_cast<unsigned>(value);
    }
    return quillmoth::test::run(rounds, calls, seed);
}
