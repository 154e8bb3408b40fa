#include "Platform/Linux/Unavailable/UnavailableServices.h"

#include "Foundation/Log.h"

namespace quillmoth::platform {

OSStatus UnavailableHotKeyCenter::registerEventHotKey(std::uint32_t, std::uint32_t, EventHotKeyID, Handle&) {
    logLine(obstacle());
    return eventNotHandledErr;
}

std::string UnavailableHotKeyCenter::obstacle() const {
    return "No hot key can be recorded: there is no X server to take one from. Bind “quillmoth --toggle” to "
           "a key "
           "in the desktop’s settings.";
}

std::shared_ptr<CGEventSource> UnavailableKeyboardEvents::createSource(std::uint32_t) {
    return std::make_shared<CGEventSource>();
}

std::unique_ptr<CGKeyboardEvent>
UnavailableKeyboardEvents::createKeyboardEvent(const std::shared_ptr<CGEventSource>&, std::uint16_t keyCode,
                                               bool keyDown) {
    auto event = std::make_unique<CGKeyboardEvent>();
    event->keyCode = keyCode;
    event->keyDown = keyDown;
    return event;
}

void UnavailableKeyboardEvents::post(std::uint32_t, const CGKeyboardEvent&) {
    if (hasTold_)
        return;
    hasTold_ = true;
    logLine("There is no X server to send keys through: the selection cannot be copied from other programs.");
}

} // namespace quillmoth::platform
