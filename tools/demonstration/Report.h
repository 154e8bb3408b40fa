#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace quillmoth::test {

/// The checks of a demonstration: each is printed at once, and all go into a file.
class Report {
public:
    struct Check {
        std::string what;
        bool passed = false;
        std::chrono::microseconds time{0};
        /// What was seen instead, for a check that failed.
        std::string details;
    };

    void add(Check check);

    [[nodiscard]] bool allPassed() const;

    /// Writes `introduction` and a line for each check.
    void write(const std::string& path, const std::string& introduction) const;

private:
    std::vector<Check> checks_;
};

} // namespace quillmoth::test
