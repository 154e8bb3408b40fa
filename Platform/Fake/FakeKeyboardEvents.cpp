#include "Platform/Fake/FakeKeyboardEvents.h"

namespace quillmoth::platform {

std::shared_ptr<CGEventSource> FakeKeyboardEvents::createSource(std::uint32_t stateID) {
    sourceStates.push_back(stateID);
    return failsToMakeSources ? nullptr : std::make_shared<CGEventSource>();
}

std::unique_ptr<CGKeyboardEvent>
FakeKeyboardEvents::createKeyboardEvent(const std::shared_ptr<CGEventSource>& /*source*/,
                                        std::uint16_t keyCode, bool keyDown) {
    if (failsToMakeEvents)
        return nullptr;
    return std::make_unique<CGKeyboardEvent>(
        CGKeyboardEvent{.keyCode = keyCode, .keyDown = keyDown, .flags = 0});
}

void FakeKeyboardEvents::post(std::uint32_t tap, const CGKeyboardEvent& event) {
    posts.push_back({.tap = tap, .event = event});
    if (onPost)
        onPost(event);
}

} // namespace quillmoth::platform
