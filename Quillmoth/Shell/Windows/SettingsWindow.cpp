#include "Quillmoth/Shell/Windows/SettingsWindow.h"

#include "Platform/Application.h"
#include "Quillmoth/Settings/Recording.h"
#include "Quillmoth/Shell/Looks/ThinScrollBar.h"
#include "Quillmoth/Shell/Windows/MainMenu.h"
#include "Quillmoth/Shell/Windows/SettingView.h"

#include <QApplication>
#include <QBoxLayout>
#include <QScreen>
#include <QScrollArea>

#include <algorithm>

namespace quillmoth {

namespace {

constexpr int kNaturalWidth = 560;
constexpr int kLeastWidth = 500;
constexpr int kLeastHeight = 320;
// For the frame of the window and the desktop's own bars.
constexpr int kScreenReserve = 80;

RecorderServices recorderServices(const platform::Platform& platform, KeyboardShortcuts::Center& shortcuts,
                                  const SettingsHooks& hooks, QWidget* window) {
    return {.shortcuts = shortcuts,
            .layout = platform.keyboardLayout,
            .mainQueue = platform.mainQueue,
            .virtualKeyCode = hooks.virtualKeyCode,
            .inhibitShortcuts = hooks.inhibitShortcuts,
            .mainMenu = [&layout = platform.keyboardLayout] { return applicationMainMenu(layout); },
            .alert =
                [window](const QString& message, const QString& informativeText, std::function<void()> done) {
                    showAlert(window, true, message, informativeText, std::move(done));
                },
            .beep = [] { QApplication::beep(); }};
}

} // namespace

SettingsWindow::SettingsWindow(const platform::Platform& platform, KeyboardShortcuts::Center& shortcuts,
                               platform::LoginItems& loginItems, Updater& updater, ColorScheme& colorScheme,
                               const SettingsHooks& hooks)
    : ShellWindow(QStringLiteral("Settings"), colorScheme),
      launchAtLogin_(loginItems, platform.bundle, platform.userDefaults),
      view_(new SettingView(platform, recorderServices(platform, shortcuts, hooks, this), updater,
                            launchAtLogin_, hooks.openPromptEditor, hooks.accessibility, *hooks.keyKeeping,
                            hooks.offers ? hooks.offers() : std::vector<platform::DesktopOffer>())) {
    auto* scroll = new QScrollArea;
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setVerticalScrollBar(new ThinScrollBar(ThinScrollBar::Place::window));
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setWidget(view_);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(scroll);
    setMinimumSize(kLeastWidth, kLeastHeight);
    applyLook();
    fitScreen();
    platform::Application& application = platform.application;
    onQuit = [&application] { application.terminate(); };
}

void SettingsWindow::fitScreen() {
    view_->ensurePolished();
    const int natural = view_->layout()->hasHeightForWidth()
                            ? view_->layout()->totalHeightForWidth(kNaturalWidth)
                            : view_->sizeHint().height();
    resize(kNaturalWidth, std::min(natural, screen()->availableGeometry().height() - kScreenReserve));
}

void SettingsWindow::showEvent(QShowEvent* event) {
    ShellWindow::showEvent(event);
    view_->refresh();
}

} // namespace quillmoth
