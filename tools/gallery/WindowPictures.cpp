// Writes pictures of every window of the program and its states, in light and dark, to be looked at.
#include "Platform/Linux/Unavailable/UnavailableServices.h"
#include "Quillmoth/Shell/Editor/EmojiPicker.h"
#include "Quillmoth/Shell/Editor/PresetFileMenu.h"
#include "Quillmoth/Shell/Editor/PromptEditorWindow.h"
#include "Quillmoth/Shell/Looks/Palette.h"
#include "Quillmoth/Shell/Windows/ModelPicker.h"
#include "Quillmoth/Shell/Windows/PresetQuestion.h"
#include "Quillmoth/Shell/Windows/UpdateNotice.h"
#include "tests/unit/windows/WindowFixture.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPixmap>
#include <QPushButton>
#include <QTest>

#include <cstdio>
#include <string>
#include <vector>

using namespace quillmoth;

namespace {

/// Where the pictures go, and in which theme they are.
struct Album {
    QString folder;
    bool isDark = false;

    void add(QWidget& window, const QString& name) const {
        QApplication::processEvents();
        const QString file = folder + '/' + name + (isDark ? "-dark" : "-light") + ".png";
        if (!window.grab().save(file))
            std::fprintf(stderr, "windows-pictures: could not write %s\n", file.toLocal8Bit().constData());
    }
};

void click(QWidget& window, const char* title) {
    for (auto* button : window.findChildren<QPushButton*>()) {
        if (button->text() == QString::fromUtf8(title))
            button->click();
    }
}

QLineEdit* field(QWidget& window, const char* name) {
    for (auto* found : window.findChildren<QLineEdit*>()) {
        if (found->accessibleName() == QString::fromUtf8(name))
            return found;
    }
    return nullptr;
}

/// With the keyboard in it, as after pressing Tab.
template<class Control>
void focusByKey(QWidget& window, const char* text) {
    for (int count = 0; count < 40; ++count) {
        QTest::keyClick(&window, Qt::Key_Tab);
        const auto* focused = dynamic_cast<Control*>(window.focusWidget());
        if (focused != nullptr && focused->text() == QString::fromUtf8(text))
            return;
    }
}

void showAll(SettingsWindow& window) {
    window.resize(560, 1000);
    window.present();
}

void drawSettingsWithoutKey(const Album& album) {
    WindowFixture fixture(album.isDark);
    fixture.shortcuts.setShortcut(KeyboardShortcuts::Shortcut(KeyboardShortcuts::Key::space, 0x80000),
                                  fixture.name);
    fixture.loginItems.enabled.insert("org.quillmoth.Quillmoth");
    const auto window = fixture.makeSettings();
    showAll(*window);
    fixture.fakes.runUntilIdle();
    album.add(*window, "settings-no-key");
    auto* recorder = field(*window, "Open Quillmoth Hotkey:");
    recorder->setFocus();
    album.add(*window, "settings-recording-filled");
    fixture.shortcuts.setShortcut(std::nullopt, fixture.name);
    album.add(*window, "settings-recording");
    recorder->clearFocus();
    album.add(*window, "settings-no-shortcut");
    focusByKey<QPushButton>(*window, "Open Prompt Editor");
    album.add(*window, "settings-focus-button");
    focusByKey<QCheckBox>(*window, "Use an alternative method to obtain the text");
    album.add(*window, "settings-focus-switch");
    window->resize(500, 420);
    album.add(*window, "settings-least");
    showAlert(window.get(), true,
              "This keyboard shortcut cannot be used, since the menu item “Quit” has it already.", {});
    album.add(*window->findChild<QMessageBox*>(), "sheet-menu-item");
}

// A switch slides to its place.
constexpr int kSwitchMilliseconds = 500;

void drawKeyring(const Album& album, WindowFixture& fixture, SettingsWindow& window) {
    fixture.keyKeeping.offers = true;
    fixture.keyKeeping.problem =
        "The key could not be put into the keyring: The keyring refused. It stays in the settings file.";
    fixture.keyKeeping.tell();
    album.add(window, "settings-keyring-failed");
    fixture.keyKeeping.problem.clear();
    fixture.keyKeeping.keeps = true;
    const std::string key = *fixture.fakes.userDefaults.string("openapikey");
    fixture.fakes.userDefaults.obstacles["openapikey"] = "The keyring is locked.";
    fixture.fakes.userDefaults.remove("openapikey");
    QTest::qWait(kSwitchMilliseconds);
    album.add(window, "settings-keyring-locked");
    fixture.fakes.userDefaults.obstacles.clear();
    fixture.fakes.userDefaults.set("openapikey", key);
    album.add(window, "settings-keyring");
    fixture.keyKeeping.offers = fixture.keyKeeping.keeps = false;
    fixture.keyKeeping.tell();
}

void drawSettingsWithKey(const Album& album) {
    WindowFixture fixture(album.isDark);
    fixture.fakes.userDefaults.set("openapikey", std::string("sk-moth-0000000000000000000000000"));
    fixture.fakes.userDefaults.set("model", std::string("gpt-4"));
    fixture.fakes.userDefaults.set("updateFeedURL", std::string("https://feed.example/feed.json"));
    fixture.fakes.hotKeyCenter.obstacleText = platform::UnavailableHotKeyCenter().obstacle();
    const auto window = fixture.makeSettings();
    showAll(*window);
    fixture.fakes.runUntilIdle();
    field(*window, "OpenAI API Key:")->setFocus();
    album.add(*window, "settings-key-gpt4");
    drawKeyring(album, fixture, *window);
    fixture.fakes.userDefaults.set("hidesAPIKey", true);
    fixture.fakes.userDefaults.set("openAIBaseURL", std::string("no address"));
    fixture.fakes.userDefaults.set("model",
                                   std::string("a-model-with-a-very-long-name-of-its-own-70b-instruct-q4"));
    click(*window, "Test connection");
    fixture.fakes.runUntilIdle();
    field(*window, "Server address")->setFocus();
    album.add(*window, "settings-server-error");
    fixture.fakes.userDefaults.set("openAIBaseURL", std::string("http://192.168.1.20:11434"));
    fixture.fakes.runUntilIdle();
    album.add(*window, "settings-server-unencrypted");
    auto* picker = window->findChild<QComboBox*>();
    picker->showPopup();
    album.add(*picker->view()->window(), "settings-picker");
    picker->hidePopup();
    UpdateNotice notice;
    notice.feed.version = "1.1";
    notice.feed.url = "https://get.example/";
    notice.feed.notes = "Faster.";
    notice.presentVersion = "1.0 build 1";
    showUpdateSheet(*window, notice);
    album.add(*window->findChild<QMessageBox*>(), "sheet-update");
    QMessageBox* update = showUpdateWindow(windowPalette(album.isDark), notice);
    album.add(*update, "window-update");
    update->close();
}

void activate(QWidget& window) {
    window.activateWindow();
    QApplication::processEvents();
}

void drawOnboarding(const Album& album) {
    ColorScheme scheme(album.isDark);
    ConsentWindow consent(scheme, {"Kate", "Chromium", "qBittorrent", "VLC media player", "Signal", "Okular"},
                          [](bool) {});
    consent.present();
    activate(consent);
    album.add(consent, "consent");
    consent.close();
    bool isOpen = true;
    OnboardingWindow window(scheme, [] {},
                            {.isOpen = [&] { return isOpen; },
                             .programsToRestart = [] { return std::vector<std::string>(); },
                             .answer = [&](bool) { isOpen = false; }});
    window.present();
    activate(window);
    album.add(window, "onboarding-1");
    window.view().continuePressed();
    album.add(window, "onboarding-question");
    click(window, "Not Now");
    album.add(window, "onboarding-2");
    QTest::keyClick(&window, Qt::Key_Tab);
    album.add(window, "onboarding-focus");
}

std::vector<PromptData> presets() {
    const auto preset = [](const char* emoji, const char* name, const char* prompt, const char* type) {
        PromptData made;
        made.id = name;
        made.emoji = emoji;
        made.name = name;
        made.prompt = prompt;
        made.promptType = type;
        return made;
    };
    const char* warmth =
        "Rewrite the text below so that it sounds warmer. Keep its meaning, its length and its "
        "language.\n\n{selected text}";
    const char* action =
        "Create a compelling CTA for our [landing page/email/website] that encourages [ideal "
        "customer persona] to [desired action].";
    return {preset("🌐", "Translate to English", "{selected text}", "context"),
            preset("✍️", "Fix the grammar", "{selected text}", "context"),
            preset("🪶", "Rewrite with more warmth", warmth, "context"),
            preset("📌", "Summarise in three points", "{selected text}", "context"),
            preset("🔀", "Transform into bullet points", "{selected text}", "context"),
            preset("🧩", "Explain this code", "{selected text}", "context"),
            preset("🙂", "Change the tone to casual", "{selected text}", "context"),
            preset("📝", "Turn into meeting notes", "{selected text}", "context"),
            preset("🎯", "Call to action", action, "nonContext"),
            preset("👩‍🚀",
                   "A name that is so long that it finds room neither in the list nor in the title", action,
                   "nonContext")};
}

void drawPresetQuestion(const Album& album) {
    ColorScheme scheme(album.isDark);
    PresetQuestionWindow window(scheme);
    window.showOffer({.name = QStringLiteral("🪶 Rewrite with more warmth"),
                      .systemPrompt = {},
                      .prompt = QString::fromStdString(presets()[2].prompt),
                      .add = [] {}});
    activate(window);
    album.add(window, "preset-question");
}

void drawEditor(const Album& album) {
    platform::FakePlatform fakes;
    fakes.documents.put(PromptModel::kFilename, *writeJSON(presets()));
    const auto model = DataModel::create(fakes.platform());
    ColorScheme scheme(album.isDark);
    PromptEditorWindow window(model, fakes.platform(), scheme);
    window.present();
    album.add(window, "editor-empty");
    window.view().contextTab.selection = 2;
    window.refresh();
    field(window, "Name")->setFocus();
    album.add(window, "editor-context");
    focusByKey<QAbstractButton>(window, "Delete");
    album.add(window, "editor-focus");
    auto* picker = EmojiPicker::open(window, "🪶", [](const QString&) {});
    album.add(*picker, "editor-emoji");
    picker->close();
    auto* files = dynamic_cast<PresetFileMenu*>(window.findChild<QAbstractButton*>("files"));
    if (files != nullptr) {
        files->showMenu();
        album.add(*files->findChild<QMenu*>(), "editor-files-menu");
        files->findChild<QMenu*>()->close();
        files->importFrom("/nowhere/presets.json");
        album.add(*window.findChild<QMessageBox*>(), "sheet-import-failed");
        window.findChild<QMessageBox*>()->close();
    }
    window.view().showTab(PromptEditorView::Kind::nonContext);
    window.view().nonContextTab.selection = 9;
    window.view().deletePreset();
    window.view().undoDelete();
    window.view().nonContextTab.selection = 8;
    window.view().deletePreset();
    window.view().nonContextTab.selection = 8;
    window.refresh();
    album.add(window, "editor-long-name-undo");
    window.view().undoDelete();
    window.view().nonContextTab.selection = 8;
    window.refresh();
    field(window, "Name")->setFocus();
    album.add(window, "editor-non-context");
    window.resize(640, 460);
    album.add(window, "editor-least");
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    if (argc != 2) {
        std::fputs("Usage: windows-pictures FOLDER\n", stderr);
        return 2;
    }
    QApplication::setFont(QFont("Inter"));
    Album album{.folder = QString::fromLocal8Bit(argv[1])};
    QDir().mkpath(album.folder);
    for (const bool isDark : {false, true}) {
        album.isDark = isDark;
        drawSettingsWithoutKey(album);
        drawSettingsWithKey(album);
        drawOnboarding(album);
        drawPresetQuestion(album);
        drawEditor(album);
    }
    return 0;
}
