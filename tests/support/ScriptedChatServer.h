#pragma once

#include "tests/support/HTTPConnection.h"
#include "tests/support/ScriptedAnswer.h"

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace quillmoth::test {

/// An HTTP/1.1 server on the loopback interface that answers as it was told and keeps a record of what it was
/// asked. It speaks to several clients at once, on threads of its own. The destructor breaks off what runs.
class ScriptedChatServer {
public:
    using Handler = std::function<ScriptedAnswer(const ScriptedRequest&)>;

    /// Listens; with 0, at a port that the system chooses. Throws std::runtime_error where it cannot.
    explicit ScriptedChatServer(std::uint16_t port = 0);
    ~ScriptedChatServer();
    ScriptedChatServer(const ScriptedChatServer&) = delete;
    ScriptedChatServer& operator=(const ScriptedChatServer&) = delete;

    /// What requests for `path` get from now on. Other paths get a 404.
    void answer(const std::string& path, ScriptedAnswer answer);
    /// `handler` runs on a thread of the server.
    void answer(const std::string& path, Handler handler);

    [[nodiscard]] std::uint16_t port() const { return port_; }

    /// "http://127.0.0.1:<port>".
    [[nodiscard]] std::string baseURL() const;

    [[nodiscard]] std::string url(const std::string& path) const { return baseURL() + path; }

    /// All requests so far, in the order of their arrival.
    [[nodiscard]] std::vector<ScriptedRequest> requests() const;
    [[nodiscard]] int connectionCount() const;

    /// These wait until there have been so many, ten seconds at most; false where there have not.
    [[nodiscard]] bool waitForRequests(std::size_t count) const;
    /// Connections that are over, by whichever side.
    [[nodiscard]] bool waitForEndedConnections(int count) const;

private:
    struct Served;

    void acceptConnections();
    void forgetEndedConnections();
    void serve(Served& served);
    [[nodiscard]] ScriptedAnswer answerFor(const ScriptedRequest& request);
    [[nodiscard]] bool run(HTTPConnection& connection, const ScriptedAnswer& answer);
    [[nodiscard]] bool runStep(HTTPConnection& connection, const ScriptedAnswer& answer, const Step& step);
    void waitFor(const std::shared_ptr<Latch>& latch);

    int listener_ = -1;
    std::uint16_t port_ = 0;
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::map<std::string, Handler> handlers_;
    std::vector<ScriptedRequest> requests_;
    std::list<Served> connections_;
    std::vector<std::shared_ptr<Latch>> awaited_;
    int connectionCount_ = 0;
    int endedCount_ = 0;
    bool stopping_ = false;
    std::thread acceptor_;
};

} // namespace quillmoth::test
