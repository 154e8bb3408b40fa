#include "Quillmoth/Highlighting/SyntaxHighlighter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace quillmoth::highlighting {

namespace {

constexpr std::string_view kBlanks = " \t\n\v\f\r";
constexpr std::array<const char*, kTokenTypeCount> kNames{
    "keyword", "string", "type", "call", "number", "comment", "property", "dotAccess", "preprocessing"};

/// Keeps the pieces: their kinds, "" for plain text and " " for white space, and their texts.
struct PieceFormat {
    using Pieces = std::vector<std::pair<std::string, std::string>>;

    struct Builder {
        void addToken(std::string_view token, TokenType type) {
            pieces.emplace_back(kNames[static_cast<std::size_t>(type)], token);
        }

        void addPlainText(std::string_view text) { pieces.emplace_back("", text); }

        void addWhitespace(std::string_view whitespace) { pieces.emplace_back(" ", whitespace); }

        Pieces build() { return pieces; }

        Pieces pieces;
    };

    [[nodiscard]] Builder makeBuilder() const { return {}; }
};

PieceFormat::Pieces piecesOf(std::string_view code) {
    return SyntaxHighlighter(PieceFormat(), SwiftGrammar()).highlight(code);
}

/// "keyword(let)", plain text as it is, white space in square brackets with "n" for a line feed and "." for
/// anything else.
std::string listingOf(std::string_view code) {
    std::string listing;
    for (auto [kind, text] : piecesOf(code)) {
        if (kind == " ")
            std::replace_if(
                text.begin(), text.end(), [](char byte) { return byte != '\n'; }, '.');
        std::replace(text.begin(), kind == " " ? text.end() : text.begin(), '\n', 'n');
        listing += kind.empty() ? text : kind == " " ? "[" + text + "]" : kind + "(" + text + ")";
    }
    return listing;
}

struct Example {
    const char* code;
    const char* listing;
};

void expectAll(const std::vector<Example>& examples) {
    for (const Example& example : examples) {
        EXPECT_EQ(listingOf(example.code), example.listing) << "of: " << example.code;
    }
}

} // namespace

TEST(SyntaxHighlighter, TellsNamesApartByWhatStandsAroundThem) {
    expectAll({
        {"let delay = 250", "keyword(let)[.]delay[.]=[.]number(250)"},
        {"func call(_ action: @escaping () -> Void) {",
         "keyword(func)[.]call(call)(keyword(_)[.]action:[.]keyword(@escaping)[.]()[.]->[.]type(Void))[.]{"},
        {"func map<T>(x)", "keyword(func)[.]call(map)<type(T)>(x)"},
        {"@MainActor", "preprocessing(@MainActor)"},
        {"task?.cancel()", "task?.call(cancel)()"},
        {"guard !Task.isCancelled else",
         "keyword(guard)[.]!type(Task).property(isCancelled)[.]keyword(else)"},
        {"log(x, level: .debug)", "call(log)(x,[.]level:[.].dotAccess(debug))"},
        {"sleep(for: delay)", "call(sleep)(for:[.]delay)"},
        {"f(x, in: y)", "call(f)(x,[.]in:[.]y)"},
        {"default: self.x", "keyword(default):[.]keyword(self).property(x)"},
        {".init(x)", ".keyword(init)(x)"},
        {"f(.Inline)", "call(f)(.dotAccess(Inline))"},
        {"Foo.Bar.baz()", "type(Foo).type(Bar).call(baz)()"},
        {"`class`.x", "`class`.property(x)"},
        {"x.`default`", "x.property(`default`)"},
        {"MAX_SIZE URL", "MAX_SIZE[.]type(URL)"},
        {"some View", "keyword(some)[.]type(View)"},
        {"open(some, set)", "call(open)(some,[.]set)"},
        {"{ get set }", "{[.]keyword(get)[.]keyword(set)[.]}"},
        {"user@example.com", "user@example.property(com)"},
        {"#if DEBUG", "preprocessing(#if)[.]type(DEBUG)"},
        {"# Title", "#[.]type(Title)"},
    });
}

TEST(SyntaxHighlighter, ReadsNumbersWithoutSwallowingRangesAndMembers) {
    expectAll({
        {"0..<5", "number(0)..<number(5)"},
        {"0...count", "number(0)...count"},
        {"1.5e-3", "number(1.5e-3)"},
        {"0xFF_0A 0b01 1_000", "number(0xFF_0A)[.]number(0b01)[.]number(1_000)"},
        {".5", "number(.5)"},
        {"1.description", "number(1).property(description)"},
        {"10px", "number(10)px"},
        {"1e", "number(1)e"},
        {"a1", "a1"},
        {"pair.0", "pair.number(0)"},
    });
}

