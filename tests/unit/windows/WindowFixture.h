#pragma once

#include "KeyboardShortcuts/Center.h"
#include "Platform/Fake/FakeKeyKeeping.h"
#include "Platform/Fake/FakeLoginItems.h"
#include "Platform/Fake/FakePlatform.h"
#include "Quillmoth/Shell/Controls/ColorScheme.h"
#include "Quillmoth/Shell/Windows/OnboardingWindow.h"
#include "Quillmoth/Shell/Windows/SettingView.h"
#include "Quillmoth/Shell/Windows/SettingsWindow.h"

#include <QPushButton>

#include <map>
#include <string>

namespace quillmoth {

/// X keycodes stand 8 above the kernel's codes; these few are enough here.
inline std::optional<std::uint16_t> virtualKeyCodeOfTest(std::uint32_t scanCode) {
    // Escape, Q, K, space bar and F1.
    static const std::map<std::uint32_t, std::uint16_t> kCodes{
        {9, 53}, {24, 12}, {45, 40}, {65, 49}, {67, 122}};
    const auto found = kCodes.find(scanCode);
    return found != kCodes.end() ? std::optional(found->second) : std::nullopt;
}

/// The visible button of that title; null where there is none.
inline QPushButton* buttonOf(const QWidget& window, const QString& title) {
    for (auto* button : window.findChildren<QPushButton*>()) {
        if (button->text() == title && button->isVisible())
            return button;
    }
    return nullptr;
}

/// The windows on fakes.
struct WindowFixture {
    explicit WindowFixture(bool dark = false) : colorScheme(dark) {
        fakes.bundle.infos = {{"CFBundleShortVersionString", "1.0"},
                              {"CFBundleVersion", "1"},
                              {"CFBundleIdentifier", "org.quillmoth.Quillmoth"}};
        fakes.keyboardLayout.characters = {{12, "q"}, {40, "k"}};
    }

    std::unique_ptr<SettingsWindow> makeSettings() {
        return std::make_unique<SettingsWindow>(
            fakes.platform(), shortcuts, loginItems, updater, colorScheme,
            SettingsHooks{.openPromptEditor = [this] { ++editorOpenings; },
                          .accessibility = {.enable = [this] { return accessibilityAnswers; },
                                            .programsToRestart = [this] { return programs; }},
                          .keyKeeping = &keyKeeping,
                          .virtualKeyCode = virtualKeyCodeOfTest});
    }

    platform::FakePlatform fakes;
    platform::FakeLoginItems loginItems;
    platform::FakeKeyKeeping keyKeeping;
    ColorScheme colorScheme;
    KeyboardShortcuts::Center shortcuts{fakes.userDefaults, fakes.hotKeyCenter};
    KeyboardShortcuts::Name name{"showFloatingPanel"};
    Updater updater{fakes.platform()};
    int editorOpenings = 0;
    bool accessibilityAnswers = true;
    const std::vector<std::string> programs{"Kate", "Signal"};
};

} // namespace quillmoth
