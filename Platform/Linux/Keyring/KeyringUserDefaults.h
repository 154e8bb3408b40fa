#pragma once

#include "Platform/KeyKeeping.h"
#include "Platform/SecretStore.h"
#include "Platform/UserDefaults.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace quillmoth::platform {

/// The settings of a file, of which the user's key alone is kept in the keyring where the user wants that.
/// Main thread; no operation waits for the keyring.
///
/// With the switch on, a key that is missing in the file is in the keyring, and one that stands in the file,
/// an empty one too, is the key: it is moved when the keyring is next found unlocked. A key that is in the
/// keyring and has not been fetched is an obstacle, never an absent key. What is fetched stays in memory. A
/// key leaves the one place only when it has been read back from the other.
class KeyringUserDefaults final : public UserDefaults, public KeyKeeping {
public:
    /// Calls `completion` on the main thread when the changes to the file so far are on the disk, or have
    /// failed to get there, with whether the setting `key` is.
    using WhenStored = std::function<void(const std::string& key, std::function<void(bool)> completion)>;

    /// `file` and `store` outlive the object.
    KeyringUserDefaults(UserDefaults& file, SecretStore& store, WhenStored whenStored);

    enum class KeyPlace { nowhere, file, keyring };
    /// Where the key is, by what a settings file says.
    [[nodiscard]] static KeyPlace placeOfKey(const UserDefaults& file);

    /// `asking` is called when a request begins to wait for the user, who may be asked for a password; what
    /// it returns is called when that is over, whether the key has come or not.
    void setAskingHandler(std::function<std::function<void()>()> asking) { asking_ = std::move(asking); }

    /// The key will be needed soon: fetches it in the background where the keyring is unlocked. Asks nothing
    /// of the user.
    void prepareKey();

    /// A change is on its way to the keyring.
    [[nodiscard]] bool isSavingKey() const { return isSaving_ || isMoving_; }

    [[nodiscard]] std::optional<DefaultsValue> object(std::string_view key) const override;
    void set(std::string_view key, DefaultsValue value) override;
    void remove(std::string_view key) override;

    [[nodiscard]] std::string problem() const override { return file_.problem(); }

    [[nodiscard]] std::string obstacle(std::string_view key) const override;
    void makeReadable(std::string_view key) override;
    Subscription onChange(std::function<void()> subscriber) override;

    void lookForKeyring() override;
    [[nodiscard]] bool offersKeyring() const override;
    [[nodiscard]] bool keepsInKeyring() const override;
    void setKeepsInKeyring(bool keeps) override;

    [[nodiscard]] bool isMovingKey() const override { return isMoving_; }

    [[nodiscard]] std::string keepingProblem() const override { return keepingProblem_; }

private:
    static constexpr std::string_view kKeyKey = "openapikey";
    static constexpr std::string_view kSwitchKey = "keepsKeyInKeyring";
    /// How far the key has come from the keyring.
    enum class Fetch { pending, locked, missing, failed };

    [[nodiscard]] bool isInKeyring() const;
    void setKey(const std::string& text);
    void fetch(std::function<void()> finished = {});
    void take(const Result<std::optional<std::string>>& answer);
    void stopAt(Fetch fetch, std::string reason = {});
    void saveNext();
    void finishSaving(const std::string& saved, const Result<void>& done);
    void writeAndCheck(const std::string& text, std::function<void(Result<void>)> completion);
    void moveIn();
    void finishMovingIn(const std::string& moved, const Result<void>& done);
    void moveOut();
    void moveOutRead(const Result<std::optional<std::string>>& answer);
    void finishMovingOut(std::string key);
    void endMove(std::string problem = {});

    UserDefaults& file_;
    SecretStore& store_;
    WhenStored whenStored_;
    std::function<std::function<void()>()> asking_;
    // What the keyring holds, or shall hold; none before it has been fetched.
    std::optional<std::string> key_;
    // The key in memory is not in the keyring yet.
    bool isUnsaved_ = false;
    // The keyring's key is to go, since the user has emptied it.
    bool isToBeRemoved_ = false;
    bool isFetching_ = false;
    bool isSaving_ = false;
    bool isMoving_ = false;
    bool hasKeyring_ = false;
    Fetch fetch_ = Fetch::pending;
    std::string fetchFault_;
    std::string keepingProblem_;
    Signal<> changed_;
    Subscription fileChange_;
    std::shared_ptr<int> life_ = std::make_shared<int>();
};

} // namespace quillmoth::platform
