#pragma once

#include "Platform/KeyboardEvents.h"

#include <functional>
#include <vector>

namespace quillmoth::platform {

/// Records the keys in place of pressing them.
class FakeKeyboardEvents final : public KeyboardEvents {
public:
    struct Post {
        std::uint32_t tap = 0;
        CGKeyboardEvent event;
    };

    [[nodiscard]] std::shared_ptr<CGEventSource> createSource(std::uint32_t stateID) override;
    [[nodiscard]] std::unique_ptr<CGKeyboardEvent>
    createKeyboardEvent(const std::shared_ptr<CGEventSource>& source, std::uint16_t keyCode,
                        bool keyDown) override;
    void post(std::uint32_t tap, const CGKeyboardEvent& event) override;

    /// With these no source, or no event, can be made.
    bool failsToMakeSources = false;
    bool failsToMakeEvents = false;
    /// Runs after each post: what the other application makes of the key.
    std::function<void(const CGKeyboardEvent& event)> onPost;

    std::vector<std::uint32_t> sourceStates;
    std::vector<Post> posts;
};

} // namespace quillmoth::platform
