#include "Quillmoth/Settings/SettingsModel.h"

#include "Foundation/FatalError.h"
#include "Quillmoth/Chat/ChatRequests.h"
#include "Quillmoth/Chat/ChatRoute.h"
#include "Quillmoth/Chat/ServiceAddresses.h"

namespace quillmoth {

namespace {

constexpr const char* kKeyKey = "openapikey";
constexpr const char* kModelKey = "model";
constexpr const char* kCopyHackKey = "useCopyHack";
constexpr const char* kConsentKey = "accessibilityConsent";
constexpr const char* kServerKey = "openAIBaseURL";
constexpr const char* kHidesKeyKey = "hidesAPIKey";

constexpr const char* kDefaultModel = "gpt-3.5-turbo";

} // namespace

std::string SettingsModel::apiKey() const {
    return keySetting(userDefaults_);
}

void SettingsModel::setAPIKey(const std::string& typed) {
    const std::string key(withoutPastedBlanks(typed));
    const bool changed = key != apiKey();
    userDefaults_.set(kKeyKey, key);
    if (changed && key.empty())
        setModel(kDefaultModel);
}

std::string SettingsModel::keyObstacle() const {
    return userDefaults_.obstacle(kKeyKey);
}

void SettingsModel::unlockKey() {
    userDefaults_.makeReadable(kKeyKey);
}

std::string SettingsModel::model() const {
    return userDefaults_.string(kModelKey).value_or(kDefaultModel);
}

void SettingsModel::setModel(const std::string& model) {
    userDefaults_.set(kModelKey, model);
}

std::vector<std::string> SettingsModel::offeredModels() const {
    if (apiKey().empty() && keyObstacle().empty())
        return {kDefaultModel};
    return {kDefaultModel, "gpt-3.5-turbo-16k", "gpt-4", "gpt-4-32k"};
}

bool SettingsModel::showsEligibilityWarning() const {
    return model().find("gpt-4") != std::string::npos;
}

bool SettingsModel::useCopyHack() const {
    return userDefaults_.boolean(kCopyHackKey, false);
}

void SettingsModel::setUseCopyHack(bool use) {
    userDefaults_.set(kCopyHackKey, use);
}

std::optional<bool> SettingsModel::accessibilityConsent() const {
    const auto stored = userDefaults_.object(kConsentKey);
    const auto* agreed = stored ? std::get_if<bool>(&*stored) : nullptr;
    return agreed != nullptr ? std::optional(*agreed) : std::nullopt;
}

void SettingsModel::setAccessibilityConsent(bool agreed) {
    userDefaults_.set(kConsentKey, agreed);
}

std::string SettingsModel::serverAddress() const {
    return userDefaults_.string(kServerKey).value_or("");
}

void SettingsModel::setServerAddress(const std::string& address) {
    if (address.empty())
        userDefaults_.remove(kServerKey);
    else
        userDefaults_.set(kServerKey, address);
}

std::optional<std::string> SettingsModel::unencryptedServer() const {
    const auto address = openAIAddress(userDefaults_);
    return address ? unencryptedOrigin(*address) : std::nullopt;
}

bool SettingsModel::sendsKeyUnencrypted(const std::string& origin) const {
    return quillmoth::sendsKeyUnencrypted(userDefaults_, origin);
}

void SettingsModel::setSendsKeyUnencrypted(const std::string& origin, bool agreed) {
    quillmoth::setSendsKeyUnencrypted(userDefaults_, origin, agreed);
}

void SettingsModel::setServerModel(const std::string& model) {
    if (model.empty())
        userDefaults_.remove(kModelKey);
    else
        setModel(model);
}

bool SettingsModel::hidesKey() const {
    return userDefaults_.boolean(kHidesKeyKey, false);
}

void SettingsModel::setHidesKey(bool hides) {
    userDefaults_.set(kHidesKeyKey, hides);
}

std::string versionString(const platform::Bundle& bundle) {
    const auto version = bundle.info("CFBundleShortVersionString");
    const auto build = bundle.info("CFBundleVersion");
    if (!version || !build)
        fatalError("The bundle does not tell its version.");
    return *version + " build " + *build;
}

} // namespace quillmoth
