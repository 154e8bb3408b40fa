#include "Report.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <utility>

namespace quillmoth::test {

namespace {

std::string line(const Report::Check& check) {
    char time[32];
    std::snprintf(time, sizeof time, "%9.1f ms", static_cast<double>(check.time.count()) / 1000);
    std::string text = std::string(check.passed ? "ok    " : "FAILED") + time + "  " + check.what;
    if (!check.passed && !check.details.empty())
        text += "\n        " + check.details;
    return text;
}

} // namespace

void Report::add(Check check) {
    std::printf("%s\n", line(check).c_str());
    std::fflush(stdout);
    checks_.push_back(std::move(check));
}

bool Report::allPassed() const {
    return std::all_of(checks_.begin(), checks_.end(), [](const Check& check) { return check.passed; });
}

void Report::write(const std::string& path, const std::string& introduction) const {
    std::ofstream file(path);
    file << introduction << "\n\n";
    for (const Check& check : checks_)
        file << line(check) << "\n";
    const auto failed =
        std::count_if(checks_.begin(), checks_.end(), [](const Check& check) { return !check.passed; });
    file << "\n" << checks_.size() << " checks, " << failed << " failed\n";
}

} // namespace quillmoth::test
