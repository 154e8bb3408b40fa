// Writes pictures of the windows, to be looked at.
#include "Quillmoth/Shell/Windows/WindowTheme.h"
#include "tests/unit/windows/WindowFixture.h"

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QPixmap>

using namespace quillmoth;

namespace {

void save(QWidget& window, const QString& name) {
    if (window.minimumHeight() != window.maximumHeight())
        window.resize(560, 1000);
    QApplication::processEvents();
    window.grab().save(name + ".png");
}

void drawSettings(const QString& folder, const QString& theme, bool dark) {
    WindowFixture noKey(dark);
    noKey.shortcuts.setShortcut(KeyboardShortcuts::Shortcut(KeyboardShortcuts::Key::space, 0x80000),
                                noKey.name);
    noKey.loginItems.enabled.insert("org.quillmoth.Quillmoth");
    const auto window = noKey.makeSettings();
    window->present();
    noKey.fakes.runUntilIdle();
    save(*window, folder + "/settings-no-key-" + theme);
    auto* recorder = window->findChildren<QLineEdit*>().front();
    recorder->setFocus();
    save(*window, folder + "/settings-recording-filled-" + theme);
    noKey.shortcuts.setShortcut(std::nullopt, noKey.name);
    save(*window, folder + "/settings-recording-" + theme);

    WindowFixture key(dark);
    key.fakes.userDefaults.set("openapikey", std::string("sk-moth-0000000000000000000000000"));
    key.fakes.userDefaults.set("model", std::string("gpt-4"));
    key.fakes.userDefaults.set("updateFeedURL", std::string("https://feed.example/feed.json"));
    const auto second = key.makeSettings();
    second->present();
    key.fakes.runUntilIdle();
    second->findChildren<QLineEdit*>().at(1)->setFocus();
    save(*second, folder + "/settings-key-gpt4-" + theme);
}

void drawOnboarding(const QString& folder, const QString& theme, bool dark) {
    ColorScheme scheme(dark);
    OnboardingWindow window(scheme, [] {});
    window.present();
    save(window, folder + "/onboarding-1-" + theme);
    window.view().continuePressed();
    save(window, folder + "/onboarding-2-" + theme);
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    if (argc < 2)
        return 2;
    QApplication::setFont(QFont("Inter"));
    const QString folder = QString::fromLocal8Bit(argv[1]);
    QDir().mkpath(folder);
    for (const bool dark : {false, true}) {
        drawSettings(folder, dark ? "dark" : "light", dark);
        drawOnboarding(folder, dark ? "dark" : "light", dark);
    }
    return 0;
}
