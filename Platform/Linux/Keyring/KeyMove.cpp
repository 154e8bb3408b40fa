// The moves of the key: out of the settings file into the keyring, and back.

#include "Platform/Linux/Keyring/KeyringUserDefaults.h"

#include "Platform/Linux/Keyring/WhileAlive.h"

#include <utility>

namespace quillmoth::platform {

namespace {

constexpr const char* kStillLocked = "The keyring was not unlocked. The key stays in it.";
constexpr const char* kHeldNone = "The keyring held no key. Fill it in again.";
constexpr const char* kFileNotWritten =
    "The settings file could not be written, so the key stays in the keyring. Free some space, or make the "
    "file writable, and try again.";

} // namespace

void KeyringUserDefaults::setKeepsInKeyring(bool keeps) {
    if (isMoving_ || keeps == keepsInKeyring())
        return;
    if (keeps)
        moveIn();
    else
        moveOut();
}

void KeyringUserDefaults::moveIn() {
    const std::string key = file_.string(kKeyKey).value_or("");
    if (key.empty()) {
        // In this order: a missing one would be looked for in the keyring.
        file_.set(kKeyKey, std::string());
        file_.set(kSwitchKey, true);
        endMove();
        return;
    }
    isMoving_ = true;
    changed_.emit();
    writeAndCheck(key, [this, key](const Result<void>& done) { finishMovingIn(key, done); });
}

void KeyringUserDefaults::finishMovingIn(const std::string& moved, const Result<void>& done) {
    if (!done) {
        endMove("The key could not be put into the keyring: " + done.error().description +
                " It stays in the settings file.");
        return;
    }
    // What was typed meanwhile holds, and goes the same way.
    const std::string latest = file_.string(kKeyKey).value_or("");
    if (!isUnsaved_ && latest != moved) {
        isToBeRemoved_ = latest.empty();
        moveIn();
        return;
    }
    if (!isUnsaved_)
        key_ = moved;
    file_.set(kSwitchKey, true);
    if (!latest.empty())
        file_.remove(kKeyKey);
    endMove();
}

void KeyringUserDefaults::moveOut() {
    if (!isUnsaved_ && placeOfKey(file_) == KeyPlace::nowhere) {
        file_.set(kSwitchKey, false);
        endMove();
        return;
    }
    isMoving_ = true;
    if (!isInKeyring())
        finishMovingOut(file_.string(kKeyKey).value_or(""));
    else if (key_)
        finishMovingOut(*key_);
    else
        store_.read(whileAlive(
            life_, [this](const Result<std::optional<std::string>>& answer) { moveOutRead(answer); }));
    changed_.emit();
}

void KeyringUserDefaults::moveOutRead(const Result<std::optional<std::string>>& answer) {
    if (key_) {
        finishMovingOut(*key_); // typed, or fetched, meanwhile
    } else if (!isInKeyring()) {
        finishMovingOut(file_.string(kKeyKey).value_or(""));
    } else if (!answer) {
        endMove("The keyring did not give the key: " + answer.error().description + " The key stays in it.");
    } else if (*answer) {
        finishMovingOut(**answer);
    } else {
        store_.lookUpState(whileAlive(life_, [this](SecretStore::State state) {
            if (state != SecretStore::State::unlocked) {
                endMove(kStillLocked);
                return;
            }
            file_.set(kSwitchKey, false);
            endMove(kHeldNone);
        }));
    }
}

/// By value: it may come from `key_`.
void KeyringUserDefaults::finishMovingOut(std::string key) {
    isUnsaved_ = false;
    isToBeRemoved_ = false;
    key_.reset();
    fetch_ = Fetch::pending;
    file_.set(kKeyKey, std::move(key));
    file_.set(kSwitchKey, false);
    whenStored_(std::string(kKeyKey), whileAlive(life_, [this](bool isStored) {
                    if (!isStored) {
                        file_.set(kSwitchKey, true);
                        setKey(file_.string(kKeyKey).value_or(""));
                        endMove(kFileNotWritten);
                        return;
                    }
                    store_.remove(whileAlive(life_, [this](const Result<void>& done) {
                        endMove(done ? ""
                                     : "The key is in the settings file, but could not be taken out of the "
                                       "keyring: " +
                                           done.error().description);
                    }));
                }));
}

void KeyringUserDefaults::endMove(std::string problem) {
    isMoving_ = false;
    keepingProblem_ = std::move(problem);
    saveNext();
    changed_.emit();
}

} // namespace quillmoth::platform
