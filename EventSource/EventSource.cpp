#include "EventSource/EventSource.h"

#include "Foundation/ASCII.h"
#include "Foundation/Limits.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace quillmoth {

namespace {

// The largest that the field takes on all systems: in effect, no limit to the wait for data.
constexpr double kNoTimeout = 2147483647.0;

constexpr const char* kNoEnd = "The server sent a piece of an answer that does not end.";
constexpr const char* kTooFast = "The server sends faster than it can be taken in.";

// What an event takes beside its texts, roughly: the work that delivers it, and its place in the queue.
constexpr std::size_t kEventBytes = 256;

std::size_t sizeOf(const std::optional<std::string>& text) {
    return text ? text->size() : 0;
}

std::size_t sizeOf(const Event& event) {
    return sizeOf(event.id) + sizeOf(event.event) + sizeOf(event.data) + kEventBytes;
}

/// Sets the header and takes away any of the same name in other letter case.
void setHeader(EventSourceProtocol::Headers& headers, const std::string& name, const std::string& value) {
    std::erase_if(headers, [&](const auto& header) { return equalIgnoringASCIICase(header.first, name); });
    headers[name] = value;
}

/// An answer of 201 to 299 asks for another connection; the plain 200 does not.
bool shouldReconnect(int statusCode) {
    return statusCode > 200 && statusCode <= 299;
}

template<class Callback>
std::shared_ptr<const Callback> stored(Callback callback) {
    return callback ? std::make_shared<const Callback>(std::move(callback)) : nullptr;
}

} // namespace

std::shared_ptr<EventSource> EventSource::create(platform::MainQueue& mainQueue,
                                                 platform::URLSessions& urlSessions,
                                                 platform::OperationQueues& operationQueues,
                                                 platform::URLRequest request, Headers headers) {
    return std::make_shared<EventSource>(Key(), mainQueue, urlSessions, operationQueues, std::move(request),
                                         std::move(headers));
}

EventSource::EventSource(Key /*key*/, platform::MainQueue& mainQueue, platform::URLSessions& urlSessions,
                         platform::OperationQueues& operationQueues, platform::URLRequest request,
                         Headers headers)
    : request_(std::move(request)), headers_(std::move(headers)), mainQueue_(mainQueue),
      urlSessions_(urlSessions), operationQueue_(operationQueues.makeSerialQueue()) {}

std::optional<std::string> EventSource::lastEventId() const {
    const std::lock_guard lock(mutex_);
    return lastEventId_;
}

std::optional<platform::URLError> EventSource::taskError() const {
    const std::lock_guard lock(mutex_);
    return taskError_;
}

void EventSource::connect(const std::optional<std::string>& lastEventId) {
    {
        const std::lock_guard lock(mutex_);
        eventStreamParser_ = std::make_shared<EventStreamParser>();
        brokenOff_.reset();
    }
    readyState_ = EventSourceState::connecting;
    urlSession_ =
        urlSessions_.makeSession(sessionConfiguration(lastEventId), shared_from_this(), operationQueue_);
    urlSession_->dataTask(request_)->resume();
}

void EventSource::disconnect() {
    readyState_ = EventSourceState::closed;
    if (urlSession_)
        urlSession_->invalidateAndCancel();
}

void EventSource::onOpen(OpenCallback callback) {
    onOpenCallback_ = stored(std::move(callback));
}

void EventSource::onComplete(CompleteCallback callback) {
    onComplete_ = stored(std::move(callback));
}

void EventSource::onMessage(EventCallback callback) {
    onMessageCallback_ = stored(std::move(callback));
}

void EventSource::addEventListener(const std::string& event, EventCallback handler) {
    auto listener = stored(std::move(handler));
    const std::lock_guard lock(mutex_);
    // Swapped, so that the former listener is destroyed outside of the lock.
    eventListeners_[event].swap(listener);
}

void EventSource::removeEventListener(const std::string& event) {
    const Stored<EventCallback> former = listener(event);
    const std::lock_guard lock(mutex_);
    eventListeners_.erase(event);
}

std::vector<std::string> EventSource::events() const {
    const std::lock_guard lock(mutex_);
    std::vector<std::string> names;
    names.reserve(eventListeners_.size());
    for (const auto& [name, listener] : eventListeners_)
        names.push_back(name);
    return names;
}

void EventSource::didReceiveData(platform::URLSessionDataTask& task, std::string_view data) {
    std::shared_ptr<EventStreamParser> parser;
    {
        const std::lock_guard lock(mutex_);
        parser = eventStreamParser_;
    }
    if (readyState_ != EventSourceState::open || !parser)
        return;
    for (Event& event : parser->append(data))
        receive(std::move(event));
    if (parser->isOverfull())
        breakOff(task, kNoEnd);
    else if (waiting_ > limits::kWaitingEvents)
        breakOff(task, kTooFast);
}

