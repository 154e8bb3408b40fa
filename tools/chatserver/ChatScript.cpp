#include "ChatScript.h"

#include "Foundation/ASCII.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>
#include <stdexcept>

namespace quillmoth::test {

namespace {

using nlohmann::json;

constexpr const char* kCodeAnswer = R"(Here is a function that says whether a number is **prime**:

```swift
func isPrime(_ n: Int) -> Bool {
    guard n > 1 else { return false }
    // Larger divisors come in pairs with smaller ones.
    return !stride(from: 2, through: Int(Double(n).squareRoot()), by: 1).contains { n % $0 == 0 }
}
```

Call it as `isPrime(97)`.
)";

constexpr const char* kTableAnswer = R"(| City | Days | What to see |
|:-----|-----:|-------------|
| Rome | 3 | Forum, Trastevere, *gelato* |
| Florence | 2 | Uffizi, the Duomo |
| Venice | 1 | Get lost |

1. Book the trains **early**.
2. Pack light.
   - one pair of good shoes
   - ~~three~~ two shirts
)";

constexpr const char* kGrammarAnswer =
    "The weather was lovely yesterday, so we went for a walk along the river and didn't come home until "
    "dark.";

constexpr const char* kPlainAnswer =
    R"(This is a *scripted* answer from a server for trying the program out; no model is behind it.

> It streams in small pieces, as a real service does.

Ask it for **code**, for a **table**, or to fix your **grammar**.
)";

constexpr const char* kTopic = "💬 A scripted talk";

json parsed(const std::string& text) {
    return json::parse(text, nullptr, false);
}

/// A sign that belongs to the piece before it, so that no UTF-8 sequence is cut.
bool continuesSequence(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

/// The contents of the messages whose role is "user" in a request's body, in order.
std::vector<std::string> userMessages(const std::string& body) {
    const json record = parsed(body);
    std::vector<std::string> contents;
    if (!record.is_object() || !record.contains("messages"))
        return contents;
    for (const json& message : record["messages"]) {
        const bool isUser = message.is_object() && message.value("role", json()) == "user";
        if (isUser && message.value("content", json()).is_string())
            contents.push_back(message["content"]);
    }
    return contents;
}

/// Whether a request's body asks for a stream.
bool asksForStream(const std::string& body) {
    const json record = parsed(body);
    return record.is_object() && record.value("stream", json()) == true;
}

/// `answer` in pieces as a model gives them: a word with its blank, or a few characters.
std::vector<std::string> tokens(std::string_view answer) {
    constexpr std::size_t kLongest = 7;
    std::vector<std::string> pieces;
    for (const char c : answer) {
        const bool begins =
            pieces.empty() || c == ' ' || (pieces.back().size() >= kLongest && !continuesSequence(c));
        if (begins)
            pieces.emplace_back();
        pieces.back().push_back(c);
    }
    return pieces;
}

ScriptedAnswer inPieces(std::string_view text, std::chrono::milliseconds timeOfAPiece) {
    ScriptedAnswer answer = chatStream(tokens(text));
    std::vector<Step> steps;
    for (Step& step : answer.steps) {
        steps.emplace_back(Pause{timeOfAPiece});
        steps.push_back(std::move(step));
    }
    answer.steps = std::move(steps);
    return answer;
}

} // namespace

ChatScript::ChatScript()
    : entries_{{"code", kCodeAnswer, "💻 Prime numbers"},
               {"function", kCodeAnswer, "💻 Prime numbers"},
               {"table", kTableAnswer, "🌍 Trip to Rome"},
               {"rome", kTableAnswer, "🌍 Trip to Rome"},
               {"trip", kTableAnswer, "🌍 Trip to Rome"},
               {"grammar", kGrammarAnswer, "✍️ Grammar check"},
               {"spelling", kGrammarAnswer, "✍️ Grammar check"},
               {"rewrite", kGrammarAnswer, "✍️ Grammar check"},
               {"", kPlainAnswer, kTopic}} {}

void ChatScript::load(const std::string& path) {
    std::ifstream file(path);
    if (!file)
        throw std::runtime_error("cannot read " + path);
    const json list = json::parse(file, nullptr, false);
    if (!list.is_array())
        throw std::runtime_error(path + " is not a JSON list");
    std::vector<Entry> loaded;
    for (const json& entry : list) {
        if (!entry.is_object() || !entry.value("match", json()).is_string() ||
            !entry.value("answer", json()).is_string())
            throw std::runtime_error(path + R"( must hold {"match": "...", "answer": "..."} only)");
        loaded.push_back({entry["match"], entry["answer"], entry.value("topic", std::string(kTopic))});
    }
    entries_.insert(entries_.begin(), loaded.begin(), loaded.end());
}

const ChatScript::Entry& ChatScript::entryFor(std::string_view message) const {
    const std::string text = lowercasedASCII(message);
    // The last of the built-in entries matches everything.
    return *std::find_if(entries_.begin(), entries_.end(), [&](const Entry& entry) {
        return text.find(lowercasedASCII(entry.match)) != std::string::npos;
    });
}

const std::string& ChatScript::answerTo(std::string_view message) const {
    return entryFor(message).answer;
}

const std::string& ChatScript::topicOf(std::string_view message) const {
    return entryFor(message).topic;
}

void ChatScript::serve(ScriptedChatServer& server, std::chrono::milliseconds timeOfAPiece,
                       const std::function<void(const ScriptedRequest&, const std::string&)>& asked) const {
    const auto answering = [&](bool alwaysStreams) {
        return [script = *this, timeOfAPiece, asked, alwaysStreams](const ScriptedRequest& request) {
            if (request.method != "POST")
                return jsonAnswer(405, R"({"error":{"message":"Only POST is answered here."}})");
            std::vector<std::string> messages = userMessages(request.body);
            if (messages.empty())
                messages.emplace_back();
            if (asked)
                asked(request, messages.back());
            if (alwaysStreams || asksForStream(request.body))
                return inPieces(script.answerTo(messages.back()), timeOfAPiece);
            return jsonAnswer(200, chatResponse(script.topicOf(messages.front())));
        };
    };
    server.answer("/v1/chat/completions", answering(false));
    server.answer("/api/v1/chat/completions", answering(false));
    server.answer("/api/v1/chat/completions/stream", answering(true));
}

} // namespace quillmoth::test
