#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillmoth::test {

/// What the stand-alone server says to what.
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

private:
    struct Entry {
        std::string match;
        std::string answer;
        std::string topic;
    };

    [[nodiscard]] const Entry& entryFor(std::string_view message) const;

    std::vector<Entry> entries_;
};

/// The contents of the messages whose role is "user" in a request's body, in order.
[[nodiscard]] std::vector<std::string> userMessages(const std::string& body);

/// Whether a request's body asks for a stream.
[[nodiscard]] bool asksForStream(const std::string& body);

/// `answer` in pieces as a model gives them: a word with its blank, or a few characters.
[[nodiscard]] std::vector<std::string> tokens(std::string_view answer);

} // namespace quillmoth::test
