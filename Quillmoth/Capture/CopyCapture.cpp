#include "Quillmoth/Capture/CopyCapture.h"

#include "Foundation/FatalError.h"
#include "Foundation/Text.h"
#include "Platform/KeyboardEvents.h"
#include "Platform/Pasteboard.h"
#include "Platform/Workspace.h"

#include <utility>

namespace quillmoth {

namespace {

namespace keys = platform::keys;

// What systems with event sources and taps are to be given; no back end here has any.
[[maybe_unused]] constexpr std::uint32_t kCGEventSourceStateHIDSystemState = 1;
[[maybe_unused]] constexpr std::uint32_t kCGHIDEventTap = 0;

void postCopy(platform::KeyboardEvents& events) {
    auto down = events.createKeyboardEvent(keys::Key::c.code(), true);
    auto up = events.createKeyboardEvent(keys::Key::c.code(), false);
    if (!down || !up)
        fatalError("The key events for a copy could not be made");
    down->flags = keys::kFlagCommand;
    events.post(*down);
    up->flags = keys::kFlagCommand;
    events.post(*up);
}

} // namespace

std::optional<CaptureResult> CopyCapture::selectionInsteadOfCopy() {
    auto selected = workspace_.selectionInsteadOfCopy();
    if (!selected)
        return std::nullopt;
    return captured(CaptureWay::primary, std::move(*selected));
}

bool CopyCapture::canCopy() const {
    return keyboardEvents_.createKeyboardEvent(keys::Key::c.code(), true).has_value();
}

std::optional<std::string> CopyCapture::start() {
    std::optional<std::string> saved = pasteboard_.string();
    pasteboard_.clearContents();
    postCopy(keyboardEvents_);
    return saved;
}

CaptureResult CopyCapture::finish(const std::optional<std::string>& saved) {
    std::string fresh = pasteboard_.string().value_or(std::string());
    if (saved && canonicallyEqual(*saved, fresh))
        return {.way = CaptureWay::copy, .obstacle = CaptureObstacle::sameAsClipboard};
    return captured(CaptureWay::copy, std::move(fresh));
}

void CopyCapture::restore(const std::optional<std::string>& saved) {
    pasteboard_.clearContents();
    pasteboard_.setString(saved.value_or(std::string()));
}

} // namespace quillmoth
