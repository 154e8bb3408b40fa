// One display frame of the whole panel while an answer comes in at a thousand pieces a second: the bytes of
// sixteen events through the event source, the decoder and the model, the view following, and the painting.
// The peer is the same with less of the answer there. Beside it what a key costs in that state, and with very
// long lists.

#include "Foundation/Log.h"
#include "tests/unit/shell/PanelFixture.h"

#include <QKeyEvent>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>

namespace quillmoth {

namespace {

constexpr int kPiecesAFrame = 16;
// The growth within a run is small beside the shorter answer.
constexpr int kFrames = 60;
constexpr int kKeys = 40;

std::string event(const std::string& content) {
    return R"(data: {"id":"chatcmpl-1","choices":[{"index":0,"delta":{"content":")" + content + "\"}}]}\n\n";
}

/// As a JSON text holds it.
std::string answerOf(std::int64_t size) {
    std::string text;
    while (text.size() < static_cast<std::size_t>(size))
        text += "Wait until the typing pauses, so that a burst of keys costs one request and no more.\\n\\n";
    return text;
}

std::vector<PromptData> presets(std::int64_t count) {
    std::vector<PromptData> made;
    made.reserve(static_cast<std::size_t>(count));
    for (std::int64_t index = 0; index < count; ++index)
        made.push_back(
            makePreset("💡", "Preset " + std::to_string(index), "Say it in other words", "nonContext"));
    return made;
}

/// The open panel.
class Panel {
public:
    explicit Panel(std::int64_t presetCount) : panel_(presets(presetCount)) {
        panel_.open();
        panel_.surface().setFrame(QRect(0, 0, 612, 700));
        panel_.view->commandArea().field().setFocus();
        followAndPaint();
    }

    PanelUnderTest* operator->() { return &panel_; }

    void beginAnswer(std::int64_t size) {
        panel_.model->sendPrompt("Why?");
        panel_.platform.runUntilIdle();
        stream().deliverStatus(200);
        stream().deliverData(event(answerOf(size)));
        followAndPaint();
        // A long answer is set in slices, while nothing else happens.
        for (int turn = 0; turn < 200; ++turn)
            QCoreApplication::processEvents();
    }

    void streamFrame() {
        std::string bytes;
        for (int piece = 0; piece < kPiecesAFrame; ++piece)
            bytes += event("word ");
        stream().deliverData(std::move(bytes));
        followAndPaint();
    }

    void press(int key, const QString& text = {}) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
        QApplication::sendEvent(&panel_.view->commandArea().field(), &press);
        followAndPaint();
    }

    void followAndPaint() {
        panel_.platform.runUntilIdle();
        panel_.view->refresh();
        panel_.surface().repaint();
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }

private:
    platform::FakeDataTask& stream() { return panel_.platform.urlSessions.lastSession().lastTask(); }

    const ScopedLogCapture log_{[](const std::string&) {}};
    PanelUnderTest panel_;
};

void streamFrame(benchmark::State& state) {
    Panel panel(8);
    panel.beginAnswer(state.range(0));
    for (auto unused : state) {
        (void)unused;
        panel.streamFrame();
    }
    if (panel->model->_messages->back().content.size() < static_cast<std::size_t>(state.range(0) * 9 / 10))
        state.SkipWithError("the answer has not come in");
}

/// A letter into the command field, while the answer comes in and the frame is painted.
void keyWhileStreaming(benchmark::State& state) {
    Panel panel(8);
    panel.beginAnswer(state.range(0));
    for (auto unused : state) {
        (void)unused;
        panel.streamFrame();
        panel.press(Qt::Key_A, QStringLiteral("a"));
    }
}

/// The arrow key in the list of presets.
void presetKey(benchmark::State& state) {
    Panel panel(state.range(0));
    for (auto unused : state) {
        (void)unused;
        panel.press(Qt::Key_Down);
    }
    if (panel->model->_selectedIndex < kKeys / 2)
        state.SkipWithError("the selection does not move");
}

/// A letter that filters the list of presets, and its removal.
void presetFilter(benchmark::State& state) {
    Panel panel(state.range(0));
    for (auto unused : state) {
        (void)unused;
        panel.press(Qt::Key_7, QStringLiteral("7"));
        if (panel->view->listArea().presets().rowCount() >= state.range(0))
            state.SkipWithError("nothing is filtered");
        panel.press(Qt::Key_Backspace);
    }
}

/// The arrow key in the list of conversations.
void conversationKey(benchmark::State& state) {
    Panel panel(8);
    std::vector<oldMessagesStruct> stored;
    for (std::int64_t index = 0; index < state.range(0); ++index)
        stored.push_back(
            {.topic = "🦋 Conversation " + std::to_string(index), .message = {}, .created = 0});
    panel->model->_oldMessages = stored;
    panel->model->_openHistory = true;
    panel.followAndPaint();
    for (auto unused : state) {
        (void)unused;
        panel.press(Qt::Key_Down);
    }
    if (panel->model->_keyHistorySelected < kKeys / 2)
        state.SkipWithError("the selection does not move");
}

// One frame is 16 ms.
BENCHMARK(streamFrame)
    ->Name("stream_frame")
    ->Arg(10'000)
    ->Arg(1'000'000)
    ->Iterations(kFrames)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(keyWhileStreaming)
    ->Name("key_while_streaming")
    ->Arg(10'000)
    ->Arg(1'000'000)
    ->Iterations(kFrames)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(presetKey)
    ->Name("preset_key")
    ->Arg(100)
    ->Arg(100'000)
    ->Iterations(kKeys)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(presetFilter)
    ->Name("preset_filter_in_panel")
    ->Arg(100)
    ->Arg(100'000)
    ->Iterations(kKeys)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(conversationKey)
    ->Name("conversation_key")
    ->Arg(100)
    ->Arg(50'000)
    ->Iterations(kKeys)
    ->Unit(benchmark::kMillisecond);

} // namespace

} // namespace quillmoth

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
