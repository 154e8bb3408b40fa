#include "Quillmoth/Application/CommandLine.h"

#include <gtest/gtest.h>

namespace quillmoth {
namespace {

using Action = CommandLine::Action;
using Arguments = std::vector<std::string_view>;

} // namespace

TEST(CommandLine, ReadsOptionsAndURLs) {
    const std::vector<std::pair<Arguments, CommandLine>> cases{
        {{}, {Action::start}},
        {{"--toggle"}, {Action::toggle}},
        {{"--toggle", "--toggle"}, {Action::toggle}},
        {{"--settings"}, {Action::settings}},
        {{"--quit"}, {Action::quit}},
        {{"--version"}, {Action::showVersion}},
        {{"-h"}, {Action::showHelp}},
        {{"--help"}, {Action::showHelp}},
        {{"quillmoth://promptEditor"}, {Action::start, {"quillmoth://promptEditor"}}},
        {{"QuillMoth:?data=%7B%7D", "--", "QUILLMOTH://B"},
         {Action::start, {"quillmoth:?data=%7B%7D", "quillmoth://B"}}},
    };
    for (const auto& [arguments, expected] : cases) {
        const auto parsed = parseCommandLine(arguments);
        ASSERT_TRUE(parsed) << parsed.error().description;
        EXPECT_EQ(*parsed, expected);
    }
}

TEST(CommandLine, NamesTheArgumentThatItCannotUse) {
    const std::vector<std::pair<Arguments, std::string>> cases{
        {{"--tggle"}, R"(There is no option "--tggle".)"},
        {{"-"}, R"(There is no option "-".)"},
        {{"--toggle=yes"}, R"(There is no option "--toggle=yes".)"},
        {{"https://example.org"}, R"("https://example.org" is not a URL that starts with "quillmoth:".)"},
        {{"quillmoth:"}, R"("quillmoth:" is not a URL that starts with "quillmoth:".)"},
        {{""}, R"("" is not a URL that starts with "quillmoth:".)"},
        {{"--", "--toggle"}, R"("--toggle" is not a URL that starts with "quillmoth:".)"},
        {{"--toggle", "--quit"}, R"(The options "--toggle" and "--quit" do not go together.)"},
        {{"--toggle", "quillmoth://a"}, R"(The option "--toggle" takes no URL.)"},
    };
    for (const auto& [arguments, expected] : cases) {
        const auto parsed = parseCommandLine(arguments);
        ASSERT_FALSE(parsed) << expected;
        EXPECT_EQ(parsed.error().description, expected);
    }
}

} // namespace quillmoth
