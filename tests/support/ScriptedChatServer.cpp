#include "tests/support/ScriptedChatServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <sstream>
#include <stdexcept>
#include <tuple>
#include <utility>

namespace quillmoth::test {

namespace {

constexpr std::chrono::seconds kPatience(10);

/// A socket that listens, and its port.
std::pair<int, std::uint16_t> listenOnLoopback(std::uint16_t port) {
    const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int yes = 1;
    ::setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof(address);
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    if (::bind(listener, generic, length) != 0 || ::listen(listener, 64) != 0 ||
        ::getsockname(listener, generic, &length) != 0) {
        ::close(listener);
        throw std::runtime_error("cannot listen at port " + std::to_string(port) + " of 127.0.0.1");
    }
    return {listener, ntohs(address.sin_port)};
}

std::size_t bodyLength(const ScriptedAnswer& answer) {
    std::size_t length = 0;
    for (const Step& step : answer.steps) {
        if (const auto* send = std::get_if<Send>(&step))
            length += send->bytes.size();
    }
    return length;
}

std::string headText(const ScriptedAnswer& answer) {
    std::string head = "HTTP/1.1 " + std::to_string(answer.status) + " Scripted\r\n";
    for (const auto& [name, value] : answer.headers)
        head += name + ": " + value + "\r\n";
    const bool hasBody = answer.status != 204 && answer.status != 304;
    if (hasBody && answer.framing == Framing::chunked)
        head += "Transfer-Encoding: chunked\r\n";
    if (hasBody && answer.framing == Framing::contentLength)
        head += "Content-Length: " + std::to_string(bodyLength(answer)) + "\r\n";
    if (answer.framing == Framing::untilClose || !answer.keepsAlive)
        head += "Connection: close\r\n";
    return head + "\r\n";
}

std::string chunk(std::string_view bytes) {
    std::ostringstream text;
    text << std::hex << bytes.size() << "\r\n" << bytes << "\r\n";
    return text.str();
}

} // namespace

struct ScriptedChatServer::Served {
    Served(int socket, int itsNumber) : connection(socket), number(itsNumber) {}

    HTTPConnection connection;
    int number;
    std::thread thread;
    bool ended = false;
};

ScriptedChatServer::ScriptedChatServer(std::uint16_t port) {
    std::tie(listener_, port_) = listenOnLoopback(port);
    acceptor_ = std::thread([this] { acceptConnections(); });
}

ScriptedChatServer::~ScriptedChatServer() {
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
        for (Served& served : connections_)
            served.connection.interrupt();
        for (const auto& latch : awaited_)
            latch->release();
    }
    ::shutdown(listener_, SHUT_RDWR);
    acceptor_.join();
    ::close(listener_);
    for (Served& served : connections_)
        served.thread.join();
}

void ScriptedChatServer::answer(const std::string& path, ScriptedAnswer answer) {
    this->answer(path, [answer = std::move(answer)](const ScriptedRequest&) { return answer; });
}

void ScriptedChatServer::answer(const std::string& path, Handler handler) {
    const std::lock_guard lock(mutex_);
    handlers_[path] = std::move(handler);
}

std::string ScriptedChatServer::baseURL() const {
    return "http://127.0.0.1:" + std::to_string(port_);
}

std::vector<ScriptedRequest> ScriptedChatServer::requests() const {
    const std::lock_guard lock(mutex_);
    return requests_;
}

int ScriptedChatServer::connectionCount() const {
    const std::lock_guard lock(mutex_);
    return connectionCount_;
}

bool ScriptedChatServer::waitForRequests(std::size_t count) const {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, kPatience, [&] { return requests_.size() >= count; });
}

bool ScriptedChatServer::waitForEndedConnections(int count) const {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, kPatience, [&] { return endedCount_ >= count; });
}

void ScriptedChatServer::acceptConnections() {
    for (;;) {
        const int socket = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        const std::lock_guard lock(mutex_);
        if (stopping_ || socket < 0) {
            if (socket >= 0)
                ::close(socket);
            return;
        }
        forgetEndedConnections();
        const int yes = 1;
        ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof(yes));
        Served& served = connections_.emplace_back(socket, ++connectionCount_);
        served.thread = std::thread([this, &served] { serve(served); });
    }
}

/// Called with the mutex held.
void ScriptedChatServer::forgetEndedConnections() {
    std::erase_if(connections_, [](Served& served) {
        if (served.ended)
            served.thread.join();
        return served.ended;
    });
}

void ScriptedChatServer::serve(Served& served) {
    bool goesOn = true;
    while (goesOn) {
        auto request = served.connection.readRequest();
        if (!request)
            break;
        request->connection = served.number;
        goesOn = run(served.connection, answerFor(*request));
    }
    served.connection.close(false);
    const std::lock_guard lock(mutex_);
    served.ended = true;
    ++endedCount_;
    changed_.notify_all();
}

ScriptedAnswer ScriptedChatServer::answerFor(const ScriptedRequest& request) {
    Handler handler;
    {
        const std::lock_guard lock(mutex_);
        requests_.push_back(request);
        changed_.notify_all();
        const auto found = handlers_.find(request.path);
        if (found != handlers_.end())
            handler = found->second;
    }
    return handler ? handler(request)
                   : jsonAnswer(404, R"({"error":{"message":"There is no script for this path."}})");
}

/// False where the connection cannot be used further.
bool ScriptedChatServer::run(HTTPConnection& connection, const ScriptedAnswer& answer) {
    if (answer.sendsHead && !connection.send(headText(answer)))
        return false;
    for (const Step& step : answer.steps) {
        if (!runStep(connection, answer, step))
            return false;
    }
    const bool isChunked = answer.framing == Framing::chunked && answer.status != 204 && answer.status != 304;
    if (isChunked && !connection.send("0\r\n\r\n"))
        return false;
    return answer.keepsAlive && answer.framing != Framing::untilClose;
}

bool ScriptedChatServer::runStep(HTTPConnection& connection, const ScriptedAnswer& answer, const Step& step) {
    if (const auto* send = std::get_if<Send>(&step))
        return send->bytes.empty() ||
               connection.send(answer.framing == Framing::chunked ? chunk(send->bytes) : send->bytes);
    if (const auto* wait = std::get_if<WaitFor>(&step)) {
        waitFor(wait->latch);
        return true;
    }
    if (const auto* pause = std::get_if<Pause>(&step)) {
        std::this_thread::sleep_for(pause->duration);
        return true;
    }
    if (std::holds_alternative<Reset>(step))
        connection.close(true);
    else
        connection.waitForClient();
    return false;
}

void ScriptedChatServer::waitFor(const std::shared_ptr<Latch>& latch) {
    {
        const std::lock_guard lock(mutex_);
        if (stopping_)
            return;
        awaited_.push_back(latch);
    }
    latch->wait();
}

} // namespace quillmoth::test
