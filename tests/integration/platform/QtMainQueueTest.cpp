#include "Platform/Qt/QtMainQueue.h"
#include "tests/integration/platform/CoreApplication.h"

#include <QAbstractEventDispatcher>
#include <QEventLoop>
#include <QSocketNotifier>
#include <QTimer>
#include <array>
#include <gtest/gtest.h>
#include <thread>
#include <unistd.h>

namespace quillmoth::platform {

namespace {

using namespace std::chrono_literals;
using SteadyClock = std::chrono::steady_clock;

class QtMainQueueTest : public testing::Test {
protected:
    /// Runs the loop until some work calls stop().
    static void run() { QCoreApplication::exec(); }

    static void stop() { QCoreApplication::exit(); }

    std::optional<test::CoreApplication> application{std::in_place};
    QtMainQueue queue;
    std::vector<int> order;
};

} // namespace

TEST_F(QtMainQueueTest, WorkRunsInOrderAfterTheTurnThatQueuedItAlsoInANestedLoop) {
    const auto add = [&](int number) { queue.async([&, number] { order.push_back(number); }); };
    QEventLoop nested;
    queue.async([&] {
        order.push_back(1);
        // Where nobody wakes the loop for what is queued already.
        QTimer::singleShot(5000, &nested, &QEventLoop::quit);
        nested.exec();
        order.push_back(5);
        add(6);
        queue.async([] { stop(); });
    });
    add(2);
    queue.async([&] {
        order.push_back(3);
        add(4);
        queue.async([&] { nested.quit(); });
    });
    EXPECT_TRUE(order.empty());
    run();
    EXPECT_EQ(order, (std::vector{1, 2, 3, 4, 5, 6}));
}

TEST_F(QtMainQueueTest, WorkOfEveryThreadKeepsItsOrderAndSeesWhatTheThreadWrote) {
    constexpr int kThreads = 4;
    constexpr int kPosts = 5000;
    std::array<int, kThreads> next{};
    int finished = 0;
    bool inOrder = true;
    std::vector<std::thread> threads;
    for (std::size_t number = 0; number < kThreads; ++number)
        threads.emplace_back([&, number] {
            for (int post = 0; post < kPosts; ++post)
                queue.async([&, number, payload = std::make_shared<int>(post)] {
                    inOrder = inOrder && *payload == next[number]++;
                    finished += *payload == kPosts - 1 ? 1 : 0;
                    if (finished == kThreads)
                        stop();
                });
        });
    run();
    for (auto& thread : threads)
        thread.join();
    EXPECT_TRUE(inOrder);
    EXPECT_EQ(next, (std::array{kPosts, kPosts, kPosts, kPosts}));
}

TEST_F(QtMainQueueTest, DelayedWorkIsNeverEarlyAndComesInTheOrderOfItsMoments) {
    const auto start = SteadyClock::now();
    bool early = false;
    const auto add = [&](int number, std::chrono::microseconds delay) {
        queue.asyncAfter(delay, [&, number, delay] {
            early = early || SteadyClock::now() - start < delay;
            order.push_back(number);
        });
    };
    add(5, 30'000us);
    add(3, 2'100us);
    add(2, 900us);
    add(4, 2'100us);
    add(1, 0us);
    queue.asyncAfter(std::chrono::duration<double>(1e300), [] { ADD_FAILURE(); });
    std::thread([&] { queue.asyncAfter(40ms, [] { stop(); }); }).join();
    run();
    EXPECT_EQ(order, (std::vector{1, 2, 3, 4, 5}));
    EXPECT_FALSE(early);
    EXPECT_LT(SteadyClock::now() - start, 5s);
}

TEST_F(QtMainQueueTest, WorkThatNeverEndsToQueueMoreLetsInputThrough) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    QSocketNotifier input(ends[0], QSocketNotifier::Read);
    int turns = 0;
    QObject::connect(&input, &QSocketNotifier::activated, &input, [&] { stop(); });
    std::function<void()> flood = [&] {
        // Far beyond what it takes: the failure shows as a number, not as a test that hangs.
        if (++turns == 100'000)
            stop();
        queue.async(flood);
    };
    queue.async(flood);
    ASSERT_EQ(write(ends[1], "x", 1), 1);
    run();
    EXPECT_LT(turns, 1000);
    close(ends[0]);
    close(ends[1]);
}

TEST_F(QtMainQueueTest, ManyPostsWakeTheLoopOnceAndNoneLeaveItAsleep) {
    int awakenings = 0;
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake,
                     [&] { ++awakenings; });
    std::thread([&] {
        for (int post = 0; post < 10'000; ++post)
            queue.async([] {});
        queue.async([] { stop(); });
    }).join();
    run();
    EXPECT_LT(awakenings, 10);
    awakenings = 0;
    queue.asyncAfter(100ms, [] { stop(); });
    run();
    EXPECT_LT(awakenings, 6) << "the wait is not to be spent polling";
}

TEST_F(QtMainQueueTest, WorkThatIsLeftOrComesLaterIsDroppedWhenTheApplicationGoes) {
    const auto captured = std::make_shared<int>();
    const auto work = [captured] { ADD_FAILURE() << "ran without an application"; };
    queue.async(work);
    queue.asyncAfter(1ms, work);
    application.reset();
    queue.async(work);
    std::thread([&] { queue.asyncAfter(1ms, work); }).join();
    // The one here and the one in `work`.
    EXPECT_EQ(captured.use_count(), 2);
}

} // namespace quillmoth::platform
