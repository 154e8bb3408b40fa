#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <string_view>
#include <vector>

namespace quillmoth::sweep {

namespace {

namespace fs = std::filesystem;

/// A call of fatalError: what from outside could reach it, and who checks before.
struct Site {
    /// The end of its path.
    std::string file;
    /// What is in its line behind "fatalError(".
    std::string call;
    std::string reachedBy;
    std::string checkedBy;
};

/// The rows of fatal_sites.txt.
std::vector<Site> readSites() {
    const std::regex row(R"((.*) \| (.*) \| (.*) \| (.*))");
    std::vector<Site> sites;
    std::ifstream table(fs::path(QUILLMOTH_SOURCES) / "tests/unit/sweep/fatal_sites.txt");
    for (std::string line; std::getline(table, line);) {
        std::smatch fields;
        if (std::regex_match(line, fields, row))
            sites.push_back({fields[1], fields[2], fields[3], fields[4]});
        else
            EXPECT_TRUE(line.empty() || line.front() == '#') << "no row of the table: " << line;
    }
    return sites;
}

/// Where fatalError is called, as "file: what stands behind the bracket".
std::vector<std::string> callsIn(const fs::path& root, const std::string& folder) {
    constexpr std::string_view kCall = " fatalError(";
    std::vector<std::string> calls;
    for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
        const std::string file = fs::relative(entry.path(), root).string();
        if (entry.path().extension() != ".cpp" || file.find("Platform/Fake/") == 0 ||
            file == "Foundation/FatalError.cpp")
            continue;
        std::ifstream source(entry.path());
        for (std::string line; std::getline(source, line);) {
            if (const auto place = line.find(kCall); place != std::string::npos)
                calls.push_back(file + ": " + line.substr(place + kCall.size()));
        }
    }
    return calls;
}

bool isRowOf(const Site& site, const std::string& call) {
    return call.find(site.file + ": ") != std::string::npos && call.find(site.call) != std::string::npos;
}

TEST(FatalSites, EachCallOfFatalErrorSaysWhoKeepsTheWorldAwayFromIt) {
    std::vector<std::string> calls;
    for (const char* folder :
         {"Foundation", "Platform", "EventSource", "KeyboardShortcuts", "MarkdownUI", "Quillmoth"}) {
        const auto found = callsIn(QUILLMOTH_SOURCES, folder);
        calls.insert(calls.end(), found.begin(), found.end());
    }
    const std::vector<Site> sites = readSites();
    for (const std::string& call : calls)
        EXPECT_EQ(
            std::count_if(sites.begin(), sites.end(), [&](const Site& site) { return isRowOf(site, call); }),
            1)
            << "wants one row in the table: " << call;
    for (const Site& site : sites)
        EXPECT_EQ(std::count_if(calls.begin(), calls.end(),
                                [&](const std::string& call) { return isRowOf(site, call); }),
                  1)
            << "is of no call: " << site.file << ": " << site.call << ", reached by " << site.reachedBy
            << ", checked by " << site.checkedBy;
}

} // namespace

} // namespace quillmoth::sweep
