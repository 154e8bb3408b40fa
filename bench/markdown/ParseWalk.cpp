// From text to blocks, against a parser that only calls back; and on to the first view, with a text engine
// that costs next to nothing, which leaves the layout's own cost. Prints how hostile texts grow at the end.

#include "MarkdownUI/Layout/DocumentLayout.h"

#include <benchmark/benchmark.h>
#include <md4c.h>

#include <cmath>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace quillmoth::markdown {
namespace {

/// A typical answer, as often as `size` bytes need.
std::string answer(std::size_t size) {
    const std::string part =
        "## Heading with `code`\n\nA paragraph of **some** words, with *emphasis*, a "
        "[link](https://example.org/page) and enough text for two or three lines of the "
        "panel in which it is shown.\n\n- first item\n- second item with `code`\n  - inner\n\n"
        "```swift\nfunc add(a: Int, b: Int) -> Int {\n    return a + b\n}\n```\n\n"
        "| Name | Value |\n|------|------:|\n| one | 1 |\n| two | 2 |\n\n1. step\n2. next\n\n";
    std::string text;
    while (text.size() < size)
        text += part;
    return text;
}

/// Every line holds as many characters as its width takes, wherever they are.
class CheapShapedText final : public ShapedText {
public:
    CheapShapedText(const AttributedText& text, const TextOptions& options) {
        const std::size_t length = text.text().size();
        const std::size_t perLine = std::isfinite(options.width)
                                        ? static_cast<std::size_t>(std::max(1.0, options.width / 8))
                                        : length;
        std::size_t begin = 0;
        do {
            const std::size_t end = std::min(length, begin + std::max<std::size_t>(1, perLine));
            const double top = static_cast<double>(lines_.size()) * 22;
            lines_.push_back({begin, end, 0, top, 15, 5, static_cast<double>(end - begin) * 8});
            begin = end;
        } while (begin < length);
    }

    [[nodiscard]] const std::vector<TextLine>& lines() const override { return lines_; }

    [[nodiscard]] std::size_t offsetAt(std::size_t line, double /*x*/) const override {
        return lines_[line].begin;
    }

    [[nodiscard]] double caretX(std::size_t /*line*/, std::size_t /*offset*/) const override { return 0; }

    [[nodiscard]] std::vector<Rect> rectanglesOf(std::size_t /*begin*/, std::size_t /*end*/) const override {
        return {};
    }

private:
    std::vector<TextLine> lines_;
};

class CheapTextEngine final : public TextEngine {
public:
    [[nodiscard]] std::unique_ptr<ShapedText> shape(const AttributedText& text,
                                                    const TextOptions& options) override {
        return std::make_unique<CheapShapedText>(text, options);
    }

