#pragma once

#include "Platform/SecretStore.h"

#include <QObject>

namespace QKeychain {
class Job;
}

namespace quillmoth::platform {

/// The user's key in the Secret Service of the desktop, through QtKeychain. Touches neither the bus nor the
/// library before the first operation. The process needs Qt's event loop.
class QtKeychainStore final : public SecretStore {
public:
    void lookUpState(std::function<void(State)> completion) override;
    void read(std::function<void(Result<std::optional<std::string>>)> completion) override;
    void write(const std::string& secret, std::function<void(Result<void>)> completion) override;
    void remove(std::function<void(Result<void>)> completion) override;

private:
    // What is under way is told only as long as this lives.
    QObject context_;
};

} // namespace quillmoth::platform
