#pragma once

#include "Platform/UserDefaults.h"

#include <string>
#include <vector>

namespace quillmoth {

/// Which images of answers load by themselves: a view on the defaults store that keeps nothing of its own.
/// Hosts are in lower case. Main thread.
class ImageSettings {
public:
    /// The store outlives the object.
    explicit ImageSettings(platform::UserDefaults& userDefaults) : userDefaults_(userDefaults) {}

    [[nodiscard]] bool loadsRemoteImages() const;
    void setLoadsRemoteImages(bool loads);

    /// Whose images load without being asked for, in the order in which they were allowed.
    [[nodiscard]] std::vector<std::string> imageHosts() const;
    [[nodiscard]] bool loadsFrom(const std::string& host) const;
    void allow(const std::string& host);
    void forgetHosts();

private:
    platform::UserDefaults& userDefaults_;
};

} // namespace quillmoth
