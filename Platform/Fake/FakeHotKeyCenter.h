#pragma once

#include "Platform/HotKeyCenter.h"

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace quillmoth::platform {

/// Hot keys that the test presses.
class FakeHotKeyCenter final : public HotKeyCenter {
public:
    struct Registration {
        std::uint32_t keyCode = 0;
        std::uint32_t carbonModifiers = 0;
        EventHotKeyID id;
    };

    [[nodiscard]] bool hasEventTarget() const override { return hasTarget; }

    OSStatus registerEventHotKey(std::uint32_t keyCode, std::uint32_t carbonModifiers, EventHotKeyID id,
                                 Handle& handle) override;
    OSStatus unregisterEventHotKey(Handle handle) override;
    OSStatus installEventHandler(Handler handler) override;

    [[nodiscard]] std::vector<SymbolicHotKey> copySymbolicHotKeys() override { return symbolicHotKeys; }

    [[nodiscard]] bool isTakenElsewhere(std::uint32_t keyCode, std::uint32_t carbonModifiers) override {
        return takenElsewhere.contains({keyCode, carbonModifiers});
    }

    [[nodiscard]] std::string obstacle() const override { return obstacleText; }

    /// Hands `event` to the handler; eventNotHandledErr where none is installed.
    OSStatus send(const HotKeyEvent* event);

    /// Presses or releases the registered combination; eventNotHandledErr where it is not registered.
    OSStatus press(std::uint32_t keyCode, std::uint32_t carbonModifiers);
    OSStatus release(std::uint32_t keyCode, std::uint32_t carbonModifiers);

    bool hasTarget = true;
    std::string obstacleText;
    OSStatus registerStatus = noErr;
    OSStatus unregisterStatus = noErr;
    OSStatus installStatus = noErr;
    /// With this a registration succeeds and gives no handle.
    bool givesNoHandle = false;
    std::vector<SymbolicHotKey> symbolicHotKeys;
    /// Combinations that another program has.
    std::set<std::pair<std::uint32_t, std::uint32_t>> takenElsewhere;

    /// All that were ever asked for, refused ones included.
    std::vector<Registration> requests;
    std::map<Handle, Registration> registrations;
    std::size_t installCount = 0;
    /// "register 49 2048", "unregister 49 2048", "install", in order.
    std::vector<std::string> calls;

private:
    OSStatus sendKey(std::uint32_t kind, std::uint32_t keyCode, std::uint32_t carbonModifiers);

    Handler handler_;
    Handle nextHandle_ = 1;
};

} // namespace quillmoth::platform
