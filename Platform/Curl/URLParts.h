#pragma once

#include "Platform/Curl/CurlLibrary.h"

#include <optional>
#include <string>

namespace quillmoth::platform {

/// What of an http or https address decides where a request goes.
struct URLParts {
    std::string scheme;
    std::string host;
    std::string port;

    /// The server in words for the user: the host, and the port where it is not the scheme's own.
    [[nodiscard]] std::string server() const;

    friend bool operator==(const URLParts&, const URLParts&) = default;
};

/// None where `url` is not an absolute http or https address with a host.
[[nodiscard]] std::optional<URLParts> parseURL(const CurlLibrary& curl, const std::string& url);

/// The address that `reference` (RFC 3986, section 4.1) means in a document at `base`; none where it has no
/// meaning or is neither http nor https.
[[nodiscard]] std::optional<std::string> resolvedURL(const CurlLibrary& curl, const std::string& base,
                                                     const std::string& reference);

} // namespace quillmoth::platform
