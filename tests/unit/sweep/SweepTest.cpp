#include "Foundation/FatalError.h"
#include "Foundation/Log.h"
#include "tests/unit/sweep/SweptProgram.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <deque>
#include <iostream>
#include <stdexcept>

namespace quillmoth::sweep {

namespace {

constexpr std::uint64_t kSteps = 100'000;
/// So many of the things done last are told with a fault.
constexpr std::size_t kTrail = 40;

std::uint64_t fromEnvironment(const char* variable, std::uint64_t otherwise) {
    const char* value = std::getenv(variable);
    return value != nullptr ? std::strtoull(value, nullptr, 10) : otherwise;
}

/// The files of the next start: those of the former one, or others.
Files filesOfNextStart(const Files& former, Dice& dice) {
    // A history that grows for ever only takes time.
    Files files = dice.once(3) ? Files() : former;
    if (dice.once(2))
        files[platform::FakeDocuments::pathOf(PromptModel::kFilename)] = presetsFile(dice);
    if (files.empty() || dice.once(2))
        files[platform::FakeDocuments::pathOf(DataModel::kHistoryFilename)] = historyFile(dice);
    std::erase_if(files, [](const auto& file) { return file.first.find(".damaged-") != std::string::npos; });
    return files;
}

class Sweep {
public:
    explicit Sweep(std::uint64_t seed) : dice_(seed) {}

    /// What has gone wrong; empty where nothing has. Does up to `steps` things.
    std::string run(std::uint64_t& steps) {
        try {
            while (steps > 0) {
                remember("start");
                SweptProgram program(filesOfNextStart(files_, dice_), dice_);
                for (std::size_t rest = 1 + dice_.below(300); rest > 0 && steps > 0; --rest, --steps) {
                    remember(program.step());
                    if (const std::string broken = program.brokenPromise(); !broken.empty())
                        return broken;
                }
                files_ = program.files();
            }
        } catch (const std::exception& fault) {
            return fault.what();
        }
        return {};
    }

    [[nodiscard]] std::string trail() const {
        std::string text;
        for (const char* done : trail_)
            text.append(text.empty() ? "" : ", ").append(done);
        return text;
    }

private:
    void remember(const char* done) {
        trail_.push_back(done);
        if (trail_.size() > kTrail)
            trail_.pop_front();
    }

    Dice dice_;
    Files files_;
    std::deque<const char*> trail_;
};

TEST(Sweep, NothingThatUsersServersFilesAndLinksDoIsAFatalFault) {
    const std::uint64_t seed = fromEnvironment("QUILLMOTH_SWEEP_SEED", 1);
    const std::uint64_t steps = fromEnvironment("QUILLMOTH_SWEEP_STEPS", kSteps);
    std::cout << "QUILLMOTH_SWEEP_SEED=" << seed << " QUILLMOTH_SWEEP_STEPS=" << steps << std::endl;
    const ScopedFatalErrorHandler fatal([](const std::string& text) { throw std::runtime_error(text); });
    const ScopedLogCapture quiet([](const std::string&) {});
    Sweep sweep(seed);
    std::uint64_t left = steps;
    const std::string fault = sweep.run(left);
    EXPECT_EQ(fault, "") << "seed " << seed << ", step " << steps - left << ", behind: " << sweep.trail();
}

} // namespace

} // namespace quillmoth::sweep
