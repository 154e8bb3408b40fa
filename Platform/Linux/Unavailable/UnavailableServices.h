#pragma once

#include "Platform/HotKeyCenter.h"
#include "Platform/KeyboardEvents.h"
#include "Platform/KeyboardLayout.h"

/// What answers where the desktop offers no X server: nothing is done, and where the user would miss it the
/// log says what does not work. Main thread.
namespace quillmoth::platform {

class UnavailableHotKeyCenter final : public HotKeyCenter {
public:
    [[nodiscard]] bool hasEventTarget() const override { return false; }

    OSStatus registerEventHotKey(std::uint32_t keyCode, std::uint32_t carbonModifiers, EventHotKeyID id,
                                 Handle& handle) override;

    OSStatus unregisterEventHotKey(Handle) override { return eventNotHandledErr; }

    OSStatus installEventHandler(Handler) override { return eventNotHandledErr; }

    [[nodiscard]] std::vector<SymbolicHotKey> copySymbolicHotKeys() override { return {}; }

    [[nodiscard]] std::string obstacle() const override;
};

class UnavailableKeyboardEvents final : public KeyboardEvents {
public:
    [[nodiscard]] std::optional<CGKeyboardEvent> createKeyboardEvent(std::uint16_t, bool) override {
        return std::nullopt;
    }

    void post(const CGKeyboardEvent&) override {}
};

class UnavailableKeyboardLayout final : public KeyboardLayout {
public:
    [[nodiscard]] std::optional<std::string> translate(std::uint16_t) override { return std::nullopt; }
};

} // namespace quillmoth::platform
