// Reading and writing the JSON of 50,000 conversations, against nlohmann::ordered_json.

#include "Platform/UUIDSource.h"
#include "Quillmoth/Assistant/OldMessages.h"

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>

#include <cstdio>
#include <fstream>
#include <malloc.h>
#include <string>

namespace quillmoth {
namespace {

using nlohmann::ordered_json;

constexpr std::size_t kConversations = 50'000;

/// The same text for every message: what an id costs is not measured here.
class ConstantUUID final : public platform::UUIDSource {
public:
    [[nodiscard]] std::string makeUUID() override { return "00000000-0000-4000-8000-000000000000"; }
};

std::vector<oldMessagesStruct> conversations() {
    const std::string question = "How do I debounce a search field? It is für \"typing\" 🦋.";
    std::string answer;
    while (answer.size() < 700)
        answer +=
            "Wait until the typing pauses before you call it,\nso that a burst of keys costs one request. ";
    std::vector<oldMessagesStruct> result(kConversations);
    ConstantUUID uuids;
    for (std::size_t i = 0; i < kConversations; ++i) {
        result[i].topic = "⌛ Debouncing a search field " + std::to_string(i);
        result[i].created = 1700000000.25 + static_cast<double>(i);
        result[i].message = {makeChatMessage(uuids, "system", "You are a helpful assistant"),
                             makeChatMessage(uuids, "user", question),
                             makeChatMessage(uuids, "assistant", answer)};
    }
    return result;
}

std::string writeWithPeer(const std::vector<oldMessagesStruct>& conversations) {
    auto array = ordered_json::array();
    for (const auto& conversation : conversations) {
        auto messages = ordered_json::array();
        for (const auto& message : conversation.message)
            messages.push_back({{"role", message.role}, {"content", message.content}});
        array.push_back({{"topic", conversation.topic},
                         {"message", std::move(messages)},
                         {"created", conversation.created}});
    }
    return array.dump();
}

std::vector<oldMessagesStruct> readWithPeer(const std::string& json, platform::UUIDSource& uuids) {
    std::vector<oldMessagesStruct> result;
    for (const auto& entry : ordered_json::parse(json)) {
        auto& conversation = result.emplace_back();
        conversation.topic = entry.at("topic").get<std::string>();
        conversation.created = entry.at("created").get<double>();
        for (const auto& message : entry.at("message"))
            conversation.message.push_back(makeChatMessage(uuids, message.at("role").get<std::string>(),
                                                           message.at("content").get<std::string>()));
    }
    return result;
}

/// The largest resident size since the last reset, in bytes (proc(5), VmHWM).
double peakMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:"))
            return std::stod(line.substr(6)) * 1024;
    }
    return 0;
}

void resetPeakMemory() {
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << "5";
}

template<class Work>
void measure(benchmark::State& state, Work work) {
    double peak = 0;
    for (auto _ : state) {
        state.PauseTiming();
        resetPeakMemory();
        const double before = peakMemory();
        state.ResumeTiming();
        auto result = work();
        state.PauseTiming();
        peak = std::max(peak, peakMemory() - before);
        result = {};
        state.ResumeTiming();
    }
    state.counters["peak_MB"] = peak / 1e6;
}

void saveOurs(benchmark::State& state) {
    const auto history = conversations();
    measure(state, [&] { return std::move(*writeJSON(history)); });
}

void saveOrderedJSON(benchmark::State& state) {
    const auto history = conversations();
    measure(state, [&] { return writeWithPeer(history); });
}

void loadOurs(benchmark::State& state) {
    const std::string json = *writeJSON(conversations());
    ConstantUUID uuids;
    measure(state, [&] { return std::move(*readOldMessages(json, uuids)); });
    state.counters["file_MB"] = static_cast<double>(json.size()) / 1e6;
}

void loadOrderedJSON(benchmark::State& state) {
    const std::string json = *writeJSON(conversations());
    ConstantUUID uuids;
    measure(state, [&] { return readWithPeer(json, uuids); });
}

BENCHMARK(saveOurs)->Unit(benchmark::kMillisecond);
BENCHMARK(saveOrderedJSON)->Unit(benchmark::kMillisecond);
BENCHMARK(loadOurs)->Unit(benchmark::kMillisecond);
BENCHMARK(loadOrderedJSON)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace quillmoth

BENCHMARK_MAIN();
