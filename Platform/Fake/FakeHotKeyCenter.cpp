#include "Platform/Fake/FakeHotKeyCenter.h"

#include <utility>

namespace quillmoth::platform {

namespace {

std::string combination(std::uint32_t keyCode, std::uint32_t carbonModifiers) {
    return std::to_string(keyCode) + " " + std::to_string(carbonModifiers);
}

} // namespace

OSStatus FakeHotKeyCenter::registerEventHotKey(std::uint32_t keyCode, std::uint32_t carbonModifiers,
                                               EventHotKeyID id, Handle& handle) {
    calls.push_back("register " + combination(keyCode, carbonModifiers));
    requests.push_back({.keyCode = keyCode, .carbonModifiers = carbonModifiers, .id = id});
    if (registerStatus != noErr)
        return registerStatus;
    if (givesNoHandle)
        return noErr;
    handle = nextHandle_++;
    registrations[handle] = requests.back();
    return noErr;
}

OSStatus FakeHotKeyCenter::unregisterEventHotKey(Handle handle) {
    const auto found = registrations.find(handle);
    if (found == registrations.end()) {
        calls.emplace_back("unregister unknown");
        return eventNotHandledErr;
    }
    calls.push_back("unregister " + combination(found->second.keyCode, found->second.carbonModifiers));
    if (unregisterStatus == noErr)
        registrations.erase(found);
    return unregisterStatus;
}

OSStatus FakeHotKeyCenter::installEventHandler(Handler handler) {
    calls.emplace_back("install");
    ++installCount;
    if (installStatus == noErr)
        handler_ = std::move(handler);
    return installStatus;
}

OSStatus FakeHotKeyCenter::send(const HotKeyEvent* event) {
    return handler_ ? handler_(event) : eventNotHandledErr;
}

OSStatus FakeHotKeyCenter::press(std::uint32_t keyCode, std::uint32_t carbonModifiers) {
    return sendKey(kEventHotKeyPressed, keyCode, carbonModifiers);
}

OSStatus FakeHotKeyCenter::release(std::uint32_t keyCode, std::uint32_t carbonModifiers) {
    return sendKey(kEventHotKeyReleased, keyCode, carbonModifiers);
}

OSStatus FakeHotKeyCenter::sendKey(std::uint32_t kind, std::uint32_t keyCode, std::uint32_t carbonModifiers) {
    for (const auto& [handle, registration] : registrations) {
        if (registration.keyCode == keyCode && registration.carbonModifiers == carbonModifiers) {
            const HotKeyEvent event{.kind = kind, .hotKeyID = registration.id, .parameterError = noErr};
            return send(&event);
        }
    }
    return eventNotHandledErr;
}

} // namespace quillmoth::platform