    [[nodiscard]] FontMetrics metricsOf(const Font& /*font*/) override { return {15, 5, 8}; }
};

class NoImages final : public ImageSource {
public:
    [[nodiscard]] DefaultImageViewModel requestImage(const std::string& /*url*/) override { return {}; }
};

void md4cParse(benchmark::State& state) {
    const std::string text = answer(static_cast<std::size_t>(state.range(0)));
    std::size_t events = 0;
    MD_PARSER parser{};
    parser.flags = MD_FLAG_TABLES | MD_FLAG_STRIKETHROUGH | MD_FLAG_TASKLISTS | MD_FLAG_PERMISSIVEAUTOLINKS;
    const auto count = [](auto /*type*/, void* /*detail*/, void* events) {
        ++*static_cast<std::size_t*>(events);
        return 0;
    };
    parser.enter_block = count;
    parser.leave_block = count;
    parser.enter_span = count;
    parser.leave_span = count;
    parser.text = [](MD_TEXTTYPE, const MD_CHAR*, MD_SIZE, void* events) {
        ++*static_cast<std::size_t*>(events);
        return 0;
    };
    for (auto _ : state)
        benchmark::DoNotOptimize(md_parse(text.data(), static_cast<MD_SIZE>(text.size()), &parser, &events));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void parseAndWalk(benchmark::State& state) {
    const std::string text = answer(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(MarkdownContent(text));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void parseToFirstView(benchmark::State& state) {
    const std::string text = answer(static_cast<std::size_t>(state.range(0)));
    CheapTextEngine engine;
    NoImages images;
    for (auto _ : state) {
        DocumentLayout layout(engine, images, Theme::basic());
        layout.setOptions({.width = 592, .fontSize = 16});
        layout.setContent(MarkdownContent(text));
        benchmark::DoNotOptimize(layout.displayList({0, 0, 592, 700}));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void newWidth(benchmark::State& state) {
    CheapTextEngine engine;
    NoImages images;
    DocumentLayout layout(engine, images, Theme::basic());
    layout.setContent(MarkdownContent(answer(static_cast<std::size_t>(state.range(0)))));
    double width = 500;
    for (auto _ : state) {
        layout.setOptions({.width = width++, .fontSize = 16});
        benchmark::DoNotOptimize(layout.displayList({0, 0, width, 700}));
    }
}

struct HostileKind {
    const char* name;
    std::string (*text)(int count);
};

std::string repeated(std::string_view text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

/// What tempts a layout to look again and again: four times of it is to cost about four times the time.
const HostileKind kHostileKinds[] = {
    {"quotes", [](int count) { return repeated("> ", count) + "x"; }},
    {"lists_on_a_line", [](int count) { return repeated("- ", count) + "x"; }},
    {"long_line", [](int count) { return repeated("word ", 100 * count); }},
    {"line_without_blanks",
     [](int count) { return std::string(static_cast<std::size_t>(500 * count), 'x'); }},
    {"line_of_code",
     [](int count) { return "```\n" + std::string(static_cast<std::size_t>(1000 * count), 'x'); }},
    {"unclosed_fences", [](int count) { return repeated("```\n", 8 * count + 1); }},
    {"wide_table",
     [](int count) {
         return repeated("|a", count / 5) + "\n" + repeated("|-", count / 5) + "\n" +
                repeated("|b", count / 5);
     }},
    {"long_table", [](int count) { return "|a|b|\n|-|-|\n" + repeated("|some words|c|\n", 8 * count); }},
    {"long_list", [](int count) { return repeated("1. item\n", 8 * count); }},
    {"links", [](int count) { return repeated("[a](b) ", 8 * count); }},
    {"open_brackets", [](int count) { return repeated("[", 8 * count); }},
};
constexpr int kHostileSmall = 250;
constexpr int kHostileLarge = 4 * kHostileSmall;

/// Text to the whole layout, its links and its plain text.
void hostile(benchmark::State& state, const HostileKind& kind) {
    const std::string text = kind.text(static_cast<int>(state.range(0)));
    CheapTextEngine engine;
    NoImages images;
    for (auto _ : state) {
        DocumentLayout layout(engine, images, Theme::basic());
        layout.setOptions({.width = 592, .fontSize = 16});
        layout.setContent(MarkdownContent(text));
        layout.ensureLaidOut(1e12);
        benchmark::DoNotOptimize(layout.parts());
        benchmark::DoNotOptimize(layout.documentText());
    }
}

/// Shows the usual lines and keeps the times for the ratios.
class Reporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs)
            times_[run.benchmark_name()] = run.GetAdjustedCPUTime();
        ConsoleReporter::ReportRuns(runs);
    }

    void printRatio(const std::string& text, const std::string& ours, const std::string& peer,
                    double most) const {
        const auto first = times_.find(ours);
        const auto second = times_.find(peer);
        if (first != times_.end() && second != times_.end())
            std::printf("ratio: %-46s %8.4f (at most %g)\n", text.c_str(), first->second / second->second,
                        most);
    }

private:
    std::map<std::string, double> times_;
};

BENCHMARK(md4cParse)->Arg(10'000)->Arg(1'000'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(parseAndWalk)->Arg(10'000)->Arg(1'000'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(parseToFirstView)->Arg(10'000)->Arg(1'000'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(newWidth)->Arg(10'000)->Arg(1'000'000)->Unit(benchmark::kMicrosecond);

int run(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    for (const HostileKind& kind : kHostileKinds) {
        benchmark::RegisterBenchmark((std::string("hostile/") + kind.name).c_str(), hostile, kind)
            ->Arg(kHostileSmall)
            ->Arg(kHostileLarge)
            ->Unit(benchmark::kMicrosecond);
    }
    Reporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    for (const HostileKind& kind : kHostileKinds) {
        const std::string name = std::string("hostile/") + kind.name + "/";
        reporter.printRatio(std::string("four times the ") + kind.name, name + std::to_string(kHostileLarge),
                            name + std::to_string(kHostileSmall), 8);
    }
    return 0;
}

} // namespace
} // namespace quillmoth::markdown

int main(int argc, char** argv) {
    return quillmoth::markdown::run(argc, argv);
}
