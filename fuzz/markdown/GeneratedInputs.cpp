// Inputs for compilers that bring no fuzzer: seeds, mutated by chance.
//
//   MarkdownFuzz COUNT [SEED]    the inputs SEED, SEED + 1, ... ; each depends on its number alone

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Random = std::mt19937_64;

const std::vector<std::string>& seeds() {
    static const std::vector<std::string> texts{
        "# Heading *with* `code`\n\nparagraph  \nbroken\n\n> quote\n> > inner\n",
        "- a\n- [x] b\n  1. c\n     - d\n\n10. e\n\n11. f\n",
        "```swift\nlet a = 1\n```\n\n    code\n\n~~~\nopen",
        "|a|b|\n|:-|-:|\n|c|![i](icon.png)|\n|**d|e\n",
        "[![a](b)](c) ![d](icon.png#gh-dark-mode-only)\n![e](icon.png)  \n![f](g)\n",
        "***a **b ~~c~~* [d](e \"f\") <b>&amp; https://x.org a@b.c\\\nend",
        "שלום *עולם*\n\n- פריט\n\n|א|b|\n|-|-|\n",
        "<div>\n</div>\n\n---\n\n[x]: y\n[x]\n",
    };
    return texts;
}

const std::vector<std::string>& tokens() {
    static const std::vector<std::string> texts{"*",     "**",
                                                "_",     "~~",
                                                "`",     "```\n",
                                                "[",     "](",
                                                ")",     "![",
                                                "> ",    "- ",
                                                "1. ",   "# ",
                                                "|",     "|-|\n",
                                                "\n",    "\n\n",
                                                "    ",  "\t",
                                                "<",     ">",
                                                "&#0;",  "\\",
                                                "---\n", "[ ] ",
                                                "\xFF",  "\xE2\x80",
                                                "é",     "ש",
                                                "🤖",  "https://a.b",
                                                "%",     std::string(1, '\0')};
    return texts;
}

std::string makeInput(std::uint64_t number) {
    Random random(number);
    const auto pick = [&random](std::size_t count) { return static_cast<std::size_t>(random() % count); };
    std::string text = seeds()[pick(seeds().size())];
    if (pick(3) == 0)
        text += seeds()[pick(seeds().size())];
    for (std::size_t i = pick(12); i > 0; --i) {
        const std::size_t at = pick(text.size() + 1);
        switch (pick(5)) {
        case 0:
            text.erase(at, pick(8));
            break;
        case 1:
            if (at < text.size())
                text[at] = static_cast<char>(random());
            break;
        case 2:
            text.insert(at, text.substr(pick(text.size() + 1), pick(30)));
            break;
        default: {
            const std::string& token = tokens()[pick(tokens().size())];
            for (std::size_t times = pick(20) == 0 ? pick(300) : 1; times > 0; --times)
                text.insert(at, token);
            break;
        }
        }
    }
    return text;
}

} // namespace

int main(int argc, char** argv) {
    const std::uint64_t count = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 1000;
    const std::uint64_t first = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 0;
    for (std::uint64_t number = first; number < first + count; ++number) {
        const std::string text = makeInput(number);
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
        if ((number - first) % 10000 == 9999) {
            std::printf("%llu inputs\n", static_cast<unsigned long long>(number - first + 1));
            std::fflush(stdout);
        }
    }
    return 0;
}
