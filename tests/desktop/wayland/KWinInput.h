#pragma once

#include "tests/desktop/wayland/WaylandInput.h"

struct org_kde_kwin_fake_input;
struct wl_display;

namespace quillmoth::test {

/// By KWin's protocol for synthetic input. The time of what it sends is that of the clock.
class KWinInput final : public WaylandInput {
public:
    /// To the compositor of the environment. Throws std::runtime_error where it takes no input.
    KWinInput();
    ~KWinInput() override;
    KWinInput(const KWinInput&) = delete;
    KWinInput& operator=(const KWinInput&) = delete;

    void movePointer(int x, int y) override;

private:
    void sendKey(int key, bool isDown) override;
    void sendButton(bool isDown) override;
    void letTimePass() override;
    void finish();

    wl_display* display_;
    org_kde_kwin_fake_input* input_ = nullptr;
};

} // namespace quillmoth::test
