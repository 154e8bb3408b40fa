#pragma once

#include "Foundation/Subscription.h"

#include <functional>
#include <string>

namespace quillmoth::platform {

/// Where the user's key is kept, in the settings file or in the keyring of the desktop, for the settings to
/// show and to change. Main thread.
class KeyKeeping {
public:
    virtual ~KeyKeeping() = default;

    /// Looks in the background whether the desktop has a keyring.
    virtual void lookForKeyring() = 0;
    /// There was a keyring when it was looked for, or the key is to be in one.
    [[nodiscard]] virtual bool offersKeyring() const = 0;

    [[nodiscard]] virtual bool keepsInKeyring() const = 0;
    /// Moves the key in the background; where that fails it stays where it was. Nothing while it is being
    /// moved.
    virtual void setKeepsInKeyring(bool keeps) = 0;
    [[nodiscard]] virtual bool isMovingKey() const = 0;

    /// What has failed last, what became of the key and what to do, in words for the user; empty where
    /// nothing has.
    [[nodiscard]] virtual std::string keepingProblem() const = 0;

    /// Called after any of this has changed.
    virtual Subscription onChange(std::function<void()> subscriber) = 0;
};

} // namespace quillmoth::platform
