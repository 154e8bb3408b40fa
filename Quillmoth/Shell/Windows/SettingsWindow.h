#pragma once

#include "KeyboardShortcuts/Center.h"
#include "Platform/KeyKeeping.h"
#include "Platform/LoginItem.h"
#include "Platform/Platform.h"
#include "Quillmoth/Settings/LaunchAtLogin.h"
#include "Quillmoth/Settings/Updater.h"
#include "Quillmoth/Shell/Controls/ShellWindow.h"
#include "Quillmoth/Shell/Windows/SettingView.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace quillmoth {

/// What the settings window needs from where the program is put together.
struct SettingsHooks {
    std::function<void()> openPromptEditor;
    AccessibilityHooks accessibility;
    /// Outlives the window.
    platform::KeyKeeping* keyKeeping;
    /// The virtual key code of a native scan code of Qt's; none where it has none.
    std::function<std::optional<std::uint16_t>(std::uint32_t nativeScanCode)> virtualKeyCode;
    /// See RecorderServices; may be left empty.
    std::function<Subscription(std::uint64_t window)> inhibitShortcuts = {};
    /// What the user may let the desktop do; may be left empty.
    std::function<std::vector<platform::DesktopOffer>()> offers = {};
};

/// The settings. Made at first use and kept; closing hides it. Main thread.
class SettingsWindow final : public ShellWindow {
public:
    /// All but the hooks outlive the window.
    SettingsWindow(const platform::Platform& platform, KeyboardShortcuts::Center& shortcuts,
                   platform::LoginItems& loginItems, Updater& updater, ColorScheme& colorScheme,
                   const SettingsHooks& hooks);

    [[nodiscard]] SettingView& view() const { return *view_; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    void fitScreen();

    LaunchAtLogin launchAtLogin_;
    SettingView* view_;
};

} // namespace quillmoth