void EventSource::didReceiveResponse(platform::URLSessionDataTask& /*task*/,
                                     const platform::URLResponse& /*response*/,
                                     const std::function<void(ResponseDisposition)>& completionHandler) {
    completionHandler(ResponseDisposition::allow);
    readyState_ = EventSourceState::open;
    mainQueue_.async([weak = weak_from_this()] {
        const auto self = weak.lock();
        if (!self)
            return;
        if (const auto callback = self->onOpenCallback_)
            (*callback)();
    });
}

void EventSource::didCompleteWithError(platform::URLSessionDataTask& task,
                                       const std::optional<platform::URLError>& error) {
    {
        const std::lock_guard lock(mutex_);
        taskError_ = brokenOff_ ? brokenOff_ : error;
    }
    const auto response = task.response();
    if (response && response->statusCode)
        complete(response->statusCode, shouldReconnect(*response->statusCode), std::nullopt);
    else
        complete(std::nullopt, std::nullopt, error);
}

void EventSource::willPerformHTTPRedirection(
    platform::URLSessionDataTask& /*task*/, const platform::URLResponse& /*response*/,
    const platform::URLRequest& newRequest,
    const std::function<void(std::optional<platform::URLRequest>)>& completionHandler) {
    platform::URLRequest request = newRequest;
    for (const auto& [name, value] : headers_)
        request.setValue(value, name);
    completionHandler(std::move(request));
}

platform::URLSessionConfiguration
EventSource::sessionConfiguration(const std::optional<std::string>& lastEventId) const {
    Headers headers = headers_;
    if (lastEventId)
        setHeader(headers, "Last-Event-Id", *lastEventId);
    setHeader(headers, "Accept", "text/event-stream");
    setHeader(headers, "Cache-Control", "no-cache");
    return {.timeoutIntervalForRequest = kNoTimeout,
            .timeoutIntervalForResource = kNoTimeout,
            .httpAdditionalHeaders = std::move(headers)};
}

void EventSource::receive(Event event) {
    {
        const std::lock_guard lock(mutex_);
        lastEventId_ = event.id;
    }
    retryTime_ = event.retryTime().value_or(kDefaultRetryTime);
    if (event.onlyRetryEvent())
        return;
    const auto named = event.event ? listener(*event.event) : nullptr;
    if (named) {
        // An event named "message" goes to the message callback first.
        if (event.event == "message")
            deliverMessage(event.id, event.data);
        deliver(sizeOf(event), [named, event = std::move(event)](const EventSource&) mutable {
            (*named)(std::move(event.id), std::move(event.event), std::move(event.data));
        });
    } else if (!event.event || event.event == "message") {
        deliverMessage(std::move(event.id), std::move(event.data));
    }
}

EventSource::Stored<EventSourceProtocol::EventCallback>
EventSource::listener(const std::string& event) const {
    const std::lock_guard lock(mutex_);
    const auto found = eventListeners_.find(event);
    return found == eventListeners_.end() ? nullptr : found->second;
}

void EventSource::deliverMessage(std::optional<std::string> id, std::optional<std::string> data) {
    const std::size_t bytes = sizeOf(id) + sizeOf(data) + kEventBytes;
    deliver(bytes, [id = std::move(id), data = std::move(data)](const EventSource& self) mutable {
        if (const auto callback = self.onMessageCallback_)
            (*callback)(std::move(id), "message", std::move(data));
    });
}

/// Calls call(*this) on the main thread; until then the bytes count as waiting.
template<class Call>
void EventSource::deliver(std::size_t bytes, Call call) {
    waiting_ += bytes;
    mainQueue_.async([weak = weak_from_this(), bytes, call = std::move(call)]() mutable {
        const auto self = weak.lock();
        if (!self)
            return;
        self->waiting_ -= bytes;
        call(*self);
    });
}

void EventSource::breakOff(platform::URLSessionDataTask& task, const char* words) {
    {
        const std::lock_guard lock(mutex_);
        brokenOff_ = {platform::URLError::Code::tooLarge, words};
        eventStreamParser_.reset();
    }
    task.cancel();
}

void EventSource::complete(std::optional<int> statusCode, std::optional<bool> reconnect,
                           std::optional<platform::URLError> error) {
    auto call = [weak = weak_from_this(), statusCode, reconnect, error = std::move(error)]() mutable {
        const auto self = weak.lock();
        if (!self)
            return;
        if (const auto callback = self->onComplete_)
            (*callback)(statusCode, reconnect, std::move(error));
    };
    // One turn behind the events: what their callbacks queue in turn comes before the end, also where head,
    // events and end have all arrived at once.
    mainQueue_.async(
        [&mainQueue = mainQueue_, call = std::move(call)]() mutable { mainQueue.async(std::move(call)); });
}

} // namespace quillmoth
