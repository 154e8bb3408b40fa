#pragma once

#include "Foundation/FileDescriptor.h"
#include "Foundation/Result.h"
#include "Foundation/Subscription.h"

#include <QSocketNotifier>
#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

namespace quillmoth::platform {

/// A conversation with the compositor over its socket, in the protocol of i3: see sway-ipc(7). Main thread.
class SwayConnection {
public:
    enum class Question : std::uint32_t { runCommand = 0, getTree = 4, getConfig = 9, getOutputs = 3 };
    enum class Event : std::uint32_t { workspace = 0, window = 3, binding = 5 };

    /// To the socket of the variable SWAYSOCK. Fails where there is none, or where it does not answer.
    [[nodiscard]] static Result<std::unique_ptr<SwayConnection>> open();

    /// The answer; none where the compositor has gone, or has not answered within a quarter of a second.
    [[nodiscard]] std::optional<nlohmann::json> ask(Question question, const std::string& payload = {});

    /// True where the compositor has carried out all of the commands.
    bool run(const std::string& commands);

    Subscription onEvent(std::function<void(Event, const nlohmann::json&)> subscriber) {
        return events_.subscribe(std::move(subscriber));
    }

private:
    SwayConnection(FileDescriptor questions, FileDescriptor events);
    void readEvents();

    FileDescriptor questions_;
    FileDescriptor eventSocket_;
    std::string received_;
    std::unique_ptr<QSocketNotifier> notifier_;
    Signal<Event, const nlohmann::json&> events_;
};

} // namespace quillmoth::platform
