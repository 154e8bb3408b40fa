#include "Platform/Linux/Sway/SwayConnection.h"

#include "Platform/Linux/Sway/SwayMessage.h"
#include "Platform/Linux/Sway/SwayTree.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <utility>

namespace quillmoth::platform {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kAnswerLimit{250};

FileDescriptor connected(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof address.sun_path)
        return FileDescriptor();
    std::copy(path.begin(), path.end(), static_cast<char*>(address.sun_path));
    FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    const auto* generic = reinterpret_cast<const sockaddr*>(&address);
    if (!socket || connect(socket.get(), generic, sizeof address) != 0)
        return FileDescriptor();
    return socket;
}

bool isReady(int socket, short events, Clock::time_point deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    pollfd entry = {socket, events, 0};
    return left > 0 && poll(&entry, 1, static_cast<int>(left)) > 0;
}

bool sendAll(int socket, std::string bytes, Clock::time_point deadline) {
    while (!bytes.empty()) {
        const auto sent = send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent > 0)
            bytes.erase(0, static_cast<std::size_t>(sent));
        else if (errno != EAGAIN || !isReady(socket, POLLOUT, deadline))
            return false;
    }
    return true;
}

/// False at the end of the stream.
bool receiveSome(int socket, std::string& received) {
    char buffer[16384];
    for (;;) {
        const auto count = recv(socket, buffer, sizeof buffer, 0);
        if (count <= 0)
            return count < 0 && (errno == EAGAIN || errno == EINTR);
        received.append(buffer, static_cast<std::size_t>(count));
    }
}

std::optional<nlohmann::json> asked(int socket, const SwayMessage& question) {
    const auto deadline = Clock::now() + kAnswerLimit;
    if (!sendAll(socket, writtenSwayMessage(question), deadline))
        return std::nullopt;
    std::string received;
    for (bool isBroken = false; !isBroken && isReady(socket, POLLIN, deadline);) {
        const bool goesOn = receiveSome(socket, received);
        // What came too late for an earlier question stands before it.
        while (const auto message = takeSwayMessage(received, isBroken)) {
            if (message->kind != question.kind)
                continue;
            auto answer = nlohmann::json::parse(message->payload, nullptr, false);
            return answer.is_discarded() ? std::nullopt : std::optional(std::move(answer));
        }
        if (!goesOn)
            break;
    }
    return std::nullopt;
}

} // namespace

Result<std::unique_ptr<SwayConnection>> SwayConnection::open() {
    // Nothing in this process changes its environment at this time.
    const char* path = std::getenv("SWAYSOCK"); // NOLINT(concurrency-mt-unsafe)
    if (path == nullptr)
        return Error{"SWAYSOCK is not set"};
    FileDescriptor questions = connected(path);
    FileDescriptor events = connected(path);
    if (!questions || !events)
        return Error{"the socket of SWAYSOCK does not answer"};
    constexpr std::uint32_t kSubscribe = 2;
    const auto answer =
        asked(events.get(), {.kind = kSubscribe, .payload = R"(["binding","window","workspace"])"});
    if (!answer || !isSetIn(*answer, "success"))
        return Error{"the socket of SWAYSOCK tells of no events"};
    return std::unique_ptr<SwayConnection>(new SwayConnection(std::move(questions), std::move(events)));
}

SwayConnection::SwayConnection(FileDescriptor questions, FileDescriptor events)
    : questions_(std::move(questions)), eventSocket_(std::move(events)),
      notifier_(std::make_unique<QSocketNotifier>(eventSocket_.get(), QSocketNotifier::Read)) {
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { readEvents(); });
}

std::optional<nlohmann::json> SwayConnection::ask(Question question, const std::string& payload) {
    return asked(questions_.get(), {.kind = static_cast<std::uint32_t>(question), .payload = payload});
}

bool SwayConnection::run(const std::string& commands) {
    const auto answers = ask(Question::runCommand, commands);
    return answers && answers->is_array() && !answers->empty() &&
           std::all_of(answers->begin(), answers->end(),
                       [](const nlohmann::json& answer) { return isSetIn(answer, "success"); });
}

void SwayConnection::readEvents() {
    bool isBroken = !receiveSome(eventSocket_.get(), received_);
    while (const auto message = takeSwayMessage(received_, isBroken)) {
        if ((message->kind & kSwayEventBit) == 0)
            continue;
        const auto event = nlohmann::json::parse(message->payload, nullptr, false);
        if (event.is_object())
            events_.emit(static_cast<Event>(message->kind & ~kSwayEventBit), event);
    }
    // Nothing is heard any more; questions fail by themselves.
    if (isBroken)
        notifier_->setEnabled(false);
}

} // namespace quillmoth::platform