TEST(SyntaxHighlighter, FollowsStringsThroughEscapesAndInterpolation) {
    expectAll({
        {R"~("a\"b")~", R"~(string("a\"b"))~"},
        {R"~("\(name) is \(f("x"))!")~",
         R"~(string("\()namestring() is \()call(f)(string("x"))string()!"))~"},
        {R"~("open)~", R"~(string("open))~"},
        {"\"open\nlet", "string(\"open)[n]keyword(let)"},
        {"\"a \\(b\nlet", "string(\"a \\()b[n]keyword(let)"},
        {R"~(#"raw \n "quote" \#(x)"#)~", R"~(string(#"raw \n "quote" \#()xstring()"#))~"},
        {R"~(##"a"#b"##)~", R"~(string(##"a"#b"##))~"},
        {R"~("a"#if)~", R"~(string("a")preprocessing(#if))~"},
        {"\"\"\"\n  let\n\"\"\"\nlet", "string(\"\"\")[n..]string(let)[n]string(\"\"\")[n]keyword(let)"},
        {"\"\"\"\na \"b\" let\n\"\"\"", "string(\"\"\")[n]string(a \"b\" let)[n]string(\"\"\")"},
        {"\"\"\"\n\\(a +\n b)\n\"\"\" x",
         "string(\"\"\")[n]string(\\()a[.]+[n.]bstring())[n]string(\"\"\")[.]x"},
    });
}

TEST(SyntaxHighlighter, NestsBlockCommentsAndKeepsPathsOutOfThem) {
    expectAll({
        {"// let x", "comment(// let x)"},
        {"/* a /* b */ c */ let", "comment(/* a /* b */ c */)[.]keyword(let)"},
        {"/* a\n   b */ x", "comment(/* a)[n...]comment(b */)[.]x"},
        {"curl https://example.com/let", "curl[.]https://example.property(com)/keyword(let)"},
        {"rm build/*", "rm[.]build/*"},
        {"/* a */ rm build/* let", "comment(/* a */)[.]rm[.]build/*[.]keyword(let)"},
        {"f(x/* note */)", "call(f)(xcomment(/* note */))"},
    });
}

TEST(SyntaxHighlighter, PiecesJoinedAreTheTextWhateverItHolds) {
    EXPECT_EQ(piecesOf("").size(), 0U);
    EXPECT_EQ(piecesOf("\n \t\n").size(), 1U) << "white space is one piece over the ends of lines";
    const std::array<std::string_view, 24> parts{
        "\"", "\"\"\"", "#",   "\\(", "\\#(", ")",   "(",    "/*",  "*/", "//", "\n",       " ",
        "\t", ".",      "...", "@",   "`",    "let", "Type", "0x1", "9.", "\r", "\xC3\xA9", "\xFF"};
    std::mt19937 random(20);
    for (int round = 0; round < 3000; ++round) {
        std::string code;
        for (std::size_t count = random() % 40; count > 0; --count) {
            code += parts[random() % parts.size()];
        }
        std::string joined;
        for (const auto& [kind, text] : piecesOf(code)) {
            joined += text;
            const auto place = kind.empty() ? text.find_first_of(kBlanks) : text.find_first_not_of(kBlanks);
            ASSERT_EQ(place != std::string::npos, !kind.empty() && kind != " ") << code;
            ASSERT_FALSE(text.empty()) << code;
        }
        ASSERT_EQ(joined, code);
    }
}

TEST(SyntaxHighlighter, StatesAreEqualExactlyWhenTheSameIsOpen) {
    const SwiftGrammar grammar;
    std::vector<Piece> pieces;
    const auto after = [&](std::string_view line) { return grammar.step(line, {}, pieces); };
    EXPECT_EQ(after("let x = \"open"), LineState());
    EXPECT_EQ(after("x /* a"), after("/* other text"));
    EXPECT_NE(after("/* a"), after("/* a /* b"));
    EXPECT_NE(after("\"\"\""), after("#\"\"\""));
    EXPECT_EQ(grammar.step("*/", after("/* a"), pieces), LineState());
}

} // namespace quillmoth::highlighting
