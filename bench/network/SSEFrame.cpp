// The parser alone: a chat stream in chunks of 1, 16 and 1400 bytes, beside a plain parser that searches its
// buffer again and erases its front for each event.

#include "EventSource/EventStreamParser.h"
#include "tests/unit/eventsource/PlainParser.h"

#include <benchmark/benchmark.h>

#include <string>
#include <string_view>

namespace {

constexpr int kEvents = 1000;

std::string chatStream() {
    std::string stream;
    for (int index = 0; index < kEvents; ++index)
        stream += R"(data: {"id":"chatcmpl-7","object":"chat.completion.chunk","created":1700000000,)"
                  R"("model":"gpt-3.5-turbo","choices":[{"index":0,"delta":{"content":" word"},)"
                  R"("finish_reason":null}]})"
                  "\n\n";
    return stream;
}

template<class Parser>
void parseChatStream(benchmark::State& state) {
    const std::string stream = chatStream();
    const auto chunk = static_cast<std::size_t>(state.range(0));
    for (auto _ : state) {
        Parser parser;
        std::size_t events = 0;
        for (std::size_t offset = 0; offset < stream.size(); offset += chunk)
            events += parser.append(std::string_view(stream).substr(offset, chunk)).size();
        benchmark::DoNotOptimize(events);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(stream.size()));
    state.counters["events"] = benchmark::Counter(kEvents, benchmark::Counter::kIsIterationInvariantRate |
                                                               benchmark::Counter::kInvert);
}

} // namespace

BENCHMARK(parseChatStream<quillmoth::EventStreamParser>)->Name("sse_frame/ours")->Arg(1)->Arg(16)->Arg(1400);
BENCHMARK(parseChatStream<quillmoth::test::PlainParser>)->Name("sse_frame/plain")->Arg(1)->Arg(16)->Arg(1400);

BENCHMARK_MAIN();
