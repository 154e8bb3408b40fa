// From the release of the hot key to the panel that is painted and has the keyboard, in a session of sway
// without a screen. The program tells its conversation with the compositor itself, by WAYLAND_DEBUG.

#include "tests/desktop/support/ProgramSession.h"
#include "tests/desktop/support/WaitFor.h"
#include "tests/desktop/wayland/SwaySession.h"

#include <benchmark/benchmark.h>
#include <linux/input-event-codes.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace quillmoth::test;

constexpr int kPresses = 100;

/// What WAYLAND_DEBUG goes by, in microseconds.
std::uint32_t now() {
    timespec time{};
    clock_gettime(CLOCK_REALTIME, &time);
    return static_cast<std::uint32_t>(time.tv_sec * 1'000'000 + time.tv_nsec / 1000);
}

struct Line {
    std::uint32_t time = 0;
    std::string text;
};

/// "[1234567.890]  -> wl_surface@7.commit()"
std::vector<Line> linesOf(const std::string& log) {
    std::vector<Line> lines;
    std::istringstream stream(log);
    for (std::string text; std::getline(stream, text);) {
        unsigned milliseconds = 0;
        unsigned microseconds = 0;
        const char* format = "[%u.%u]";
        if (std::sscanf(text.c_str(), format, &milliseconds, &microseconds) == 2)
            lines.push_back({.time = milliseconds * 1000 + microseconds, .text = text});
    }
    return lines;
}

/// Of the first line at `from` or behind it that has both parts; moves `from` there.
std::uint32_t timeOf(const std::vector<Line>& lines, std::size_t& from, const char* part,
                     const char* otherPart = "") {
    const auto fits = [&](const Line& line) {
        return line.text.find(part) != std::string::npos && line.text.find(otherPart) != std::string::npos;
    };
    const auto found = std::find_if(lines.begin() + static_cast<std::ptrdiff_t>(from), lines.end(), fits);
    from = static_cast<std::size_t>(found - lines.begin());
    return found != lines.end() ? found->time : 0;
}

/// In milliseconds since the release.
struct Times {
    /// The panel's surface is made: the capture is done.
    std::vector<double> asked;
    std::vector<double> keys;
    std::vector<double> painted;
    std::vector<double> whole;
};

double quantile(std::vector<double> values, std::size_t percent) {
    std::sort(values.begin(), values.end());
    return values[values.size() * percent / 100];
}

std::vector<std::uint32_t> pressTheHotKey(SwaySession& desktop, ProgramSession& session) {
    const auto hasKeyboard = [&] {
        const auto field = session.shown().find("text", "Command");
        return field && field->isFocused();
    };
    std::vector<std::uint32_t> released;
    for (int press = 0; press < kPresses; ++press) {
        desktop.input().pressKey(KEY_LEFTALT);
        desktop.input().pressKey(KEY_SPACE);
        letPass(std::chrono::milliseconds(20));
        released.push_back(now());
        desktop.input().releaseKey(KEY_SPACE);
        desktop.input().releaseKey(KEY_LEFTALT);
        waitFor(hasKeyboard);
        // As a hand does.
        letPass(std::chrono::milliseconds(100));
        desktop.input().chord({KEY_LEFTALT, KEY_SPACE});
        waitFor([&] { return !session.shown().find("text", "Command"); });
        letPass(std::chrono::milliseconds(100));
    }
    return released;
}

Times timesOf(const std::vector<Line>& lines, const std::vector<std::uint32_t>& released) {
    Times times;
    std::size_t from = 0;
    for (const std::uint32_t start : released) {
        const auto since = [start](std::uint32_t time) { return (time - start) / 1000.0; };
        while (from < lines.size() && static_cast<std::int32_t>(lines[from].time - start) < 0)
            ++from;
        times.asked.push_back(since(timeOf(lines, from, ".get_layer_surface(")));
        std::size_t place = from;
        times.keys.push_back(since(timeOf(lines, place, "wl_keyboard@", ".enter(")));
        place = from;
        times.painted.push_back(since(timeOf(lines, place, "wl_surface@", ".damage")));
        times.whole.push_back(std::max(times.keys.back(), times.painted.back()));
    }
    return times;
}

void swayHotKey(benchmark::State& state) {
    ProgramSession session("");
    SwaySession desktop;
    session.start({}, {{"WAYLAND_DEBUG", "1"}});
    std::vector<std::uint32_t> released;
    for (auto unused : state) {
        (void)unused;
        released = pressTheHotKey(desktop, session);
    }
    const Times times = timesOf(linesOf(session.output()), released);
    state.counters["asked_ms"] = quantile(times.asked, 50);
    state.counters["keys_ms"] = quantile(times.keys, 50);
    state.counters["painted_ms"] = quantile(times.painted, 50);
    state.counters["panel_ms"] = quantile(times.whole, 50);
    state.counters["panel_p95_ms"] = quantile(times.whole, 95);
    session.kill();
}

BENCHMARK(swayHotKey)->Name("sway_hotkey")->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
