// The program that waits for its hot key: how long it takes from its start to the hidden panel, how often it
// wakes up and what memory it takes. The peer is a program with one hidden window and nothing else. Both run
// on a virtual desktop with a window manager, a session bus and no tray.

#include "tests/desktop/support/VirtualDesktop.h"

#include <benchmark/benchmark.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace quillmoth::test;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr int kStarts = 41;
constexpr auto kSettling = 3s;
constexpr auto kWatched = 4s;

struct Candidate {
    const char* program;
    const char* window;
};

constexpr Candidate kOurs = {QUILLMOTH_PROGRAM, "Quillmoth Floating"};
constexpr Candidate kPeer = {TRIVIAL_PROGRAM, "Trivial Program"};

bool hasWindow(const VirtualDesktop& desktop, const std::string& title) {
    const std::unique_ptr<xcb_query_tree_reply_t, void (*)(void*)> tree(
        xcb_query_tree_reply(desktop.connection(), xcb_query_tree(desktop.connection(), desktop.rootWindow()),
                             nullptr),
        std::free);
    const DesktopWindows windows(desktop.connection(), desktop.rootWindow());
    const xcb_window_t* children = tree ? xcb_query_tree_children(tree.get()) : nullptr;
    const int count = tree ? xcb_query_tree_children_length(tree.get()) : 0;
    return std::any_of(children, children + count,
                       [&](xcb_window_t child) { return windows.title(child) == title; });
}

bool awaitWindow(const VirtualDesktop& desktop, const std::string& title) {
    const auto deadline = Clock::now() + 10s;
    while (!hasWindow(desktop, title)) {
        if (Clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(500us);
    }
    return true;
}

/// Milliseconds; negative where the window did not come.
double measureStart(const VirtualDesktop& desktop, const Candidate& candidate) {
    const auto start = Clock::now();
    ChildProcess program({candidate.program}, {.environment = {{"QT_QPA_PLATFORM", "xcb"}}});
    if (!awaitWindow(desktop, candidate.window))
        return -1;
    const std::chrono::duration<double, std::milli> time = Clock::now() - start;
    program.terminate();
    return time.count();
}

/// The number behind `name` in a file of lines "name: number ...".
std::uint64_t numberIn(const std::filesystem::path& path, const std::string& name) {
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);)
        if (line.starts_with(name + ":"))
            return std::stoull(line.substr(name.size() + 1));
    return 0;
}

/// How often the threads of the process have begun to run so far.
std::uint64_t wakeUps(pid_t process) {
    std::uint64_t sum = 0;
    const auto tasks = std::filesystem::path("/proc") / std::to_string(process) / "task";
    for (const auto& task : std::filesystem::directory_iterator(tasks))
        sum += numberIn(task.path() / "status", "voluntary_ctxt_switches");
    return sum;
}

struct Idleness {
    double wakeUps;
    double megabytes;
};

Idleness measureIdleness(const VirtualDesktop& desktop, const Candidate& candidate) {
    ChildProcess program({candidate.program}, {.environment = {{"QT_QPA_PLATFORM", "xcb"}}});
    const bool isThere = awaitWindow(desktop, candidate.window);
    std::this_thread::sleep_for(kSettling);
    const auto before = wakeUps(program.processIdentifier());
    std::this_thread::sleep_for(kWatched);
    const auto after = wakeUps(program.processIdentifier());
    const auto memory = std::filesystem::path("/proc") / std::to_string(program.processIdentifier());
    const auto kilobytes = numberIn(memory / "smaps_rollup", "Pss");
    return {isThere ? static_cast<double>(after - before) : -1, static_cast<double>(kilobytes) / 1024};
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void prepareHome(const VirtualDesktop& desktop) {
    const std::filesystem::path folder = desktop.homeDirectory() + "/.config/quillmoth";
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "defaults.json") << R"({"firstTime": false, "accessibilityConsent": true})";
}

void idle(benchmark::State& state) {
    const VirtualDesktop desktop({.accessibility = true});
    prepareHome(desktop);
    std::vector<double> ours;
    std::vector<double> peer;
    for (auto unused : state) {
        (void)unused;
        // One each for the caches of the disk and of the font library.
        if (measureStart(desktop, kOurs) < 0 || measureStart(desktop, kPeer) < 0) {
            state.SkipWithError("no window came");
            return;
        }
        for (int start = 0; start < kStarts; ++start) {
            ours.push_back(measureStart(desktop, kOurs));
            peer.push_back(measureStart(desktop, kPeer));
        }
    }
    const Idleness our = measureIdleness(desktop, kOurs);
    const Idleness other = measureIdleness(desktop, kPeer);
    state.counters["start_ms"] = median(ours);
    state.counters["trivial_start_ms"] = median(peer);
    state.counters["start_ratio"] = median(ours) / median(peer);
    state.counters["wakeups_in_4_s"] = our.wakeUps;
    state.counters["trivial_wakeups_in_4_s"] = other.wakeUps;
    state.counters["pss_mb"] = our.megabytes;
    state.counters["trivial_pss_mb"] = other.megabytes;
}

BENCHMARK(idle)->Name("idle")->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
