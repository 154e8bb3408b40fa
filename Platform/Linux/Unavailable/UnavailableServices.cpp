#include "Platform/Linux/Unavailable/UnavailableServices.h"

#include "Foundation/Log.h"

namespace quillmoth::platform {

OSStatus UnavailableHotKeyCenter::registerEventHotKey(std::uint32_t, std::uint32_t, EventHotKeyID, Handle&) {
    logLine(obstacle());
    return eventNotHandledErr;
}

std::string UnavailableHotKeyCenter::obstacle() const {
    return "The hot key does not work: this desktop gives programs none. Bind “quillmoth --toggle” to "
           "a key in the desktop’s settings.";
}

} // namespace quillmoth::platform
