#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillmoth::test {

/// A request as the server has read it.
struct ScriptedRequest {
    /// Which of the server's connections it came by, counted from 1.
    int connection = 0;
    std::string method;
    /// As in the request line: with a proxy, the whole address.
    std::string target;
    /// Without the query.
    std::string path;
    std::vector<std::pair<std::string, std::string>> headers;
    std::string body;

    [[nodiscard]] std::optional<std::string> header(std::string_view name) const;
};

/// The server's side of one connection. One thread, but for interrupt.
class HTTPConnection {
public:
    explicit HTTPConnection(int socket) : socket_(socket) {}

    ~HTTPConnection();
    HTTPConnection(const HTTPConnection&) = delete;
    HTTPConnection& operator=(const HTTPConnection&) = delete;

    /// None where the client has closed, or sends what is no HTTP/1.1 request.
    std::optional<ScriptedRequest> readRequest();

    /// False where the client has gone.
    bool send(std::string_view bytes);

    /// Until the client closes its side.
    void waitForClient();

    /// Ends the connection; with `reset`, so that the client's next read fails.
    void close(bool reset);

    /// Makes every operation fail. From another thread, while the object lives.
    void interrupt();

private:
    bool fill();

    // Guards the closing of the socket against interrupt.
    std::mutex mutex_;
    int socket_;
    std::string received_;
};

} // namespace quillmoth::test
