// From the server's flush of one event to the reader's hands, over the loopback interface: a bare socket read
// on its thread, and our whole road to the message callback on the thread of the main queue. Each round sends
// one event and waits for it, with a pause in between, as in a chat.

#include "EventSource/EventSource.h"
#include "Platform/Curl/CurlURLSessions.h"
#include "Platform/Posix/SerialOperationQueues.h"
#include "tests/support/RunLoop.h"

#include <benchmark/benchmark.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <semaphore>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using Nanoseconds = std::chrono::nanoseconds;

constexpr std::size_t kRounds = 2000;
constexpr std::string_view kEvent =
    "data: {\"choices\":[{\"delta\":{\"content\":\" word\"},\"index\":0}]}\n\n";

/// Answers one connection with `kRounds` events, each when the reader asks for it.
class Server {
public:
    Server() {
        listener_ = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        auto* generic = reinterpret_cast<sockaddr*>(&address);
        socklen_t length = sizeof(address);
        if (::bind(listener_, generic, length) != 0 || ::listen(listener_, 1) != 0)
            std::abort();
        ::getsockname(listener_, generic, &length);
        port_ = ntohs(address.sin_port);
        thread_ = std::thread([this] { serve(); });
    }

    ~Server() {
        thread_.join();
        ::close(listener_);
    }

    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    [[nodiscard]] std::uint16_t port() const { return port_; }

    void allowNext() { allowed_.release(); }

    [[nodiscard]] Clock::time_point flushed() const { return flushed_.load(); }

private:
    void serve() {
        const int client = ::accept(listener_, nullptr, nullptr);
        const int yes = 1;
        ::setsockopt(client, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof(yes));
        std::array<char, 4096> request{};
        (void)!::read(client, request.data(), request.size());
        send(client, "HTTP/1.1 200 OK\r\nContent-Type: text/event-stream\r\nConnection: close\r\n\r\n");
        for (std::size_t round = 0; round < kRounds; ++round) {
            allowed_.acquire();
            // Long enough for every thread on the road to have fallen asleep.
            std::this_thread::sleep_for(std::chrono::microseconds(200));
            flushed_ = Clock::now();
            send(client, kEvent);
        }
        ::close(client);
    }

    static void send(int client, std::string_view bytes) {
        (void)!::write(client, bytes.data(), bytes.size());
    }

    int listener_ = -1;
    std::uint16_t port_ = 0;
    std::counting_semaphore<> allowed_{0};
    std::atomic<Clock::time_point> flushed_;
    std::thread thread_;
};

using Samples = std::vector<Nanoseconds>;

Samples readWithBareSocket() {
    Server server;
    const int reader = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(server.port());
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(reader, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0)
        std::abort();
    (void)!::write(reader, "GET / HTTP/1.1\r\n\r\n", 18);
    std::array<char, 4096> bytes{};
    (void)!::read(reader, bytes.data(), bytes.size());
    Samples samples;
    for (std::size_t round = 0; round < kRounds; ++round) {
        server.allowNext();
        if (::read(reader, bytes.data(), bytes.size()) <= 0)
            std::abort();
        samples.push_back(Clock::now() - server.flushed());
    }
    ::close(reader);
    return samples;
}

Samples readWithEventSource() {
    using namespace quillmoth;
    Server server;
    platform::SerialOperationQueues queues;
    test::RunLoop mainQueue;
    platform::CurlURLSessions sessions(queues);
    platform::URLRequest request;
    request.url = "http://127.0.0.1:" + std::to_string(server.port()) + "/";
    const auto source = EventSource::create(mainQueue, sessions, queues, request, {});
    Samples samples;
    bool over = false;
    source->onOpen([&] { server.allowNext(); });
    source->onMessage([&](const auto&, const auto&, const auto&) {
        samples.push_back(Clock::now() - server.flushed());
        server.allowNext();
    });
    source->onComplete([&](auto, auto, const auto&) { over = true; });
    source->connect();
    if (!mainQueue.runUntil([&] { return over; }) || samples.size() != kRounds)
        std::abort();
    source->disconnect();
    return samples;
}

double microseconds(Samples& samples, double quantile) {
    std::sort(samples.begin(), samples.end());
    const auto index = static_cast<std::size_t>(quantile * static_cast<double>(samples.size() - 1));
    return static_cast<double>(samples[index].count()) / 1000;
}

void flushToPiece(benchmark::State& state) {
    for (auto _ : state) {
        Samples bare = readWithBareSocket();
        Samples ours = readWithEventSource();
        state.counters["bare_median_us"] = microseconds(bare, 0.5);
        state.counters["ours_median_us"] = microseconds(ours, 0.5);
        state.counters["bare_p95_us"] = microseconds(bare, 0.95);
        state.counters["ours_p95_us"] = microseconds(ours, 0.95);
        state.counters["ratio"] = microseconds(ours, 0.5) / microseconds(bare, 0.5);
        state.counters["limit"] = 2;
    }
}

} // namespace

BENCHMARK(flushToPiece)->Name("flush_to_piece")->Iterations(1)->Repetitions(3)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
