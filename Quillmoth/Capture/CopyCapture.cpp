#include "Quillmoth/Capture/CopyCapture.h"

#include "Foundation/FatalError.h"
#include "Foundation/Text.h"
#include "Platform/KeyboardEvents.h"
#include "Platform/Pasteboard.h"
#include "Platform/Workspace.h"

#include <utility>

namespace quillmoth {

namespace {

// The position of "C" on an ANSI keyboard.
constexpr std::uint16_t kKeyCodeC = 8;

void postCopy(platform::KeyboardEvents& events) {
    const auto source = events.createSource(platform::kCGEventSourceStateHIDSystemState);
    const auto down = events.createKeyboardEvent(source, kKeyCodeC, true);
    const auto up = events.createKeyboardEvent(source, kKeyCodeC, false);
    if (!down || !up)
        fatalError("The key events for a copy could not be made");
    down->flags = platform::kCGEventFlagMaskCommand;
    events.post(platform::kCGHIDEventTap, *down);
    up->flags = platform::kCGEventFlagMaskCommand;
    events.post(platform::kCGHIDEventTap, *up);
}

} // namespace

std::optional<CaptureResult> CopyCapture::terminalSelection() {
    auto selected = workspace_.selectionInFrontTerminal();
    if (!selected)
        return std::nullopt;
    return captured(CaptureWay::primary, std::move(*selected));
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
