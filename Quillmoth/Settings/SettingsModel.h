#pragma once

#include "Platform/Bundle.h"
#include "Platform/UserDefaults.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmoth {

/// The product's web site; its pages are paths below it.
inline constexpr std::string_view kWebSite = "https://quillmoth.example";

/// The settings behind the settings window: a view on the defaults store that keeps nothing of its own.
/// Values are stored as they are typed, at once, and hold from their next use on. Main thread.
class SettingsModel {
public:
    /// The store outlives the object.
    explicit SettingsModel(platform::UserDefaults& userDefaults) : userDefaults_(userDefaults) {}

    [[nodiscard]] std::string apiKey() const;
    /// Stored without the blanks and line ends around it. Emptying the key puts the model back to the one
    /// that needs none.
    void setAPIKey(const std::string& typed);
    /// Why the key, which is there, cannot be read for now, in words; empty where it can, or there is none.
    [[nodiscard]] std::string keyObstacle() const;
    /// Has the desktop ask the user for what makes the key readable.
    void unlockKey();

    [[nodiscard]] std::string model() const;
    void setModel(const std::string& model);
    /// What the picker offers now. The stored model may be another one.
    [[nodiscard]] std::vector<std::string> offeredModels() const;
    [[nodiscard]] bool showsEligibilityWarning() const;

    [[nodiscard]] bool useCopyHack() const;
    void setUseCopyHack(bool use);

    /// The answer to the question whether accessibility may be switched on for the desktop; none before it.
    [[nodiscard]] std::optional<bool> accessibilityConsent() const;
    void setAccessibilityConsent(bool agreed);

    /// The address of the user's own server; empty for the built-in one.
    [[nodiscard]] std::string serverAddress() const;
    void setServerAddress(const std::string& address);
    /// "http://host:port" of the server in force where the key would go there unencrypted over a network.
    [[nodiscard]] std::optional<std::string> unencryptedServer() const;
    [[nodiscard]] bool sendsKeyUnencrypted(const std::string& origin) const;
    void setSendsKeyUnencrypted(const std::string& origin, bool agreed);
    /// Like setModel, but an empty name stands for the default.
    void setServerModel(const std::string& model);

    /// Whether the key field shows dots.
    [[nodiscard]] bool hidesKey() const;
    void setHidesKey(bool hides);

private:
    platform::UserDefaults& userDefaults_;
};

/// "1.2 build 34". A description without these values is a fatal fault.
[[nodiscard]] std::string versionString(const platform::Bundle& bundle);

} // namespace quillmoth
