#include "Platform/Linux/Gnome/GnomeHotKeyCenter.h"

#include "Foundation/Log.h"
#include "Platform/Linux/Gnome/GnomeKeySettings.h"

#include <QTimer>

#include <utility>

namespace quillmoth::platform {

namespace {

constexpr OSStatus kGnomeParameterError = -50;
constexpr OSStatus kGnomeHotKeyInvalidError = -9879;

/// The shell learns of this program's name on the bus while it asks for a key.
constexpr int kSecondTryMilliseconds = 300;

constexpr const char* kNeedsConsent = "GNOME gives programs no hot key. Switch on the shortcut below, "
                                      "install the extension, or bind “quillmoth "
                                      "--toggle” to a key in GNOME’s settings, under Keyboard.";

} // namespace

GnomeHotKeyCenter::GnomeHotKeyCenter(GnomeExtension& extension, KeyboardLayout& layout, std::string command)
    : extension_(extension), layout_(layout), command_(std::move(command)),
      keys_(extension.onKey(
          [this](const std::string& accelerator, bool isDown) { tell(accelerator, isDown); })),
      presence_(extension.onPresenceChange([this] { follow(); })) {}

std::optional<std::string> GnomeHotKeyCenter::acceleratorOf(std::uint32_t keyCode,
                                                            std::uint32_t carbonModifiers) const {
    const auto name = KeyNames(layout_).name(static_cast<std::uint16_t>(keyCode));
    if (!name)
        return std::nullopt;
    return writtenAccelerator({.key = *name, .carbonModifiers = carbonModifiers});
}

std::optional<std::string> GnomeHotKeyCenter::holder(std::uint32_t keyCode, std::uint32_t carbonModifiers) {
    const KeyNames names(layout_);
    return holderOfShortcut([&](const std::string& accelerator) {
        const auto combination = acceleratorCombination(accelerator);
        return combination && combination->carbonModifiers == carbonModifiers &&
               names.virtualKeyCode(combination->key) == keyCode;
    });
}

OSStatus GnomeHotKeyCenter::registerEventHotKey(std::uint32_t keyCode, std::uint32_t carbonModifiers,
                                                EventHotKeyID id, Handle& handle) {
    auto accelerator = acceleratorOf(keyCode, carbonModifiers);
    if (!accelerator)
        return kGnomeParameterError;
    handle = ++lastHandle_;
    registrations_[handle] = {.identifier = id,
                              .accelerator = std::move(*accelerator),
                              .keyCode = keyCode,
                              .carbonModifiers = carbonModifiers};
    activate(registrations_[handle]);
    return noErr;
}

void GnomeHotKeyCenter::activate(const Registration& registration) {
    refusal_.clear();
    if (const auto present = holder(registration.keyCode, registration.carbonModifiers)) {
        refusal_ =
            "The hot key does not work: GNOME has it for “" + *present +
            "”. Record another one, or free it in GNOME’s settings, under Keyboard, and start Quillmoth "
            "again.";
        logLine("The hot key is one of GNOME's own.");
    }
    // A key that the user frees works from then on.
    const auto own = ownCustomShortcut();
    const std::string wanted = extension_.isThere() ? "" : registration.accelerator;
    if (own && *own != wanted)
        setOwnCustomShortcut(wanted, command_);
    if (extension_.isThere() && !refusal_.empty() && extension_.grabKey(registration.accelerator))
        refusal_.clear();
    else if (extension_.isThere() && refusal_.empty())
        grab(registration.accelerator);
}

void GnomeHotKeyCenter::grab(const std::string& accelerator) {
    if (extension_.grabKey(accelerator))
        return;
    QTimer::singleShot(kSecondTryMilliseconds, &context_, [this, accelerator] {
        if (!extension_.isThere() || extension_.grabKey(accelerator))
            return;
        refusal_ = "The hot key does not work: GNOME Shell has not taken it. Record another one.";
        logLine(refusal_);
    });
}

void GnomeHotKeyCenter::follow() {
    for (const auto& [handle, registration] : registrations_)
        activate(registration);
}

OSStatus GnomeHotKeyCenter::unregisterEventHotKey(Handle handle) {
    const auto found = registrations_.find(handle);
    if (found == registrations_.end())
        return kGnomeHotKeyInvalidError;
    extension_.releaseKey(found->second.accelerator);
    registrations_.erase(found);
    refusal_.clear();
    // The end of the program takes no custom shortcut away; another hot key takes the place of the former.
    QTimer::singleShot(0, &context_, [this] {
        if (registrations_.empty() && !ownCustomShortcut().value_or("").empty())
            setOwnCustomShortcut("", command_);
    });
    return noErr;
}

OSStatus GnomeHotKeyCenter::installEventHandler(Handler handler) {
    handler_ = std::move(handler);
    return noErr;
}

std::vector<SymbolicHotKey> GnomeHotKeyCenter::copySymbolicHotKeys() {
    const KeyNames names(layout_);
    std::vector<SymbolicHotKey> hotKeys;
    for (const std::string& accelerator : takenAccelerators()) {
        const auto combination = acceleratorCombination(accelerator);
        const auto keyCode = combination ? names.virtualKeyCode(combination->key) : std::nullopt;
        if (keyCode)
            hotKeys.push_back(
                {.enabled = true, .keyCode = *keyCode, .carbonModifiers = combination->carbonModifiers});
    }
    return hotKeys;
}

bool GnomeHotKeyCenter::isTakenElsewhere(std::uint32_t keyCode, std::uint32_t carbonModifiers) {
    return holder(keyCode, carbonModifiers).has_value();
}

std::string GnomeHotKeyCenter::obstacle() const {
    if (!refusal_.empty())
        return refusal_;
    return extension_.isThere() || usesCustomShortcut() ? "" : kNeedsConsent;
}

bool GnomeHotKeyCenter::usesCustomShortcut() {
    return ownCustomShortcut().has_value();
}

void GnomeHotKeyCenter::setUsesCustomShortcut(bool isWanted) {
    if (!isWanted)
        removeOwnCustomShortcut();
    else
        setOwnCustomShortcut("", command_);
    follow();
}

void GnomeHotKeyCenter::tell(const std::string& accelerator, bool isDown) {
    for (const auto& [handle, registration] : registrations_) {
        if (registration.accelerator != accelerator)
            continue;
        // A copy: the handler may be replaced while it runs.
        const auto handler = handler_;
        const HotKeyEvent told = {.kind = isDown ? kEventHotKeyPressed : kEventHotKeyReleased,
                                  .hotKeyID = registration.identifier};
        if (handler)
            handler(&told);
        return;
    }
}

} // namespace quillmoth::platform
