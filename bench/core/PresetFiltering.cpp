// One search among 100,000 presets, against QString::contains without regard to case.

#include "Quillmoth/Assistant/PresetFilter.h"

#include <benchmark/benchmark.h>

#include <QString>

#include <string>
#include <vector>

namespace quillmoth {
namespace {

constexpr std::size_t kPresets = 100'000;
constexpr const char* kSearches[] = {"tr", "e", "summarise", "straße", "nowhere at all"};

std::vector<PromptData> presets() {
    const char* const names[] = {"Translate to English",      "Fix the grammar",
                                 "Summarise in three points", "Rewrite with more warmth",
                                 "Find the way in a straße",  "Plan my week"};
    std::vector<PromptData> result(kPresets);
    for (std::size_t i = 0; i < kPresets; ++i) {
        result[i].name = names[i % std::size(names)] + std::string(" ") + std::to_string(i);
        result[i].promptType = "context";
    }
    return result;
}

void ours(benchmark::State& state) {
    const auto prompts = presets();
    PresetFilter filter;
    const std::string search = kSearches[state.range(0)];
    std::size_t found = filter.matching(prompts, search, true).size();
    for (auto _ : state) {
        const auto indices = filter.matching(prompts, search, true);
        benchmark::DoNotOptimize(indices.data());
        found = indices.size();
    }
    state.SetLabel(search + ": " + std::to_string(found));
}

/// The first search after a change of the presets.
void oursFirst(benchmark::State& state) {
    const auto prompts = presets();
    PresetFilter filter;
    for (auto _ : state) {
        filter.invalidate();
        benchmark::DoNotOptimize(filter.matching(prompts, "tr", true));
    }
}

void qString(benchmark::State& state) {
    std::vector<QString> names;
    for (const PromptData& prompt : presets())
        names.push_back(QString::fromStdString(prompt.name));
    const QString search = QString::fromUtf8(kSearches[state.range(0)]);
    std::size_t found = 0;
    for (auto _ : state) {
        std::vector<std::int64_t> indices;
        for (std::size_t i = 0; i < names.size(); ++i) {
            if (names[i].contains(search, Qt::CaseInsensitive))
                indices.push_back(static_cast<std::int64_t>(i));
        }
        benchmark::DoNotOptimize(indices.data());
        found = indices.size();
    }
    state.SetLabel(search.toStdString() + ": " + std::to_string(found));
}

BENCHMARK(ours)->DenseRange(0, 4)->Unit(benchmark::kMicrosecond);
BENCHMARK(qString)->DenseRange(0, 4)->Unit(benchmark::kMicrosecond);
BENCHMARK(oursFirst)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace quillmoth

BENCHMARK_MAIN();
