#pragma once

#include "Platform/HotKeyCenter.h"
#include "Platform/KeyboardLayout.h"
#include "Platform/Linux/Desktop/KeyCombination.h"
#include "Platform/Linux/Gnome/GnomeExtension.h"

#include <QObject>

#include <map>
#include <optional>
#include <string>

namespace quillmoth::platform {

/// Hot keys in GNOME. With the extension they are keys of the shell, pressed and released. Without it a
/// custom shortcut of GNOME's runs this program's command, where the user has agreed: nothing is told of it
/// here then, and it stays when the program ends. What GNOME has for itself stays its own.
class GnomeHotKeyCenter final : public HotKeyCenter {
public:
    /// Both outlive the object. `command` is what the custom shortcut runs.
    GnomeHotKeyCenter(GnomeExtension& extension, KeyboardLayout& layout, std::string command);

    bool hasEventTarget() const override { return true; }

    OSStatus registerEventHotKey(std::uint32_t keyCode, std::uint32_t carbonModifiers, EventHotKeyID id,
                                 Handle& handle) override;
    OSStatus unregisterEventHotKey(Handle handle) override;
    OSStatus installEventHandler(Handler handler) override;

    std::vector<SymbolicHotKey> copySymbolicHotKeys() override;
    bool isTakenElsewhere(std::uint32_t keyCode, std::uint32_t carbonModifiers) override;
    std::string obstacle() const override;

    /// What GNOME does with the combination, in its own words; none where it is free.
    [[nodiscard]] std::optional<std::string> holder(std::uint32_t keyCode, std::uint32_t carbonModifiers);

    /// Whether a custom shortcut stands in for a hot key, by the user's wish.
    [[nodiscard]] static bool usesCustomShortcut();
    void setUsesCustomShortcut(bool isWanted);

private:
    struct Registration {
        EventHotKeyID identifier;
        std::string accelerator;
        std::uint32_t keyCode = 0;
        std::uint32_t carbonModifiers = 0;
    };

    [[nodiscard]] std::optional<std::string> acceleratorOf(std::uint32_t keyCode,
                                                           std::uint32_t carbonModifiers) const;
    void follow();
    void activate(const Registration& registration);
    void grab(const std::string& accelerator);
    void tell(const std::string& accelerator, bool isDown);

    GnomeExtension& extension_;
    KeyboardLayout& layout_;
    std::string command_;
    std::map<Handle, Registration> registrations_;
    Handle lastHandle_ = 0;
    Handler handler_;
    std::string refusal_;
    Subscription keys_;
    Subscription presence_;
    QObject context_;
};

} // namespace quillmoth::platform
