#pragma once

#include "EventSource/EventSourceState.h"
#include "Platform/URLRequest.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace quillmoth {

/// The face of a client of a server-sent event stream.
class EventSourceProtocol {
public:
    using Headers = std::map<std::string, std::string>;
    using OpenCallback = std::function<void()>;
    /// Called with the status code, whether the owner should connect again, and the error. Either there are a
    /// status and a flag and no error, or an error alone.
    using CompleteCallback = std::function<void(std::optional<int> statusCode, std::optional<bool> reconnect,
                                                std::optional<platform::URLError> error)>;
    /// Called with the event's id, name and data.
    using EventCallback = std::function<void(std::optional<std::string> id, std::optional<std::string> event,
                                             std::optional<std::string> data)>;

    virtual ~EventSourceProtocol() = default;

    [[nodiscard]] virtual const Headers& headers() const = 0;

    /// What the stream last said about the wait before a reconnect, in the stream's unit (milliseconds); 3000
    /// where the last event said nothing.
    [[nodiscard]] virtual std::int64_t retryTime() const = 0;

    [[nodiscard]] virtual const platform::URLRequest& request() const = 0;

    /// The id of the latest event; none where that event had none.
    [[nodiscard]] virtual std::optional<std::string> lastEventId() const = 0;

    [[nodiscard]] virtual EventSourceState readyState() const = 0;

    /// Opens a new connection. `lastEventId` goes into its header and nowhere else. A former connection goes
    /// on.
    virtual void connect(const std::optional<std::string>& lastEventId = std::nullopt) = 0;

    /// Ends the latest connection. Its completion is still called, and so are events that were on their way.
    virtual void disconnect() = 0;

    /// The names that have a listener, in no defined order.
    [[nodiscard]] virtual std::vector<std::string> events() const = 0;

    /// Each replaces the former callback. To be called before connect.
    virtual void onOpen(OpenCallback callback) = 0;
    virtual void onComplete(CompleteCallback callback) = 0;
    virtual void onMessage(EventCallback callback) = 0;

    virtual void addEventListener(const std::string& event, EventCallback handler) = 0;
    virtual void removeEventListener(const std::string& event) = 0;
};

} // namespace quillmoth
