#include "Platform/Linux/Sway/SwayHotKeyCenter.h"

#include "Foundation/Log.h"
#include "Platform/Linux/Shared/Keycodes.h"
#include "Platform/Linux/Sway/SwayTree.h"

#include <utility>

namespace quillmoth::platform {

namespace {

constexpr OSStatus kSwayParameterError = -50;
constexpr OSStatus kSwayHotKeyExistsError = -9878;
constexpr OSStatus kSwayHotKeyInvalidError = -9879;

/// Where Caps Lock or Num Lock is on, that is one of the modifiers.
constexpr const char* kLocks[] = {"", "Lock+", "Mod2+", "Lock+Mod2+"};

/// What the bindings do is nothing but to be told of.
constexpr const char* kMark = "nop quillmoth";
constexpr const char* kPress = "press";
constexpr const char* kRelease = "release";

std::optional<SwayCombination> combinationOf(std::uint32_t keyCode, std::uint32_t carbonModifiers) {
    const auto keycode = keycodeForVirtualKeyCode(keyCode);
    return keycode ? std::optional(SwayCombination{.keycode = *keycode, .modifiers = carbonModifiers})
                   : std::nullopt;
}

std::string markOf(HotKeyCenter::Handle handle, const char* kind) {
    return std::string(kMark) + ' ' + std::to_string(handle) + ' ' + kind;
}

} // namespace

SwayHotKeyCenter::SwayHotKeyCenter(SwayConnection& connection, KeycodeOf keycodeOf)
    : connection_(connection), keycodeOf_(std::move(keycodeOf)),
      events_(connection_.onEvent(
          [this](SwayConnection::Event kind, const nlohmann::json& event) { handle(kind, event); })) {}

SwayHotKeyCenter::~SwayHotKeyCenter() {
    for (const auto& [handle, registration] : registrations_)
        unbind(registration);
}

std::optional<std::string> SwayHotKeyCenter::usersCommand(const SwayCombination& combination) {
    const auto answer = connection_.ask(SwayConnection::Question::getConfig);
    return answer ? boundSwayCommand(textIn(*answer, "config"), combination, keycodeOf_) : std::nullopt;
}

OSStatus SwayHotKeyCenter::registerEventHotKey(std::uint32_t keyCode, std::uint32_t carbonModifiers,
                                               EventHotKeyID id, Handle& handle) {
    const auto combination = combinationOf(keyCode, carbonModifiers);
    if (!combination)
        return kSwayParameterError;
    Registration registration{.identifier = id, .combination = *combination};
    if (!bindOrWait(lastHandle_ + 1, registration))
        return kSwayHotKeyExistsError;
    handle = ++lastHandle_;
    registrations_[handle] = registration;
    return noErr;
}

bool SwayHotKeyCenter::bindOrWait(Handle handle, Registration& registration) {
    obstacle_.clear();
    const auto command = usersCommand(registration.combination);
    registration.isBound = !command && bind(handle, registration.combination);
    if (command) {
        obstacle_ = "The hot key does not work: sway’s configuration has bound it to “" + *command +
                    "”. Choose another one, or remove that line and reload sway.";
        logLine("The hot key is bound by sway’s configuration.");
    } else if (!registration.isBound) {
        obstacle_ =
            "The hot key does not work: sway has not taken it. Choose another one, or bind “quillmoth "
            "--toggle” to a key in sway’s configuration.";
        logLine(obstacle_);
    }
    return command || registration.isBound;
}

bool SwayHotKeyCenter::bind(Handle handle, const SwayCombination& combination) {
    const std::string key = writtenSwayCombination(combination);
    std::string commands;
    for (const char* locks : kLocks) {
        commands += "bindcode --no-warn " + (locks + key) + ' ' + markOf(handle, kPress) + ';';
        commands += "bindcode --no-warn --release " + (locks + key) + ' ' + markOf(handle, kRelease) + ';';
    }
    return connection_.run(commands);
}

void SwayHotKeyCenter::unbind(const Registration& registration) {
    // What is bound then is the user's.
    if (!registration.isBound)
        return;
    const std::string key = writtenSwayCombination(registration.combination);
    std::string commands;
    for (const char* locks : kLocks)
        commands += "unbindcode " + (locks + key) + ";unbindcode --release " + (locks + key) + ';';
    connection_.run(commands);
}

OSStatus SwayHotKeyCenter::unregisterEventHotKey(Handle handle) {
    const auto found = registrations_.find(handle);
    if (found == registrations_.end())
        return kSwayHotKeyInvalidError;
    unbind(found->second);
    registrations_.erase(found);
    if (pressed_ == handle)
        pressed_ = 0;
    return noErr;
}

OSStatus SwayHotKeyCenter::installEventHandler(Handler handler) {
    handler_ = std::move(handler);
    return noErr;
}

bool SwayHotKeyCenter::isTakenElsewhere(std::uint32_t keyCode, std::uint32_t carbonModifiers) {
    const auto combination = combinationOf(keyCode, carbonModifiers);
    return combination && usersCommand(*combination).has_value();
}

void SwayHotKeyCenter::handle(SwayConnection::Event kind, const nlohmann::json& event) {
    if (kind == SwayConnection::Event::workspace && textIn(event, "change") == "reload") {
        for (auto& [handle, registration] : registrations_)
            bindOrWait(handle, registration);
    } else if (kind == SwayConnection::Event::binding) {
        const auto binding = event.find("binding");
        if (binding != event.end())
            handleBinding(textIn(*binding, "command"));
    }
}

void SwayHotKeyCenter::handleBinding(const std::string& command) {
    for (const auto& [handle, registration] : registrations_) {
        const bool isPress = command == markOf(handle, kPress);
        if (!isPress && command != markOf(handle, kRelease))
            continue;
        // The repeats of a held key come as presses too.
        if (isPress && std::exchange(pressed_, handle) == handle)
            return;
        if (!isPress)
            pressed_ = 0;
        // A copy: the handler may be replaced while it runs.
        const auto handler = handler_;
        const HotKeyEvent told = {.kind = isPress ? kEventHotKeyPressed : kEventHotKeyReleased,
                                  .hotKeyID = registration.identifier};
        if (handler)
            handler(&told);
        return;
    }
}

} // namespace quillmoth::platform
