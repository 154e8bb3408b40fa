#pragma once

#include "tests/support/ScriptedChatServer.h"

#include <chrono>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmoth::test {

/// What a server that stands in for a model says to what.
class ChatScript {
public:
    /// A few answers that show off Markdown.
    ChatScript();

    /// Reads a JSON list of {"match": ..., "answer": ..., "topic": ...}, the topic optional, to be tried
    /// before the built-in answers. Throws std::runtime_error with a sentence where it cannot.
    void load(const std::string& path);

    /// The answer of the first entry whose `match` is in `message`, letter case aside.
    [[nodiscard]] const std::string& answerTo(std::string_view message) const;

    /// A short title for a conversation that begins with `message`, found in the same way.
    [[nodiscard]] const std::string& topicOf(std::string_view message) const;

    /// Answers the service's requests from now on, streams in pieces of which each takes `timeOfAPiece`.
    /// `asked`, which may be empty, is told the last message of each request, on a thread of the server.
    void serve(ScriptedChatServer& server, std::chrono::milliseconds timeOfAPiece,
               const std::function<void(const ScriptedRequest&, const std::string&)>& asked = {}) const;

private:
    struct Entry {
        std::string match;
        std::string answer;
        std::string topic;
    };

    [[nodiscard]] const Entry& entryFor(std::string_view message) const;

    std::vector<Entry> entries_;
};

} // namespace quillmoth::test
