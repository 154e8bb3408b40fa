#pragma once

#include <string>

namespace quillmoth::test {

/// tls_server.py as a process of its own, which ends with the object.
class TLSServer {
public:
    /// Returns when it listens; `isRunning` is false where it could not be started.
    TLSServer();
    ~TLSServer();
    TLSServer(const TLSServer&) = delete;
    TLSServer& operator=(const TLSServer&) = delete;

    [[nodiscard]] bool isRunning() const { return wronghost != 0; }

    /// The file of the authority that signed the certificates.
    std::string authority;
    // The ports; `http1` has the good certificate, and speaks HTTP/1.1 alone.
    int http1 = 0;
    int good = 0;
    int expired = 0;
    int selfsigned = 0;
    int wronghost = 0;

private:
    int process_ = -1;
    int input_ = -1;
};

} // namespace quillmoth::test
