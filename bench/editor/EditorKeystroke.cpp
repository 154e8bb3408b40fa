// A keystroke in the prompt of one of 1,000 presets: through the form into the store, the file and the rows.
// The peer is a bare text area whose every keystroke encodes the same records with nlohmann and writes them
// to a file.

#include "Foundation/Log.h"
#include "Platform/Fake/FakePlatform.h"
#include "Platform/Posix/FileDocuments.h"
#include "Platform/Posix/FileWriter.h"
#include "Quillmoth/Shell/Controls/ColorScheme.h"
#include "Quillmoth/Shell/Editor/PromptEditorWindow.h"

#include <QApplication>
#include <QFile>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>

#include <memory>
#include <string>
#include <vector>

namespace quillmoth {
namespace {

constexpr std::size_t kPresets = 1000;

std::vector<PromptData> presets() {
    const std::string sentence = "Rewrite the text below so that it sounds \"warmer\".\nKeep its length. ";
    std::vector<PromptData> result(kPresets);
    for (std::size_t i = 0; i < kPresets; ++i) {
        PromptData& preset = result[i];
        preset.id = "6A0F8B1E-8A53-4E2C-9A57-" + std::to_string(100000000000 + i);
        preset.emoji = "🪶";
        preset.name = "Rewrite with more warmth " + std::to_string(i);
        for (int count = 0; count < 8; ++count)
            preset.prompt += sentence;
        preset.prompt += "{selected text}";
        preset.promptType = "context";
    }
    return result;
}

/// Real files in a folder of their own; all else is in memory.
struct Store {
    Store() {
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder.filePath("config")));
        qputenv("HOME", QFile::encodeName(folder.path()));
        platform::Platform fakes = fake.platform();
        const platform::Platform real{
            .mainQueue = fakes.mainQueue,
            .operationQueues = fakes.operationQueues,
            .urlSessions = fakes.urlSessions,
            .pasteboard = fakes.pasteboard,
            .accessibility = fakes.accessibility,
            .keyboardEvents = fakes.keyboardEvents,
            .hotKeyCenter = fakes.hotKeyCenter,
            .keyboardLayout = fakes.keyboardLayout,
            .workspace = fakes.workspace,
            .userDefaults = fakes.userDefaults,
            .documents = documents,
            .bundle = fakes.bundle,
            .clock = fakes.clock,
            .uuidSource = fakes.uuidSource,
            .panelWindows = fakes.panelWindows,
            .statusItems = fakes.statusItems,
            .application = fakes.application,
        };
        model = DataModel::create(real);
        model->_PromptM.get()->setPrompts(presets());
        window = std::make_unique<PromptEditorWindow>(model, real, scheme);
        window->view().contextTab.selection = static_cast<std::int64_t>(kPresets / 2);
        window->show();
        window->refresh();
        settle();
    }

    void settle() {
        fake.runUntilIdle();
        QApplication::processEvents();
    }

    const ScopedLogCapture log{[](const std::string&) {}};
    QTemporaryDir folder;
    platform::FakePlatform fake;
    platform::FileWriter writer;
    platform::FileDocuments documents{folder.filePath("Documents").toStdString(), writer, fake.mainQueue};
    ColorScheme scheme{false};
    std::shared_ptr<DataModel> model;
    std::unique_ptr<PromptEditorWindow> window;
};

void typeInto(QWidget& area, int& count) {
    // Lines, as people type them.
    const bool ends = ++count % 60 == 0;
    QKeyEvent press(QEvent::KeyPress, ends ? Qt::Key_Return : Qt::Key_A, Qt::NoModifier, ends ? "\n" : "a");
    QApplication::sendEvent(&area, &press);
}

void ours(benchmark::State& state) {
    Store store;
    const auto areas = store.window->findChildren<QPlainTextEdit*>();
    int count = 0;
    for (auto _ : state) {
        typeInto(*areas.back(), count);
        store.settle();
    }
    state.SetLabel("with painting, the file written each time");
}

void peer(benchmark::State& state) {
    const auto records = presets();
    const QTemporaryDir folder;
    QPlainTextEdit area;
    area.resize(420, 150);
    area.show();
    QApplication::processEvents();
    QObject::connect(&area, &QPlainTextEdit::textChanged, &area, [&] {
        auto array = nlohmann::ordered_json::array();
        for (const PromptData& record : records)
            array.push_back({{"id", *record.id},
                             {"emoji", record.emoji},
                             {"name", record.name},
                             {"prompt", record.prompt},
                             {"promptType", *record.promptType}});
        const std::string text = array.dump();
        QFile file(folder.filePath("presets.json"));
        if (file.open(QIODevice::WriteOnly))
            file.write(text.data(), static_cast<qint64>(text.size()));
    });
    int count = 0;
    for (auto _ : state) {
        typeInto(area, count);
        QApplication::processEvents();
    }
}

BENCHMARK(ours)->Name("editor_keystroke/ours")->Unit(benchmark::kMicrosecond);
BENCHMARK(peer)->Name("editor_keystroke/peer")->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace quillmoth

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
