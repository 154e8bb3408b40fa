#pragma once

#include "Platform/KeyboardEvents.h"

#include <functional>
#include <vector>

namespace quillmoth::platform {

/// Records the keys in place of pressing them.
class FakeKeyboardEvents final : public KeyboardEvents {
public:
    [[nodiscard]] std::optional<CGKeyboardEvent> createKeyboardEvent(std::uint16_t keyCode,
                                                                     bool keyDown) override {
        return failsToMakeEvents ? std::nullopt : std::optional(CGKeyboardEvent{keyCode, keyDown, 0});
    }

    void post(const CGKeyboardEvent& event) override {
        posts.push_back(event);
        if (onPost)
            onPost(event);
    }

    /// With this no event can be made.
    bool failsToMakeEvents = false;
    /// Runs after each post: what the other application makes of the key.
    std::function<void(const CGKeyboardEvent& event)> onPost;

    std::vector<CGKeyboardEvent> posts;
};

} // namespace quillmoth::platform
