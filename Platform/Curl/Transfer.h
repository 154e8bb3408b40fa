#pragma once

#include "Platform/Curl/DataTask.h"
#include "Platform/Curl/EasyHandle.h"
#include "Platform/Curl/ResponseHead.h"
#include "Platform/Curl/Server.h"

#include <chrono>
#include <memory>
#include <optional>

namespace quillmoth::platform {

/// A running task: one exchange after the other until no redirect is left to follow. It tells the task what
/// happens. Network thread.
class Transfer {
public:
    using Clock = std::chrono::steady_clock;

    Transfer(const CurlLibrary& curl, CURLM* multi, std::shared_ptr<DataTask> task);
    ~Transfer();
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;

    /// Sends the request of the task.
    void start();

    /// The delegate has taken what it was behind with.
    void unpause();

    /// The delegate's answer to a redirect: the request to follow, or none to take the redirect as the
    /// answer.
    void answerRedirect(std::optional<URLRequest> request);

    /// libcurl is done with the exchange.
    void exchangeEnded(CURLcode code);

    /// Ends what has taken too long.
    void checkDeadline(Clock::time_point now);

    /// When checkDeadline is to be called; none where there is no limit.
    [[nodiscard]] std::optional<Clock::time_point> deadline() const;

    /// True when the task has been told its end.
    [[nodiscard]] bool isOver() const { return phase_ == Phase::over; }

private:
    enum class Phase {
        head,
        /// A redirect has arrived and the delegate is asked; the body waits.
        asking,
        /// The redirect will be followed; its body is read only to keep the connection usable.
        leaving,
        body,
        over
    };

    static std::size_t headerCallback(char* data, std::size_t size, std::size_t count, void* context);
    static std::size_t bodyCallback(char* data, std::size_t size, std::size_t count, void* context);

    void begin(URLRequest request);
    void detach();
    [[nodiscard]] bool receiveHeaderLine(std::string_view line);
    [[nodiscard]] bool receiveRedirect(const std::string& location);
    [[nodiscard]] std::size_t receiveBody(std::string_view data);
    void follow();
    void finish(std::optional<URLError> error);

    const CurlLibrary& curl_;
    CURLM* const multi_;
    const std::shared_ptr<DataTask> task_;
    URLRequest request_;
    Server server_;
    std::optional<EasyHandle> easy_;
    ResponseHead head_;
    Phase phase_ = Phase::head;
    bool paused_ = false;
    // The exchange was over before the delegate answered.
    bool ended_ = false;
    // Found in a callback, where the exchange cannot be ended yet.
    std::optional<URLError> failure_;
    std::optional<URLRequest> next_;
    int redirects_ = 0;
    std::size_t drained_ = 0;
    // Of this exchange, interim answers and trailers included.
    std::size_t headLines_ = 0;
    std::size_t headBytes_ = 0;
    Clock::time_point started_ = Clock::now();
    Clock::time_point lastHeard_ = started_;
    Clock::time_point leaveBy_;
};

} // namespace quillmoth::platform
