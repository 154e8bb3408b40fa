#include "Quillmoth/Prompts/ExtractedText.h"

#include <gtest/gtest.h>

namespace quillmoth {
namespace {

/// The pieces as "fixed" and "<blank>", which no case holds otherwise, with a bar between them.
std::string split(std::string_view prompt) {
    std::string result;
    std::string joined;
    std::int64_t id = 0;
    for (const ExtractedText& piece : extractBracketedTexts(prompt)) {
        EXPECT_EQ(piece.id, id++);
        result += result.empty() ? "" : "|";
        result += piece.isBracketed ? "<" + piece.text + ">" : piece.text;
        joined += piece.text;
    }
    EXPECT_EQ(joined, prompt);
    return result;
}

TEST(ExtractBracketedTexts, SplitsAtBracketsAndLosesNothing) {
    const struct {
        std::string prompt;
        std::string pieces;
    } cases[] = {
        {"", ""},
        {"plain", "plain"},
        {"[x]", "<[x]>"},
        {"[]", "<[]>"},
        {"[a][b]", "<[a]>|<[b]>"},
        {"a]b", "<a]>|b"},
        {"]", "<]>"},
        {"x[y", "x|[y"},
        {"[a[b]c]", "[a|<[b]>|<c]>"},
        {"[[", "[|["},
        {"für [Ziel 🦋]!", "für |<[Ziel 🦋]>|!"},
        {"no [\u0301bracket]\u0301 here", "no [\u0301bracket]\u0301 here"},
        {"line\r\n[a\r\nb]\r\n", "line\r\n|<[a\r\nb]>|\r\n"},
        {"Create a compelling CTA for our [landing page/email/website] that encourages [ideal customer "
         "persona] to [desired action].",
         "Create a compelling CTA for our |<[landing page/email/website]>| that encourages |<[ideal customer "
         "persona]>| to |<[desired action]>|."},
    };

    for (const auto& [prompt, pieces] : cases)
        EXPECT_EQ(split(prompt), pieces) << prompt;
}

} // namespace
} // namespace quillmoth
