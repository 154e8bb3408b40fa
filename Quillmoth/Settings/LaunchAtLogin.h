#pragma once

#include "Foundation/Published.h"
#include "Platform/Bundle.h"
#include "Platform/LoginItem.h"
#include "Platform/UserDefaults.h"

#include <string>

namespace quillmoth {

/// Whether the desktop starts the program with the user's session. Kept by the desktop alone and asked anew
/// at each reading. Main thread. Its notice bears the name "isEnabled".
class LaunchAtLogin : public ObservableObject {
public:
    /// The services outlive the object.
    LaunchAtLogin(platform::LoginItems& loginItems, const platform::Bundle& bundle,
                  platform::UserDefaults& userDefaults);

    [[nodiscard]] bool isEnabled() const;

    /// A failure is logged; isEnabled then tells how it stands.
    void setEnabled(bool enabled);

    /// Once in the life of the settings: takes over what the former helper item says, and removes that one.
    void migrateIfNeeded();

private:
    [[nodiscard]] std::string helperIdentifier() const;

    platform::LoginItems& loginItems_;
    platform::UserDefaults& userDefaults_;
    std::string identifier_;
};

} // namespace quillmoth
