// 100 KB of code through the tokenizer, and through one just-in-time compiled regular expression a class of
// token. Prints the ratio at the end.

#include "Quillmoth/Highlighting/SplashCodeSyntaxHighlighter.h"

#include <benchmark/benchmark.h>

#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <cstdio>
#include <string>

namespace {

using namespace quillmoth::highlighting;

constexpr std::string_view kCode = R"code(/// Runs `action` once the typing pauses.
@MainActor
final class Debouncer {
    private var task: Task<Void, Never>?
    let delay = Duration.milliseconds(250)

    func call(_ action: @escaping () -> Void) {
        task?.cancel()
        task = Task {
            try? await Task.sleep(for: delay)
            guard !Task.isCancelled else { return }
            log("searching \(count + 1) of \(total)", level: .debug) /* once */
            action()
}
}
}

)code";

std::string code() {
    std::string text;
    while (text.size() < 100'000) {
        text += kCode;
    }
    return text;
}

/// Counts the pieces: what the tokenizer costs without an output.
struct CountingFormat {
    struct Builder {
        void addToken(std::string_view /*token*/, TokenType /*type*/) { ++count; }

        void addPlainText(std::string_view /*text*/) { ++count; }

        void addWhitespace(std::string_view /*whitespace*/) { ++count; }

        [[nodiscard]] std::size_t build() const { return count; }

        std::size_t count = 0;
    };

    [[nodiscard]] Builder makeBuilder() const { return {}; }
};

void code_tokens(benchmark::State& state) {
    const std::string text = code();
    const SyntaxHighlighter highlighter{CountingFormat(), SwiftGrammar()};
    for (auto _ : state) {
        benchmark::DoNotOptimize(highlighter.highlight(text));
    }
}

void code_colours(benchmark::State& state) {
    const std::string text = code();
    const SplashCodeSyntaxHighlighter highlighter(Theme::midnight(Font(16)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(highlighter.highlightCode(text, "swift"));
    }
}

void code_tokens_peer(benchmark::State& state) {
    const QString text = QString::fromStdString(code());
    QList<QRegularExpression> expressions;
    for (
        const QString& pattern : QStringList{
            R"(\b(?:let|var|func|class|final|private|guard|else|return|if|try|await|for|in|while|switch|case|struct|enum|import|init|self|nil|true|false)\b)",
            R"("(?:[^"\\\n]|\\.)*")", R"(\b[A-Z]\w*\b)", R"(\b[a-z_]\w*(?=\())", R"(\b\d[\d_]*(?:\.\d+)?\b)",
            R"(//[^\n]*|/\*.*?\*/)", R"((?<=\w\.)[a-z_]\w*\b(?!\())", R"((?<![\w)\]}?!])\.[a-z_]\w*)",
            R"(#[a-z]+\b|@[A-Z]\w*)"}) {
        expressions.append(QRegularExpression(pattern));
        expressions.last().optimize();
    }
    for (auto _ : state) {
        std::size_t count = 0;
        for (const QRegularExpression& expression : expressions) {
            auto matches = expression.globalMatch(text);
            for (; matches.hasNext(); ++count) {
                benchmark::DoNotOptimize(matches.next().capturedStart());
            }
        }
        benchmark::DoNotOptimize(count);
    }
}

/// Text that tempts a scanner to look again and again: eight times of it is to cost eight times the time.
void code_tokens_hostile(benchmark::State& state) {
    constexpr const char* kUnits[] = {"\"\\(", "\"\"\"\\(\n", "/*",  "a/*",   "#",   "#\"",      "##\"\\#",
                                      "(",     ".",           "`a ", "get  ", "*/*", "\"\"\"\"", "\\"};
    const SyntaxHighlighter highlighter{CountingFormat(), SwiftGrammar()};
    for (auto _ : state) {
        for (const std::string_view unit : kUnits) {
            std::string text;
            while (text.size() < static_cast<std::size_t>(state.range(0))) {
                text += unit;
            }
            benchmark::DoNotOptimize(highlighter.highlight(text));
        }
    }
}

BENCHMARK(code_tokens)->Unit(benchmark::kMicrosecond);
BENCHMARK(code_colours)->Unit(benchmark::kMicrosecond);
BENCHMARK(code_tokens_peer)->Unit(benchmark::kMicrosecond);
BENCHMARK(code_tokens_hostile)->Arg(100'000)->Arg(800'000)->Unit(benchmark::kMillisecond);

class Reporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            const bool isPeer = run.benchmark_name() == "code_tokens_peer";
            if (isPeer || run.benchmark_name() == "code_tokens") {
                (isPeer ? peer : ours) = run.GetAdjustedCPUTime();
            }
            if (run.benchmark_name() == "code_tokens_hostile/100000")
                hostileSmall = run.GetAdjustedCPUTime();
            if (run.benchmark_name() == "code_tokens_hostile/800000")
                hostileLarge = run.GetAdjustedCPUTime();
        }
        ConsoleReporter::ReportRuns(runs);
    }

    double ours = 0;
    double peer = 0;
    double hostileSmall = 0;
    double hostileLarge = 0;
};

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    Reporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    if (reporter.peer > 0) {
        std::printf("ratio: tokens of 100 KB against regular expressions %8.4f (at most 0.15)\n",
                    reporter.ours / reporter.peer);
    }
    if (reporter.hostileSmall > 0)
        std::printf("ratio: eight times the hostile text %8.4f\n",
                    reporter.hostileLarge / reporter.hostileSmall);
    return 0;
}
