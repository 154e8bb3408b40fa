#pragma once

#include "tests/support/Latch.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace quillmoth::test {

/// Sends bytes of the body, flushed at once; with chunked framing, as one chunk.
struct Send {
    std::string bytes;
};

/// Goes on when the test has opened the latch.
struct WaitFor {
    std::shared_ptr<Latch> latch;
};

/// Goes on when the client has closed its side.
struct WaitForClient {};

/// Lets real time pass; not for tests.
struct Pause {
    std::chrono::milliseconds duration;
};

/// Ends the connection with a reset.
struct Reset {};

using Step = std::variant<Send, WaitFor, WaitForClient, Pause, Reset>;

enum class Framing { chunked, contentLength, untilClose };

/// What the server answers: the head, unless it keeps silent, and then the steps.
struct ScriptedAnswer {
    int status = 200;
    std::vector<std::pair<std::string, std::string>> headers = {};
    std::vector<Step> steps = {};
    Framing framing = Framing::chunked;
    bool sendsHead = true;
    bool keepsAlive = true;
};

/// One piece of a streamed answer as an event: `data: {"choices":[{"delta":{"content":...},"index":0}]}`.
[[nodiscard]] std::string chatEvent(std::string_view content);

/// A whole answer as a record of the one-shot request.
[[nodiscard]] std::string chatResponse(std::string_view content);

/// A stream of these bytes, each piece sent by itself.
[[nodiscard]] ScriptedAnswer eventStream(std::vector<std::string> pieces);

/// A streamed chat answer of these pieces of text, with the service's closing line.
[[nodiscard]] ScriptedAnswer chatStream(const std::vector<std::string>& contents);

[[nodiscard]] ScriptedAnswer jsonAnswer(int status, std::string body);
[[nodiscard]] ScriptedAnswer redirectAnswer(int status, const std::string& location);

/// Never says anything; ends when the client gives up.
[[nodiscard]] ScriptedAnswer silentAnswer();

/// The same bytes, but cut at places that `seed` chooses.
[[nodiscard]] ScriptedAnswer cutRandomly(ScriptedAnswer answer, std::uint32_t seed);

} // namespace quillmoth::test
