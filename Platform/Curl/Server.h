#pragma once

#include <optional>
#include <string>

namespace quillmoth::platform {

/// What of an http or https address decides where a request goes.
struct Server {
    /// Lower case.
    std::string scheme;
    /// An IPv6 address stands in brackets.
    std::string host;
    std::string port;

    /// The server in words for the user: the host, and the port where it is not the scheme's own.
    [[nodiscard]] std::string name() const;

    /// The scheme with it, as in an address.
    [[nodiscard]] std::string origin() const { return scheme + "://" + name(); }

    friend bool operator==(const Server& first, const Server& second);
};

/// None where `url` is not an absolute http or https address with a host.
[[nodiscard]] std::optional<Server> serverOf(const std::string& url);

} // namespace quillmoth::platform
