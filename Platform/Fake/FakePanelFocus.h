#pragma once

#include "Platform/PanelFocus.h"

#include <string>
#include <vector>

namespace quillmoth::platform {

/// A keyboard that the test turns elsewhere.
class FakePanelFocus final : public PanelFocus {
public:
    void acquire(WindowIdentifier window) override {
        calls.push_back("acquire " + std::to_string(window));
        isHeldNow = isWatching = true;
    }

    void release() override {
        calls.emplace_back("release");
        isHeldNow = isWatching = false;
    }

    [[nodiscard]] bool isHeld() const override { return isHeldNow; }

    Subscription onTurnedElsewhere(std::function<void(Turn)> subscriber) override {
        return turned_.subscribe(std::move(subscriber));
    }

    /// Tells the subscribers, if a window has the keyboard or is still watched.
    void turn(Turn turn) {
        isHeldNow = false;
        if (isWatching)
            turned_.emit(turn);
    }

    bool isHeldNow = false;
    bool isWatching = false;
    std::vector<std::string> calls;

private:
    Signal<Turn> turned_;
};

} // namespace quillmoth::platform
