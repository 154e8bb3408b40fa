#include "Platform/Fake/FakeSecretStore.h"

#include <utility>

namespace quillmoth::platform {

bool FakeSecretStore::unlock() {
    if (state != State::locked)
        return true;
    ++questions;
    if (unlocksWhenAsked)
        state = State::unlocked;
    return unlocksWhenAsked;
}

void FakeSecretStore::lookUpState(std::function<void(State)> completion) {
    mainQueue_.async([this, completion = std::move(completion)] { completion(state); });
}

void FakeSecretStore::read(std::function<void(Result<std::optional<std::string>>)> completion) {
    mainQueue_.async([this, completion = std::move(completion)] {
        if (!readFailure.empty())
            completion(Error{readFailure});
        else
            completion(unlock() ? secret : std::nullopt);
    });
}

void FakeSecretStore::write(const std::string& text, std::function<void(Result<void>)> completion) {
    mainQueue_.async([this, text, completion = std::move(completion)] {
        if (!unlock() || !writeFailure.empty()) {
            completion(Error{writeFailure.empty() ? "locked" : writeFailure});
            return;
        }
        secret = text;
        completion({});
    });
}

void FakeSecretStore::remove(std::function<void(Result<void>)> completion) {
    mainQueue_.async([this, completion = std::move(completion)] {
        if (!unlock() || !removeFailure.empty()) {
            completion(Error{removeFailure.empty() ? "locked" : removeFailure});
            return;
        }
        secret.reset();
        completion({});
    });
}

} // namespace quillmoth::platform
