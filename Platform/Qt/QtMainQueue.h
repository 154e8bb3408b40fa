#pragma once

#include "Platform/MainQueue.h"

#include <memory>

namespace quillmoth::platform {

/// The main queue on Qt's event loop. Made and destroyed on the main thread, while the application object
/// exists; the two functions may be called from any thread.
///
/// Posts from any number of threads share one wake-up of the loop. Each wake-up runs what was queued when it
/// began and then lets the loop see to input. A nested loop, such as that of a dialog, runs the rest in
/// order. Work that has not run when the application object goes, and work posted after that, is dropped.
class QtMainQueue final : public MainQueue {
public:
    QtMainQueue();
    ~QtMainQueue() override;
    QtMainQueue(const QtMainQueue&) = delete;
    QtMainQueue& operator=(const QtMainQueue&) = delete;

    void async(std::function<void()> work) override;
    void asyncAfter(Seconds delay, std::function<void()> work) override;

private:
    class Receiver;
    std::unique_ptr<Receiver> receiver_;
};

} // namespace quillmoth::platform
