#pragma once

#include "EventSource/EventSource.h"
#include "Platform/Platform.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmoth {

class DataModel;
struct StreamRequest;

/// Carries the model's conversation to the service, and the answer back into the model: a part of the model,
/// which makes it and keeps it. Main thread.
class AnswerStream {
public:
    AnswerStream(DataModel& model, const platform::Platform& platform) : model_(model), platform_(platform) {}

    /// Asks with `text` as the next message. An empty one is not sent. Where nothing may be sent the text
    /// goes back into the command.
    void send(std::string text);

    /// Takes the last message away, and asks again. Nothing while a request runs. A conversation without a
    /// message is a fatal fault.
    void regenerate();

    /// True where nothing may be sent as the settings are; the model's error says why.
    [[nodiscard]] bool isRefused();

    /// Ends the running request. What has come of its answer stays; the next completion, which is to be its
    /// own, is ignored.
    void cancel();

private:
    struct Answer;

    void connect(StreamRequest streamRequest, std::optional<std::string> sentText);
    void opened(const std::shared_ptr<Answer>& answer);
    void decodeStreamChunk(const std::optional<std::string>& data, const std::shared_ptr<Answer>& answer);
    [[nodiscard]] std::string_view withinLimit(Answer& answer, std::string_view content);
    void deliver(Answer& answer, std::string_view whole);
    void completed(const Answer& answer, const EventSource& source, std::optional<int> statusCode,
                   const std::optional<platform::URLError>& error);
    void classifyStatus(std::optional<int> statusCode, bool archives);
    void checkAnswer(const Answer& answer, const EventSource& source);
    void giveTextBack(const std::optional<std::string>& sentText);
    void dropTwo();

    DataModel& model_;
    const platform::Platform platform_;
    // Cancelled, and kept until their completion has come: it must not be dropped with them.
    std::vector<std::shared_ptr<EventSource>> cancelled_;
};

} // namespace quillmoth
