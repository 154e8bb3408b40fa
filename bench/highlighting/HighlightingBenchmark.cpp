// 100 KB of code through the tokenizer, and through one just-in-time compiled regular expression a class of
// token. Prints the ratios at the end.

#include "Quillmoth/Highlighting/SplashCodeSyntaxHighlighter.h"

#include <benchmark/benchmark.h>

#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <cstdio>
#include <map>
#include <string>
#include <string_view>
#include <vector>

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

struct HostileKind {
    const char* name;
    std::string_view unit;
};

/// Text that tempts a scanner to look again and again: eight times of it is to cost eight times the time.
constexpr HostileKind kHostileKinds[] = {
    {"strings_in_strings", "\"\\("},
    {"texts_in_texts", "\"\"\"\\(\n"},
    {"comments", "/*"},
    {"paths", "a/*"},
    {"number_signs", "#"},
    {"raw_strings", "#\""},
    {"raw_escapes", "##\"\\#"},
    {"parentheses", "("},
    {"dots", "."},
    {"backquotes", "`a "},
    {"words_and_blanks", "get  "},
    {"comment_ends", "*/*"},
    {"quotes", "\"\"\"\""},
    {"backslashes", "\\"},
};
constexpr std::size_t kHostileSmall = 100'000;
constexpr std::size_t kHostileLarge = 8 * kHostileSmall;

void code_tokens_hostile(benchmark::State& state, std::string_view unit) {
    const SyntaxHighlighter highlighter{CountingFormat(), SwiftGrammar()};
    std::string text;
    while (text.size() < static_cast<std::size_t>(state.range(0))) {
        text += unit;
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(highlighter.highlight(text));
    }
}

std::string hostileName(const HostileKind& kind) {
    return std::string("code_tokens_hostile/") + kind.name;
}

BENCHMARK(code_tokens)->Unit(benchmark::kMicrosecond);
BENCHMARK(code_colours)->Unit(benchmark::kMicrosecond);
BENCHMARK(code_tokens_peer)->Unit(benchmark::kMicrosecond);

class Reporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            times_[run.benchmark_name()] = run.GetAdjustedCPUTime();
        }
        ConsoleReporter::ReportRuns(runs);
    }

    void printRatio(const std::string& text, const std::string& ours, const std::string& peer,
                    double most) const {
        const auto first = times_.find(ours);
        const auto second = times_.find(peer);
        if (first != times_.end() && second != times_.end()) {
            std::printf("ratio: %-50s %8.4f (at most %g)\n", text.c_str(), first->second / second->second,
                        most);
        }
    }

private:
    std::map<std::string, double> times_;
};

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    for (const HostileKind& kind : kHostileKinds) {
        benchmark::RegisterBenchmark(hostileName(kind).c_str(), code_tokens_hostile, kind.unit)
            ->Arg(kHostileSmall)
            ->Arg(kHostileLarge)
            ->Unit(benchmark::kMicrosecond);
    }
    Reporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printRatio("tokens of 100 KB against regular expressions", "code_tokens", "code_tokens_peer",
                        0.15);
    reporter.printRatio("coloured text of them against regular expressions", "code_colours",
                        "code_tokens_peer", 0.5);
    for (const HostileKind& kind : kHostileKinds) {
        const std::string name = hostileName(kind) + "/";
        reporter.printRatio(std::string("eight times the ") + kind.name, name + std::to_string(kHostileLarge),
                            name + std::to_string(kHostileSmall), 16);
    }
    return 0;
}
