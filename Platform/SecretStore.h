#pragma once

#include "Foundation/Result.h"

#include <functional>
#include <optional>
#include <string>

namespace quillmoth::platform {

/// The keyring of the desktop, in which this program keeps one secret. Main thread: nothing here waits, and
/// every completion is called once, later, on this thread; none is called after the store has ended.
class SecretStore {
public:
    enum class State {
        /// The desktop has no keyring, or it does not answer.
        absent,
        locked,
        unlocked,
    };

    virtual ~SecretStore() = default;

    /// Asks nothing of the user.
    virtual void lookUpState(std::function<void(State)> completion) = 0;

    /// None where nothing is kept, and where the user did not unlock the keyring. Of a locked one the desktop
    /// asks the user to unlock it, here and below, which takes as long as the user does.
    virtual void read(std::function<void(Result<std::optional<std::string>>)> completion) = 0;
    virtual void write(const std::string& secret, std::function<void(Result<void>)> completion) = 0;
    /// That nothing is kept is no failure.
    virtual void remove(std::function<void(Result<void>)> completion) = 0;
};

} // namespace quillmoth::platform
