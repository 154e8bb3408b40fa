// Others' documents: whatever the rules of the language allow is laid out, read and hit without a fault.
//
// The examples are our own, one or more for each rule. Those of the language's descriptions, in their text
// form, are read besides where QUILLMOTH_SPEC_FILES names such files, parted by colons.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "DocumentCheck.h"
#include "Foundation/Text.h"
#include "MarkdownUI/Document/MarkdownContent.h"

namespace quillmoth::markdown {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kParting = "\n=====\n";

std::string readFile(const fs::path& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

std::vector<std::string> parted(const std::string& text, std::string_view parting) {
    std::vector<std::string> parts;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(parting, begin), text.size());
        parts.push_back(text.substr(begin, end - begin));
        begin = end + parting.size();
    }
    return parts;
}

/// The examples of a description: fenced, the Markdown before a line with one dot, arrows for tabs.
std::vector<std::string> examplesOfDescription(const fs::path& path) {
    const std::string fence(32, '`');
    std::vector<std::string> examples;
    std::vector<std::string> parts = parted("\n" + readFile(path), "\n" + fence + " example");
    for (std::size_t i = 1; i < parts.size(); ++i) {
        const std::size_t begin = parts[i].find('\n') + 1;
        const std::size_t end = parts[i].find("\n.\n", begin - 1);
        if (end != std::string::npos)
            examples.push_back(
                replacingAll(parts[i].substr(begin, end + 1 - std::min(begin, end + 1)), "→", "\t"));
    }
    return examples;
}

void expectNoFault(const std::string& text, const std::string& where) {
    for (std::uint64_t seed = 0; seed < 3; ++seed) {
        EXPECT_EQ(faultOfDocument(text, seed), "") << where << ":\n" << text;
        EXPECT_EQ(faultOfLaziness(text, seed), "") << where << ":\n" << text;
    }
}

TEST(Examples, every_rule_of_the_language_is_laid_out_without_a_fault) {
    std::size_t count = 0;
    for (const auto& file : fs::directory_iterator(QUILLMOTH_MARKDOWN_EXAMPLES)) {
        for (const std::string& example : parted(readFile(file.path()), kParting)) {
            expectNoFault(example, file.path().filename().string());
            ++count;
        }
    }
    EXPECT_GT(count, 290U);
}

TEST(Examples, the_examples_of_the_descriptions_are_laid_out_without_a_fault) {
    const char* files = std::getenv("QUILLMOTH_SPEC_FILES"); // NOLINT(concurrency-mt-unsafe)
    if (files == nullptr)
        GTEST_SKIP() << "QUILLMOTH_SPEC_FILES names no description";
    for (const std::string& file : parted(files, ":")) {
        const std::vector<std::string> examples = examplesOfDescription(file);
        EXPECT_FALSE(examples.empty()) << file;
        for (const std::string& example : examples)
            expectNoFault(example, file);
        std::cout << examples.size() << " examples in " << file << "\n";
    }
}

TEST(Examples, read_me_files_of_installed_packages_are_laid_out_without_a_fault) {
    constexpr std::uintmax_t kMostBytes = 400'000; // of all; so that the test stays quick
    std::vector<fs::path> files;
    std::error_code error;
    for (fs::recursive_directory_iterator entry("/usr/share/doc", error), end; !error && entry != end;
         entry.increment(error)) {
        if (entry->path().filename().string().starts_with("README") && entry->path().extension() != ".gz" &&
            entry->is_regular_file(error))
            files.push_back(entry->path());
    }
    if (files.empty())
        GTEST_SKIP() << "no package has a README";
    std::ranges::sort(files);
    std::uintmax_t bytes = 0;
    for (const fs::path& path : files) {
        const std::string text = readFile(path);
        bytes += text.size();
        if (bytes > kMostBytes)
            break;
        EXPECT_EQ(faultOfDocument(text, text.size()), "") << path;
        EXPECT_EQ(faultOfLaziness(text, text.size()), "") << path;
        EXPECT_EQ(faultOfStream(text, text.size()), "") << path;
    }
}

} // namespace
} // namespace quillmoth::markdown
