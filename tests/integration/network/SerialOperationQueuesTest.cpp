#include "Platform/Posix/SerialOperationQueues.h"

#include "tests/support/Latch.h"

#include <gtest/gtest.h>

#include <atomic>
#include <vector>

namespace quillmoth::test {

namespace {

TEST(SerialOperationQueues, RunAllWorkOfAQueueInOrderAndOneAtATime) {
    std::vector<int> order;
    // It outlives the queues, whose threads use it.
    Latch latch;
    {
        platform::SerialOperationQueues queues;
        const auto queue = queues.makeSerialQueue();
        const auto others = queues.makeSerialQueue();
        for (int index = 0; index < 1000; ++index) {
            // Not guarded: a data race if two ran at a time.
            queue->addOperation([&order, index] { order.push_back(index); });
            others->addOperation([] {});
        }
        // They run beside each other: the one waits for the other here.
        queue->addOperation([&] { latch.wait(); });
        others->addOperation([&] { latch.release(); });
    }
    ASSERT_EQ(order.size(), 1000U);
    for (int index = 0; index < 1000; ++index)
        EXPECT_EQ(order[static_cast<std::size_t>(index)], index);
}

TEST(SerialOperationQueues, RunToTheirEndWhenTheLastReferenceGoes) {
    std::atomic<int> count = 0;
    Latch begin;
    {
        platform::SerialOperationQueues queues;
        auto queue = queues.makeSerialQueue();
        queue->addOperation([&] { begin.wait(); });
        queue->addOperation([&count, &queues, held = queue]() mutable {
            ++count;
            // Work that adds work, to its own queue as well.
            held->addOperation([&count] { ++count; });
            queues.makeSerialQueue()->addOperation([&count] { ++count; });
            held = nullptr;
        });
        queue = nullptr;
        begin.release();
    }
    EXPECT_EQ(count, 3);
}

} // namespace

} // namespace quillmoth::test
