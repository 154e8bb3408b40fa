// From the bytes of an event stream to the text of an answer, against the same road with nlohmann::json.

#include "EventSource/EventStreamParser.h"
#include "Quillmoth/Chat/ChatDeltaReader.h"

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>

namespace quillmoth {
namespace {

constexpr std::size_t kEvents = 2000;

std::string stream() {
    const char* const words[] = {" the", " moth", " wait", ",", " \\\"pauses\\\"", " für", "\\n\\n", " 🦋"};
    std::string bytes;
    for (std::size_t i = 0; i < kEvents; ++i) {
        bytes += R"(data: {"id":"chatcmpl-7QyqpwdfhqwajicIEznoc6Q47XAyW","object":"chat.completion.chunk",)"
                 R"("created":1700000000,"model":"gpt-3.5-turbo-0125","system_fingerprint":"fp_44709d6fcb",)"
                 R"("choices":[{"index":0,"delta":{"content":")";
        bytes += words[i % std::size(words)];
        bytes += "\"},\"logprobs\":null,\"finish_reason\":null}]}\n\n";
    }
    return bytes;
}

/// Sends the stream through a parser in pieces of `pieceSize` bytes and gives the text that `contentOf`
/// finds.
template<class ContentOf>
std::string answer(const std::string& bytes, std::size_t pieceSize, ContentOf contentOf) {
    EventStreamParser parser;
    std::string text;
    for (std::size_t start = 0; start < bytes.size(); start += pieceSize) {
        for (const Event& event : parser.append(std::string_view(bytes).substr(start, pieceSize)))
            text += contentOf(event.data.value_or(""));
    }
    return text;
}

std::string contentOfDelta(const ChatResponseDelta* delta) {
    if (delta == nullptr || !delta->choices || delta->choices->empty() || !delta->choices->front().delta)
        return {};
    return delta->choices->front().delta->content.value_or("");
}

template<class Value>
void take(const nlohmann::json& object, const char* key, std::optional<Value>& value) {
    const auto found = object.find(key);
    if (found != object.end() && !found->is_null())
        value = found->get<Value>();
}

ChatResponseDelta readWithPeer(const std::string& text) {
    const auto json = nlohmann::json::parse(text);
    ChatResponseDelta delta;
    take(json, "id", delta.id);
    take(json, "object", delta.object);
    take(json, "created", delta.created);
    take(json, "model", delta.model);
    for (const auto& entry : json.at("choices")) {
        if (!delta.choices)
            delta.choices.emplace();
        auto& choice = delta.choices->emplace_back();
        const auto& inner = entry.at("delta");
        choice.delta.emplace();
        take(inner, "role", choice.delta->role);
        take(inner, "content", choice.delta->content);
        take(entry, "finish_reason", choice.finishReason);
        take(entry, "index", choice.index);
    }
    return delta;
}

void report(benchmark::State& state, const std::string& bytes) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes.size()));
    state.counters["per_event"] =
        benchmark::Counter(static_cast<double>(kEvents),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void ours(benchmark::State& state) {
    const std::string bytes = stream();
    for (auto _ : state) {
        ChatDeltaReader reader;
        benchmark::DoNotOptimize(answer(bytes, static_cast<std::size_t>(state.range(0)),
                                        [&](const auto& data) { return contentOfDelta(reader.read(data)); }));
    }
    report(state, bytes);
}

/// Each event parsed as a record of its own.
void oursWholeRecords(benchmark::State& state) {
    const std::string bytes = stream();
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            answer(bytes, static_cast<std::size_t>(state.range(0)), [](const auto& data) {
                const auto delta = readChatResponseDelta(data);
                return contentOfDelta(delta ? &*delta : nullptr);
            }));
    }
    report(state, bytes);
}

void nlohmannRecords(benchmark::State& state) {
    const std::string bytes = stream();
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            answer(bytes, static_cast<std::size_t>(state.range(0)), [](const auto& data) {
                const auto delta = readWithPeer(data);
                return contentOfDelta(&delta);
            }));
    }
    report(state, bytes);
}

/// The parser's share in both.
void cuttingAlone(benchmark::State& state) {
    const std::string bytes = stream();
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            answer(bytes, static_cast<std::size_t>(state.range(0)),
                   [](const auto& data) { return std::string_view(data).substr(0, 4); }));
    }
    report(state, bytes);
}

// A piece an event, as services flush them, and full reads.
BENCHMARK(ours)->Arg(261)->Arg(16384);
BENCHMARK(oursWholeRecords)->Arg(261)->Arg(16384);
BENCHMARK(nlohmannRecords)->Arg(261)->Arg(16384);
BENCHMARK(cuttingAlone)->Arg(261)->Arg(16384);

} // namespace
} // namespace quillmoth

BENCHMARK_MAIN();
