#pragma once

#include "Platform/Linux/Wayland/WaylandKeyboardEvents.h"

#include <QTimer>
#include <atomic>

struct org_kde_kwin_fake_input;

namespace quillmoth::platform {

/// Synthetic keys by KWin's protocol for them, which it offers to those programs alone whose desktop entry
/// asks for it. It looks for that when a program connects, and sees a new entry some seconds late: where it
/// was not offered at the start there is a connection of its own, tried again and again. The keys count as
/// those of the user's own keyboard, so the modifiers that the user holds are let go first. Main thread.
class FakeInputEvents final : public WaylandKeyboardEvents {
public:
    /// Before the connection's thread starts. Both outlive the object; the connection is stopped before its
    /// end.
    FakeInputEvents(WaylandConnection& connection, const WaylandKeyboardLayout& layout);
    ~FakeInputEvents() override;

    /// Tries the connection of its own a few times within the next seconds, in the background.
    void expectOffer();

    [[nodiscard]] bool canSend() override;

    std::optional<CGKeyboardEvent> createKeyboardEvent(std::uint16_t keyCode, bool keyDown) override;

private:
    bool makeReady() override;
    bool connect();
    void send(const Stroke& stroke, bool isDown) override;
    bool finish() override;
    void take(WaylandConnection& from);
    void letGo();

    /// Null where the connection of the others serves, or nothing does.
    std::unique_ptr<WaylandConnection> own_;
    std::atomic<org_kde_kwin_fake_input*> input_ = nullptr;
    WaylandConnection::Clock::time_point nextTry_;
    QTimer tries_;
    int triesLeft_ = 0;
};

} // namespace quillmoth::platform
