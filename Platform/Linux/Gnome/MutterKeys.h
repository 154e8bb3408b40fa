#pragma once

#include "Platform/Linux/Gnome/GnomeExtension.h"

#include <QString>

#include <vector>

namespace quillmoth::platform {

/// Keys to the window with the keyboard, over the compositor's own interface for remote desktops: a session
/// of one is begun for them and ended behind them, and meanwhile the desktop shows the sign of a shared
/// screen. Main thread.
class MutterKeys {
public:
    MutterKeys() = default;
    ~MutterKeys();
    MutterKeys(const MutterKeys&) = delete;
    MutterKeys& operator=(const MutterKeys&) = delete;

    /// Whether the compositor offers that.
    [[nodiscard]] static bool areThere();

    /// Takes some 20 ms, a second at most. False where the compositor has refused.
    [[nodiscard]] bool send(const std::vector<KeyStep>& steps);

    /// Ends the session; what it holds down goes up.
    void end();

private:
    [[nodiscard]] bool begin();

    /// Its session; empty for none.
    QString session_;
};

} // namespace quillmoth::platform
