#pragma once

#include "Platform/Linux/X11/Selection/X11Pasteboard.h"
#include "Platform/Linux/X11/Server/X11Connection.h"

#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace quillmoth::platform {

/// Clipboard and PRIMARY of a session whose compositor joins them with those of the X server beside it: there
/// they can be read and set by a program that has no window with the keyboard. Main thread.
class XwaylandClipboard {
public:
    /// Null where there is no such server, or its window manager is not the compositor.
    [[nodiscard]] static std::unique_ptr<XwaylandClipboard> create();

    [[nodiscard]] X11Pasteboard& pasteboard() { return pasteboard_; }

    [[nodiscard]] const X11Pasteboard& pasteboard() const { return pasteboard_; }

    /// The text of PRIMARY, whoever has selected it. Waits for 200 ms at most.
    [[nodiscard]] static std::optional<std::string> primary();

    /// Called a moment after PRIMARY has changed, once for changes that follow close on each other.
    std::function<void()> onPrimaryChange;

    /// As X11Pasteboard::paste, into a process that runs on either side.
    PasteOutcome paste(const std::string& text, std::int64_t process, X11Pasteboard::PasteKeys keys,
                       std::chrono::steady_clock::time_point deadline);

private:
    XwaylandClipboard(std::unique_ptr<X11Connection> connection, xcb_window_t compositor);
    void watchPrimary();

    std::unique_ptr<X11Connection> connection_;
    /// The window of the client that fetches for programs on the other side.
    xcb_window_t compositor_;
    X11Pasteboard pasteboard_;
    QTimer primaryTimer_;
    std::uint8_t primaryEvent_ = 0;
    Subscription events_;
};

} // namespace quillmoth::platform
