#include "Quillmoth/Settings/ImageSettings.h"

#include <algorithm>
#include <iterator>
#include <sstream>

namespace quillmoth {

namespace {

constexpr const char* kLoadsKey = "loadsRemoteImages";
constexpr const char* kHostsKey = "imageHosts"; // with a blank between them

} // namespace

bool ImageSettings::loadsRemoteImages() const {
    return userDefaults_.boolean(kLoadsKey, false);
}

void ImageSettings::setLoadsRemoteImages(bool loads) {
    userDefaults_.set(kLoadsKey, loads);
}

std::vector<std::string> ImageSettings::imageHosts() const {
    std::istringstream words(userDefaults_.string(kHostsKey).value_or(""));
    return {std::istream_iterator<std::string>(words), {}};
}

bool ImageSettings::loadsFrom(const std::string& host) const {
    const auto hosts = imageHosts();
    return std::ranges::find(hosts, host) != hosts.end();
}

void ImageSettings::allow(const std::string& host) {
    if (host.empty() || loadsFrom(host))
        return;
    std::string hosts;
    for (const std::string& known : imageHosts())
        hosts += known + " ";
    userDefaults_.set(kHostsKey, hosts + host);
}

void ImageSettings::forgetHosts() {
    userDefaults_.remove(kHostsKey);
}

} // namespace quillmoth
