#include "Quillmoth/Application/HeldToggle.h"
#include "Platform/Fake/FakeMainQueue.h"

#include <gtest/gtest.h>

namespace quillmoth {
namespace {

/// How often requests at these moments toggle.
int toggles(const std::vector<double>& moments, HeldToggle::Repeat repeat = {}) {
    platform::FakeMainQueue queue;
    int count = 0;
    HeldToggle held(
        queue, [&queue] { return queue.now(); }, [&count] { ++count; });
    for (const double moment : moments) {
        queue.advance(moment - queue.now());
        held.request(repeat);
    }
    queue.advance(1);
    return count;
}

std::vector<double> heldFor(double seconds, double delay, double interval) {
    std::vector<double> moments = {1};
    for (double moment = delay; moment < seconds; moment += interval)
        moments.push_back(1 + moment);
    return moments;
}

} // namespace

TEST(HeldToggle, AHeldKeyCountsOnce) {
    EXPECT_EQ(toggles(heldFor(1.5, 0.5, 0.03)), 1);
    // Late, since processes take their time to start.
    EXPECT_EQ(toggles(heldFor(3, 0.62, 0.15)), 1);
    EXPECT_EQ(
        toggles(heldFor(5, 1, 0.3), {.delay = HeldToggle::Seconds(1), .interval = HeldToggle::Seconds(0.3)}),
        1);
}

TEST(HeldToggle, EachPressCounts) {
    EXPECT_EQ(toggles({1, 1.3, 1.6, 2.1, 2.6, 5}), 6);
    auto moments = heldFor(1.5, 0.5, 0.03);
    moments.push_back(3);
    EXPECT_EQ(toggles(moments), 2);
}

} // namespace quillmoth
