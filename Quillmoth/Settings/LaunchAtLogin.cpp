#include "Quillmoth/Settings/LaunchAtLogin.h"

#include "Foundation/FatalError.h"
#include "Foundation/Log.h"

namespace quillmoth {

namespace {

constexpr const char* kHasMigratedKey = "LaunchAtLogin__hasMigrated";

} // namespace

LaunchAtLogin::LaunchAtLogin(platform::LoginItems& loginItems, const platform::Bundle& bundle,
                             platform::UserDefaults& userDefaults)
    : loginItems_(loginItems), userDefaults_(userDefaults) {
    const auto identifier = bundle.info("CFBundleIdentifier");
    if (!identifier)
        fatalError("The bundle has no identifier.");
    identifier_ = *identifier;
}

bool LaunchAtLogin::isEnabled() const {
    return loginItems_.isEnabled(identifier_);
}

void LaunchAtLogin::setEnabled(bool enabled) {
    sendWillChange("isEnabled");
    const auto change = [&]() -> Result<void> {
        if (!enabled)
            return loginItems_.unregisterItem(identifier_);
        if (loginItems_.isEnabled(identifier_)) {
            if (auto removed = loginItems_.unregisterItem(identifier_); !removed)
                return removed;
        }
        return loginItems_.registerItem(identifier_);
    };
    if (const auto changed = change(); !changed)
        logLine(std::string("Failed to ") + (enabled ? "enable" : "disable") +
                " launch at login: " + changed.error().description);
}

std::string LaunchAtLogin::helperIdentifier() const {
    return identifier_ + "-LaunchAtLoginHelper";
}

void LaunchAtLogin::migrateIfNeeded() {
    if (userDefaults_.boolean(kHasMigratedKey, false))
        return;
    userDefaults_.set(kHasMigratedKey, true);
    if (loginItems_.isEnabled(helperIdentifier()))
        setEnabled(true);
    // Where it cannot be removed it is left: it starts the program that is then running already.
    static_cast<void>(loginItems_.unregisterItem(helperIdentifier()));
}

} // namespace quillmoth
