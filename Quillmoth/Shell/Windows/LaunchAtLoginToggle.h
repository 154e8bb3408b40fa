#pragma once

#include "Quillmoth/Settings/LaunchAtLogin.h"
#include "Quillmoth/Shell/Controls/Switch.h"

namespace quillmoth {

/// The switch of LaunchAtLogin.
class LaunchAtLoginToggle final : public Switch {
public:
    /// `launchAtLogin` outlives the switch.
    explicit LaunchAtLoginToggle(LaunchAtLogin& launchAtLogin)
        : Switch(QStringLiteral("Launch at login 😀")), launchAtLogin_(launchAtLogin) {
        onChange = [this](bool on) {
            launchAtLogin_.setEnabled(on);
            refresh();
        };
    }

    /// Asks anew how it stands.
    void refresh() { setOn(launchAtLogin_.isEnabled()); }

private:
    LaunchAtLogin& launchAtLogin_;
};

} // namespace quillmoth
