#pragma once

#include "Platform/MainQueue.h"
#include "Platform/SecretStore.h"

#include <optional>
#include <string>

namespace quillmoth::platform {

/// A keyring in memory, which answers on the main queue. What needs an unlocked one asks the "user" first.
class FakeSecretStore final : public SecretStore {
public:
    explicit FakeSecretStore(MainQueue& mainQueue) : mainQueue_(mainQueue) {}

    void lookUpState(std::function<void(State)> completion) override;
    void read(std::function<void(Result<std::optional<std::string>>)> completion) override;
    void write(const std::string& secret, std::function<void(Result<void>)> completion) override;
    void remove(std::function<void(Result<void>)> completion) override;

    State state = State::unlocked;
    std::optional<std::string> secret;
    /// What the user does when asked for the password.
    bool unlocksWhenAsked = true;
    int questions = 0;
    /// What reading, writing and removing fail with, where set.
    std::string readFailure;
    std::string writeFailure;
    std::string removeFailure;

private:
    /// False where the keyring stays locked.
    bool unlock();

    MainQueue& mainQueue_;
};

} // namespace quillmoth::platform
