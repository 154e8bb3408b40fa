#pragma once

#include "EventSource/EventSourceProtocol.h"
#include "EventSource/EventStreamParser.h"
#include "Platform/MainQueue.h"
#include "Platform/OperationQueue.h"
#include "Platform/URLSession.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <string_view>

namespace quillmoth {

/// The client side of one server-sent event stream. Does not reconnect by itself.
///
/// The owner's thread makes it, connects and disconnects it; the bytes are parsed on a serial queue of its
/// own; all callbacks run on the main queue, in order, and are dropped when the object has gone by then. A
/// running connection keeps the object alive. It may be released, and its callbacks replaced, while one of
/// them runs.
class EventSource final : public EventSourceProtocol,
                          public platform::URLSessionDelegate,
                          public std::enable_shared_from_this<EventSource> {
    struct Key {};

public:
    /// The services must outlive the object. Makes no connection.
    [[nodiscard]] static std::shared_ptr<EventSource> create(platform::MainQueue& mainQueue,
                                                             platform::URLSessions& urlSessions,
                                                             platform::OperationQueues& operationQueues,
                                                             platform::URLRequest request, Headers headers);

    /// For create only.
    EventSource(Key key, platform::MainQueue& mainQueue, platform::URLSessions& urlSessions,
                platform::OperationQueues& operationQueues, platform::URLRequest request, Headers headers);

    [[nodiscard]] const platform::URLRequest& request() const override { return request_; }

    [[nodiscard]] std::optional<std::string> lastEventId() const override;

    [[nodiscard]] std::int64_t retryTime() const override { return retryTime_; }

    [[nodiscard]] const Headers& headers() const override { return headers_; }

    [[nodiscard]] EventSourceState readyState() const override { return readyState_; }

    /// Why the latest task ended before its answer was whole; none while it runs, and where it was whole.
    /// Where a head had arrived, the completion callback gets no error. A stream that goes beyond the limits
    /// (kStreamBlock, kWaitingEvents) is broken off, with Code::tooLarge.
    [[nodiscard]] std::optional<platform::URLError> taskError() const;

    void connect(const std::optional<std::string>& lastEventId = std::nullopt) override;
    void disconnect() override;

    void onOpen(OpenCallback callback) override;
    void onComplete(CompleteCallback callback) override;
    void onMessage(EventCallback callback) override;
    void addEventListener(const std::string& event, EventCallback handler) override;
    void removeEventListener(const std::string& event) override;
    [[nodiscard]] std::vector<std::string> events() const override;

    void didReceiveData(platform::URLSessionDataTask& task, std::string_view data) override;
    void didReceiveResponse(platform::URLSessionDataTask& task, const platform::URLResponse& response,
                            const std::function<void(ResponseDisposition)>& completionHandler) override;
    void didCompleteWithError(platform::URLSessionDataTask& task,
                              const std::optional<platform::URLError>& error) override;
    void willPerformHTTPRedirection(
        platform::URLSessionDataTask& task, const platform::URLResponse& response,
        const platform::URLRequest& newRequest,
        const std::function<void(std::optional<platform::URLRequest>)>& completionHandler) override;

private:
    static constexpr std::int64_t kDefaultRetryTime = 3000;

    // Shared, so that a callback outlives its own replacement while it runs.
    template<class Callback>
    using Stored = std::shared_ptr<const Callback>;

    [[nodiscard]] platform::URLSessionConfiguration
    sessionConfiguration(const std::optional<std::string>& lastEventId) const;
    void receive(Event event);
    void deliverMessage(std::optional<std::string> id, std::optional<std::string> data);
    template<class Call>
    void deliver(std::size_t bytes, Call call);
    void breakOff(platform::URLSessionDataTask& task, const char* words);
    [[nodiscard]] Stored<EventCallback> listener(const std::string& event) const;
    void complete(std::optional<int> statusCode, std::optional<bool> reconnect,
                  std::optional<platform::URLError> error);

    const platform::URLRequest request_;
    const Headers headers_;
    platform::MainQueue& mainQueue_;
    platform::URLSessions& urlSessions_;
    const std::shared_ptr<platform::OperationQueue> operationQueue_;

    std::atomic<EventSourceState> readyState_ = EventSourceState::closed;
    std::atomic<std::int64_t> retryTime_ = kDefaultRetryTime;
    // Of events on their way to the main thread, in bytes.
    std::atomic<std::size_t> waiting_ = 0;

    // Guards the five fields that the owner's thread and the delegate queue both touch.
    mutable std::mutex mutex_;
    std::optional<std::string> lastEventId_;
    std::optional<platform::URLError> taskError_;
    std::optional<platform::URLError> brokenOff_;
    std::map<std::string, Stored<EventCallback>> eventListeners_;
    std::shared_ptr<EventStreamParser> eventStreamParser_;

    // The main thread's.
    Stored<OpenCallback> onOpenCallback_;
    Stored<CompleteCallback> onComplete_;
    Stored<EventCallback> onMessageCallback_;
    std::shared_ptr<platform::URLSession> urlSession_;
};

} // namespace quillmoth
