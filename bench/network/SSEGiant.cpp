// One giant event in pieces of 16 bytes: four times the size may take 4.5 times as long at most. The plain
// parser, which searches its buffer again for each piece, shows what that saves.

#include "EventSource/EventStreamParser.h"
#include "tests/unit/eventsource/PlainParser.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <limits>
#include <string>
#include <string_view>

namespace {

constexpr std::size_t kSmall = std::size_t{256} << 10;
constexpr std::size_t kLarge = std::size_t{1} << 20;

std::string giantEvent(std::size_t size) {
    return "data: " + std::string(size, 'x') + "\n\n";
}

template<class Parser>
std::size_t parse(const std::string& stream) {
    constexpr std::size_t kPiece = 16;
    Parser parser;
    std::size_t events = 0;
    for (std::size_t offset = 0; offset < stream.size(); offset += kPiece)
        events += parser.append(std::string_view(stream).substr(offset, kPiece)).size();
    return events;
}

template<class Parser>
void parseGiant(benchmark::State& state) {
    const std::string stream = giantEvent(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(parse<Parser>(stream));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(stream.size()));
}

/// The best of several runs, in seconds.
double bestTime(const std::string& stream) {
    double best = std::numeric_limits<double>::max();
    for (int run = 0; run < 20; ++run) {
        const auto start = std::chrono::steady_clock::now();
        benchmark::DoNotOptimize(parse<quillmoth::EventStreamParser>(stream));
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        best = std::min(best, taken.count());
    }
    return best;
}

void growth(benchmark::State& state) {
    const std::string small = giantEvent(kSmall);
    const std::string large = giantEvent(kLarge);
    double ratio = 0;
    for (auto _ : state)
        ratio = bestTime(large) / bestTime(small);
    state.counters["ratio"] = ratio;
    state.counters["limit"] = 4.5;
}

} // namespace

BENCHMARK(parseGiant<quillmoth::EventStreamParser>)->Name("sse_giant/ours")->Arg(kSmall)->Arg(kLarge);
BENCHMARK(parseGiant<quillmoth::test::PlainParser>)->Name("sse_giant/plain")->Arg(kSmall)->Iterations(1);
BENCHMARK(growth)->Name("sse_giant/growth")->Iterations(1);

BENCHMARK_MAIN();
