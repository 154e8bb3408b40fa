#pragma once

#include "Platform/HotKeyCenter.h"
#include "Platform/Linux/Sway/SwayConfig.h"
#include "Platform/Linux/Sway/SwayConnection.h"

#include <map>
#include <optional>

namespace quillmoth::platform {

/// Hot keys as bindings of the compositor, made over its socket and taken back at the end; a configuration
/// that is read again drops them, after which they are made again. What the user's configuration has bound
/// stays the user's; a hot key waits for it until a configuration without it is read. The compositor repeats
/// the press of a held key; one event comes of it. A press that other keys follow has no release.
class SwayHotKeyCenter final : public HotKeyCenter {
public:
    using KeycodeOf = std::function<std::optional<std::uint32_t>(const std::string& name)>;

    /// `connection` outlives the object. `keycodeOf` as for boundSwayCommand.
    SwayHotKeyCenter(SwayConnection& connection, KeycodeOf keycodeOf);
    ~SwayHotKeyCenter() override;
    SwayHotKeyCenter(const SwayHotKeyCenter&) = delete;
    SwayHotKeyCenter& operator=(const SwayHotKeyCenter&) = delete;

    bool hasEventTarget() const override { return true; }

    OSStatus registerEventHotKey(std::uint32_t keyCode, std::uint32_t carbonModifiers, EventHotKeyID id,
                                 Handle& handle) override;
    OSStatus unregisterEventHotKey(Handle handle) override;
    OSStatus installEventHandler(Handler handler) override;

    std::vector<SymbolicHotKey> copySymbolicHotKeys() override { return {}; }

    bool isTakenElsewhere(std::uint32_t keyCode, std::uint32_t carbonModifiers) override;

    /// Tells of the key that was refused last, or waits.
    std::string obstacle() const override { return obstacle_; }

private:
    struct Registration {
        EventHotKeyID identifier;
        SwayCombination combination;
        /// Otherwise it waits.
        bool isBound = false;
    };

    [[nodiscard]] std::optional<std::string> usersCommand(const SwayCombination& combination);
    /// False where the compositor has refused it.
    bool bindOrWait(Handle handle, Registration& registration);
    bool bind(Handle handle, const SwayCombination& combination);
    void unbind(const Registration& registration);
    void handle(SwayConnection::Event kind, const nlohmann::json& event);
    void handleBinding(const std::string& command);

    SwayConnection& connection_;
    KeycodeOf keycodeOf_;
    std::map<Handle, Registration> registrations_;
    Handle lastHandle_ = 0;
    Handle pressed_ = 0;
    Handler handler_;
    std::string obstacle_;
    Subscription events_;
};

} // namespace quillmoth::platform
