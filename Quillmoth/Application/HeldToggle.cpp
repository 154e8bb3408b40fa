#include "Quillmoth/Application/HeldToggle.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quillmoth {

namespace {

/// Each request starts a process first, which takes its time.
constexpr HeldToggle::Seconds kTolerance{0.15};
constexpr HeldToggle::Seconds kLeastGap{0.2};
constexpr double kGapInRepeats = 4;

} // namespace

HeldToggle::HeldToggle(platform::MainQueue& mainQueue, std::function<double()> now,
                       std::function<void()> toggle)
    : mainQueue_(mainQueue), now_(std::move(now)), toggle_(std::move(toggle)) {}

void HeldToggle::request(const Repeat& repeat) {
    const double now = now_();
    const Seconds sinceLast{now - std::exchange(last_, now)};
    const Seconds gap = std::max(kLeastGap, repeat.interval * kGapInRepeats);
    const int own = ++*count_;
    if (sinceLast < gap)
        return;
    if (std::abs(sinceLast.count() - repeat.delay.count()) > kTolerance.count()) {
        toggle_();
        return;
    }
    mainQueue_.asyncAfter(gap, [this, weak = std::weak_ptr(count_), own] {
        const auto count = weak.lock();
        if (count && *count == own)
            toggle_();
    });
}

} // namespace quillmoth
