// First view, painting and streaming of answers, beside Qt's own document classes. Prints the ratios that
// matter at the end. Run with QT_QPA_PLATFORM=offscreen.

#include "MarkdownUI/Qt/MarkdownItem.h"
#include "Quillmoth/Highlighting/SplashCodeSyntaxHighlighter.h"

#include <benchmark/benchmark.h>

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QTextCursor>
#include <QTextDocument>

#include <cstdio>
#include <map>
#include <string>

namespace {

using namespace quillmoth;
using namespace quillmoth::markdown;

constexpr double kWidth = 520;
constexpr double kViewHeight = 700;
constexpr std::size_t kSmall = 10'000;
constexpr std::size_t kLarge = 1'000'000;

constexpr std::string_view kChapter = R"(## How it works

Wait until the typing **pauses** before you call `search(_:)`, so that a *burst* of keys costs one
request. More in [the guide](https://example.org/guide).

- Keep the task that is waiting
- Cancel it on each key
    - the old one never reaches the server

```swift
final class Debouncer {
    private var task: Task<Void, Never>?
    let delay = Duration.milliseconds(250)

    func call(_ action: @escaping () -> Void) {
        task?.cancel()
        task = Task { try? await Task.sleep(for: delay); action() } // once
    }
}
```

| Delay | Feels | Requests |
|---|---|---:|
| 100 ms | immediate | 41 |
| 250 ms | calm | 9 |

> A short wait that is always the same is felt less than a shorter one that varies.

)";

std::string answerOf(std::size_t size) {
    std::string text;
    while (text.size() < size) {
        text += kChapter;
    }
    return text;
}

class NoHost : public MarkdownHost {
public:
    void itemChanged(const QRectF& /*area*/) override {}

    void itemResized() override {}

    void openLink(const QString& /*url*/) override {}

    void copyText(const QString& /*text*/) override {}

    void copyButtonRenamed(std::size_t /*codeBlock*/) override {}

