#pragma once

#include "Platform/Linux/Wayland/WaylandKeyboardEvents.h"

struct org_kde_kwin_fake_input;

namespace quillmoth::platform {

/// Synthetic keys by KWin's protocol for them, which it offers to those programs alone whose desktop entry
/// asks for it. It looks for that when a program connects, and may take some seconds to see a new entry: so
/// there is a connection of its own, made anew until it is offered there. The keys count as those of the
/// user's own keyboard, so the modifiers that the user holds are let go first. Main thread.
class FakeInputEvents final : public WaylandKeyboardEvents {
public:
    /// `connection` is the one on whose thread the keys are sent. Both outlive the object; the connection is
    /// stopped before its end.
    FakeInputEvents(WaylandConnection& connection, const WaylandKeyboardLayout& layout);
    ~FakeInputEvents() override;

    [[nodiscard]] bool canSend() override;

    std::optional<CGKeyboardEvent> createKeyboardEvent(std::uint16_t keyCode, bool keyDown) override;

private:
    bool makeReady() override;
    void send(const Stroke& stroke, bool isDown) override;
    bool finish() override;
    void disconnect();

    std::unique_ptr<WaylandConnection> own_;
    org_kde_kwin_fake_input* input_ = nullptr;
};

} // namespace quillmoth::platform
