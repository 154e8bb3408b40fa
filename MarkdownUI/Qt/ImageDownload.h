#pragma once

#include <QByteArray>
#include <QString>

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

namespace quillmoth::markdown {

/// Where the download of an image may lead. "Public" is what is no loopback, link-local or private address.
enum class ImageReach : std::uint8_t {
    sameHost,      ///< public addresses, and no redirect to another host
    publicNetwork, ///< public addresses
    asked,         ///< any address for the host of the URL, public ones for those that it redirects to
};

struct ImageRequest {
    QString url; ///< absolute, http or https but for where everything is allowed
    ImageReach reach = ImageReach::sameHost;
};

/// Why there is no image.
enum class ImageProblem : std::uint8_t {
    none,
    unreachable,
    privateNetwork, ///< the name led to an address that `reach` does not allow
    elsewhere,      ///< it led to another host
    tooManyBytes,
    tooManyPixels,
    unknownFormat, ///< or damaged
};

struct ImageAnswer {
    QByteArray data{};
    ImageProblem problem = ImageProblem::none;
};

/// Starts loading; later calls `finished` once, on any thread. Ends by itself beyond kMostImageBytes.
using ImageDownload =
    std::function<void(const ImageRequest& request, std::function<void(ImageAnswer)> finished)>;

using ImageClock = std::function<std::chrono::steady_clock::time_point()>;

/// What the user allows; all are called on the main thread and may be empty. Hosts are in lower case.
struct ImagePermissions {
    std::function<bool()> loadsAll{};
    std::function<bool(const std::string& host)> loadsFrom{};
    /// Remembers that images of the host load by themselves.
    std::function<void(const std::string& host)> allow{};
    /// Every URL loads by itself, files among them: for a document of the user's own.
    bool isUnrestricted = false;
};

/// What images need from outside. Without a download only "data:" URLs give images.
struct ImageServices {
    ImageDownload download{};
    ImagePermissions permissions{};
    ImageClock clock = std::chrono::steady_clock::now;
};

} // namespace quillmoth::markdown
