#include "Platform/Linux/Keyring/KeyringUserDefaults.h"

#include "Platform/Linux/Keyring/WhileAlive.h"

#include <utility>

namespace quillmoth::platform {

namespace {

constexpr const char* kPending = "Your key has not come from the keyring yet. Nothing was sent. Press Return "
                                 "again in a moment.";
constexpr const char* kLocked = "The keyring is locked. Unlock it to send. Nothing was sent, and your text "
                                "is still there: Return sends it.";
constexpr const char* kMissing =
    "The keyring holds no key of Quillmoth any more. Nothing was sent. Fill in your key in Settings.";
constexpr const char* kFailed =
    " Nothing was sent. Return tries again; a key that you fill in in Settings takes "
    "the place of the one in the keyring.";

using Answer = Result<std::optional<std::string>>;

} // namespace

KeyringUserDefaults::KeyringUserDefaults(UserDefaults& file, SecretStore& store, WhenStored whenStored)
    : file_(file), store_(store), whenStored_(std::move(whenStored)) {}

KeyringUserDefaults::KeyPlace KeyringUserDefaults::placeOfKey(const UserDefaults& file) {
    if (file.boolean(kSwitchKey, false) && !file.object(kKeyKey))
        return KeyPlace::keyring;
    return file.string(kKeyKey).value_or("").empty() ? KeyPlace::nowhere : KeyPlace::file;
}

bool KeyringUserDefaults::isInKeyring() const {
    return isUnsaved_ || placeOfKey(file_) == KeyPlace::keyring;
}

std::optional<DefaultsValue> KeyringUserDefaults::object(std::string_view key) const {
    if (key != kKeyKey || !isInKeyring())
        return file_.object(key);
    return key_ ? std::optional<DefaultsValue>(*key_) : std::nullopt;
}

void KeyringUserDefaults::set(std::string_view key, DefaultsValue value) {
    const auto* text = std::get_if<std::string>(&value);
    if (key == kKeyKey && text != nullptr && keepsInKeyring())
        setKey(*text);
    else
        file_.set(key, std::move(value));
}

void KeyringUserDefaults::remove(std::string_view key) {
    if (key == kKeyKey && keepsInKeyring())
        setKey({});
    else
        file_.remove(key);
}

/// An empty key stands in the file, so that nobody is asked to unlock the keyring for it.
void KeyringUserDefaults::setKey(const std::string& text) {
    isUnsaved_ = !text.empty();
    isToBeRemoved_ = text.empty();
    key_ = isUnsaved_ ? std::optional(text) : std::nullopt;
    keepingProblem_.clear();
    if (text.empty())
        file_.set(kKeyKey, std::string());
    saveNext();
    changed_.emit();
}

std::string KeyringUserDefaults::obstacle(std::string_view key) const {
    if (key != kKeyKey || !isInKeyring() || key_)
        return {};
    switch (fetch_) {
    case Fetch::pending:
        return kPending;
    case Fetch::locked:
        return kLocked;
    case Fetch::missing:
        return kMissing;
    case Fetch::failed:
        break;
    }
    return "The keyring did not give your key: " + fetchFault_ + kFailed;
}

void KeyringUserDefaults::makeReadable(std::string_view key) {
    if (!obstacle(key).empty() && !isFetching_ && !isMoving_)
        fetch(asking_ ? asking_() : nullptr);
}

void KeyringUserDefaults::prepareKey() {
    if (!keepsInKeyring() || key_ || isFetching_ || isSavingKey())
        return;
    const bool isToMove = placeOfKey(file_) == KeyPlace::file;
    if (!isToMove && !isInKeyring())
        return;
    store_.lookUpState(whileAlive(life_, [this, isToMove](SecretStore::State state) {
        if (key_ || isFetching_ || isSavingKey() || isToMove != (placeOfKey(file_) == KeyPlace::file))
            return;
        if (state == SecretStore::State::unlocked)
            isToMove ? moveIn() : fetch();
        else if (!isToMove && state == SecretStore::State::locked)
            stopAt(Fetch::locked);
    }));
}

void KeyringUserDefaults::fetch(std::function<void()> finished) {
    isFetching_ = true;
    store_.read(whileAlive(life_, [this, finished = std::move(finished)](const Answer& answer) {
        isFetching_ = false;
        take(answer);
        if (finished)
            finished();
    }));
}

void KeyringUserDefaults::take(const Answer& answer) {
    if (isUnsaved_ || !isInKeyring())
        return;
    if (!answer) {
        stopAt(Fetch::failed, answer.error().description);
    } else if (*answer) {
        key_ = **answer;
        changed_.emit();
    } else {
        // The question for the password may have been closed without one.
        store_.lookUpState(whileAlive(life_, [this](SecretStore::State state) {
            stopAt(state == SecretStore::State::locked ? Fetch::locked : Fetch::missing);
        }));
    }
}

void KeyringUserDefaults::stopAt(Fetch fetch, std::string reason) {
    fetch_ = fetch;
    fetchFault_ = std::move(reason);
    changed_.emit();
}

Subscription KeyringUserDefaults::onChange(std::function<void()> subscriber) {
    if (!fileChange_)
        fileChange_ = file_.onChange([this] { changed_.emit(); });
    return changed_.subscribe(std::move(subscriber));
}

bool KeyringUserDefaults::keepsInKeyring() const {
    return file_.boolean(kSwitchKey, false);
}

bool KeyringUserDefaults::offersKeyring() const {
    return hasKeyring_ || keepsInKeyring();
}

void KeyringUserDefaults::lookForKeyring() {
    store_.lookUpState(whileAlive(life_, [this](SecretStore::State state) {
        const bool has = state != SecretStore::State::absent;
        if (std::exchange(hasKeyring_, has) != has)
            changed_.emit();
    }));
}

/// One change after the other; of several the last.
void KeyringUserDefaults::saveNext() {
    if (isSavingKey())
        return;
    if (isUnsaved_) {
        isSaving_ = true;
        writeAndCheck(*key_, [this, text = *key_](const Result<void>& done) { finishSaving(text, done); });
    } else if (std::exchange(isToBeRemoved_, false)) {
        isSaving_ = true;
        store_.remove(whileAlive(life_, [this](const Result<void>& done) {
            isSaving_ = false;
            if (!done)
                keepingProblem_ = "The old key is still in the keyring: " + done.error().description;
            saveNext();
            changed_.emit();
        }));
    }
}

void KeyringUserDefaults::finishSaving(const std::string& saved, const Result<void>& done) {
    isSaving_ = false;
    if (!isUnsaved_ || *key_ != saved) {
        saveNext();
        return;
    }
    isUnsaved_ = !done;
    if (done)
        file_.remove(kKeyKey);
    else
        keepingProblem_ = "The key could not be saved in the keyring: " + done.error().description +
                          " It holds until Quillmoth ends. Switch the keyring off to keep it in the settings "
                          "file.";
    changed_.emit();
}

void KeyringUserDefaults::writeAndCheck(const std::string& text,
                                        std::function<void(Result<void>)> completion) {
    const auto check = [text, completion](const Answer& answer) {
        if (!answer)
            completion(answer.error());
        else if (*answer != text)
            completion(Error{"It does not read back as it was written."});
        else
            completion({});
    };
    store_.write(text, whileAlive(life_, [this, completion, check](const Result<void>& written) {
                     if (written)
                         store_.read(whileAlive(life_, check));
                     else
                         completion(written);
                 }));
}

} // namespace quillmoth::platform