    void callAfter(std::chrono::milliseconds /*delay*/, std::function<void()> /*work*/) override {}
};

MarkdownServices& services() {
    static const highlighting::SplashCodeSyntaxHighlighter highlighter(
        highlighting::Theme::midnight(highlighting::Font(16)));
    static MarkdownServices services(MarkdownPalette::panel(), &highlighter);
    return services;
}

QImage& canvas() {
    static QImage image(static_cast<int>(kWidth), static_cast<int>(kViewHeight), QImage::Format_RGB32);
    return image;
}

const QRectF kView(0, 0, kWidth, kViewHeight);

void md_first_view(benchmark::State& state) {
    const std::string text = answerOf(static_cast<std::size_t>(state.range(0)));
    NoHost host;
    for (auto _ : state) {
        MarkdownItem item(services(), host);
        item.setWidth(kWidth);
        item.setFontSize(16);
        item.setForm(TextForm::markdown);
        item.setText(text);
        (void)item.ensureLaidOut(0, kViewHeight);
        benchmark::DoNotOptimize(item.height());
    }
}

void md_first_view_peer(benchmark::State& state) {
    const QString text = QString::fromStdString(answerOf(static_cast<std::size_t>(state.range(0))));
    for (auto _ : state) {
        QTextDocument document;
        document.setTextWidth(kWidth);
        document.setMarkdown(text);
        benchmark::DoNotOptimize(document.documentLayout()->documentSize());
    }
}

void md_paint_view(benchmark::State& state) {
    const std::string text = answerOf(static_cast<std::size_t>(state.range(0)));
    NoHost host;
    MarkdownItem item(services(), host);
    item.setWidth(kWidth);
    item.setFontSize(16);
    item.setForm(TextForm::markdown);
    item.setText(text);
    (void)item.ensureLaidOut(0, kViewHeight);
    for (auto _ : state) {
        QPainter painter(&canvas());
        item.paint(painter, kView, {});
    }
}

void md_paint_view_peer(benchmark::State& state) {
    QTextDocument document;
    document.setTextWidth(kWidth);
    document.setMarkdown(QString::fromStdString(answerOf(static_cast<std::size_t>(state.range(0)))));
    (void)document.documentLayout()->documentSize();
    for (auto _ : state) {
        QPainter painter(&canvas());
        document.drawContents(&painter, kView);
    }
}

/// One display frame while an answer streams: a piece arrives, what is seen is painted.
void stream_frame(benchmark::State& state) {
    NoHost host;
    MarkdownItem item(services(), host);
    item.setWidth(kWidth);
    item.setFontSize(16);
    item.setText(answerOf(static_cast<std::size_t>(state.range(0))));
    for (auto _ : state) {
        item.append("some more words ");
        const double top = std::max(item.height() - kViewHeight, 0.0);
        QPainter painter(&canvas());
        item.paint(painter, kView.translated(0, top), {0, -top});
    }
}

void stream_frame_peer(benchmark::State& state) {
    QTextDocument document;
    document.setTextWidth(kWidth);
    document.setPlainText(QString::fromStdString(answerOf(static_cast<std::size_t>(state.range(0)))));
    QTextCursor cursor(&document);
    cursor.movePosition(QTextCursor::End);
    for (auto _ : state) {
        cursor.insertText(QStringLiteral("some more words "));
        const double top = std::max(document.documentLayout()->documentSize().height() - kViewHeight, 0.0);
        QPainter painter(&canvas());
        painter.translate(0, -top);
        document.drawContents(&painter, kView.translated(0, top));
    }
}

/// Pieces of a paragraph that never ends.
void stream_one_paragraph(benchmark::State& state) {
    NoHost host;
    for (auto _ : state) {
        MarkdownItem item(services(), host);
        item.setWidth(kWidth);
        for (std::int64_t size = 0; size < state.range(0); size += 16) {
            item.append("some more words ");
        }
        benchmark::DoNotOptimize(item.height());
    }
}

std::string openFence(std::int64_t size) {
    std::string text = "Here it is:\n\n```swift\n";
    while (text.size() < static_cast<std::size_t>(size)) {
        text += "    let delay = Duration.milliseconds(250) // a comment\n";
    }
    return text;
}

/// A document that ends in an open code block: parse and first view at each size.
void stream_open_fence(benchmark::State& state) {
    const std::string text = openFence(state.range(0));
    NoHost host;
    MarkdownItem item(services(), host);
    item.setWidth(kWidth);
    for (auto _ : state) {
        item.setForm(TextForm::markdown);
        item.setText(text);
        (void)item.ensureLaidOut(0, kViewHeight);
    }
}

void stream_one_paragraph_peer(benchmark::State& state) {
    for (auto _ : state) {
        QTextDocument document;
        document.setTextWidth(kWidth);
        QTextCursor cursor(&document);
        for (std::int64_t size = 0; size < state.range(0); size += 16) {
            cursor.insertText(QStringLiteral("some more words "));
            benchmark::DoNotOptimize(document.documentLayout()->documentSize());
        }
    }
}

void stream_open_fence_peer(benchmark::State& state) {
    const QString text = QString::fromStdString(openFence(state.range(0)));
    QTextDocument document;
    document.setTextWidth(kWidth);
    for (auto _ : state) {
        document.setMarkdown(text);
        benchmark::DoNotOptimize(document.documentLayout()->documentSize());
    }
}

BENCHMARK(md_first_view)->Arg(kSmall)->Arg(kLarge)->Unit(benchmark::kMicrosecond);
BENCHMARK(md_first_view_peer)->Arg(kSmall)->Unit(benchmark::kMicrosecond);
BENCHMARK(md_first_view_peer)->Arg(kLarge)->Unit(benchmark::kMicrosecond)->Iterations(1);
BENCHMARK(md_paint_view)->Arg(kSmall)->Arg(kLarge)->Unit(benchmark::kMicrosecond);
BENCHMARK(md_paint_view_peer)->Arg(kSmall)->Arg(kLarge)->Unit(benchmark::kMicrosecond);
BENCHMARK(stream_frame)->Arg(kSmall)->Arg(kLarge)->Unit(benchmark::kMicrosecond);
BENCHMARK(stream_one_paragraph)->Arg(kSmall)->Arg(10 * kSmall)->Unit(benchmark::kMicrosecond);
BENCHMARK(stream_frame_peer)->Arg(kSmall)->Unit(benchmark::kMicrosecond);
BENCHMARK(stream_one_paragraph_peer)->Arg(kSmall)->Unit(benchmark::kMicrosecond);
BENCHMARK(stream_open_fence_peer)->Arg(kSmall)->Unit(benchmark::kMicrosecond);
BENCHMARK(stream_open_fence)->Arg(kSmall)->Arg(10 * kSmall)->Unit(benchmark::kMicrosecond);

/// Shows the usual lines and keeps the times for the ratios.
class Reporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            times_[run.benchmark_name()] = run.GetAdjustedCPUTime();
        }
        ConsoleReporter::ReportRuns(runs);
    }

    void printRatio(const char* text, const std::string& ours, const std::string& peer, double most) const {
        const auto first = times_.find(ours);
        const auto second = times_.find(peer);
        if (first != times_.end() && second != times_.end()) {
            std::printf("ratio: %-46s %8.4f (at most %g)\n", text, first->second / second->second, most);
        }
    }

private:
    std::map<std::string, double> times_;
};

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    Reporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printRatio("first view of 10 KB against Qt", "md_first_view/10000", "md_first_view_peer/10000",
                        0.20);
    reporter.printRatio("first view of 1 MB against Qt", "md_first_view/1000000",
                        "md_first_view_peer/1000000/iterations:1", 0.015);
    reporter.printRatio("painting 10 KB against Qt", "md_paint_view/10000", "md_paint_view_peer/10000", 1.5);
    reporter.printRatio("painting 1 MB against Qt", "md_paint_view/1000000", "md_paint_view_peer/1000000",
                        1.5);
    reporter.printRatio("streaming frame, 1 MB against 10 KB", "stream_frame/1000000", "stream_frame/10000",
                        1.5);
    reporter.printRatio("one paragraph, 100 KB against 10 KB", "stream_one_paragraph/100000",
                        "stream_one_paragraph/10000", 12);
    reporter.printRatio("streaming frame against Qt", "stream_frame/10000", "stream_frame_peer/10000", 1);
    reporter.printRatio("one paragraph of 10 KB against Qt", "stream_one_paragraph/10000",
                        "stream_one_paragraph_peer/10000", 0.2);
    reporter.printRatio("open fence of 10 KB against Qt", "stream_open_fence/10000",
                        "stream_open_fence_peer/10000", 0.5);
    reporter.printRatio("open fence, 100 KB against 10 KB", "stream_open_fence/100000",
                        "stream_open_fence/10000", 12);
    return 0;
}
