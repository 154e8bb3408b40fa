#pragma once

#include "Platform/MainQueue.h"

#include <functional>
#include <memory>

namespace quillmoth {

/// Where the desktop runs a command for a hot key, it runs it again and again while the key is held. This
/// lets the first of such requests through, and a press that follows another one. Main thread.
class HeldToggle {
public:
    using Seconds = platform::MainQueue::Seconds;

    /// How a held key repeats.
    struct Repeat {
        Seconds delay{0.5};
        Seconds interval{0.03};
    };

    /// `now` tells seconds of any clock. `mainQueue` outlives the object.
    HeldToggle(platform::MainQueue& mainQueue, std::function<double()> now, std::function<void()> toggle);

    /// A request has come. One that may be the first repeat is carried out only once no second one has
    /// followed, a little later.
    void request(const Repeat& repeat);

private:
    platform::MainQueue& mainQueue_;
    std::function<double()> now_;
    std::function<void()> toggle_;
    double last_ = -1e9;
    /// Counts the requests: what waits is dropped where another one has come.
    std::shared_ptr<int> count_ = std::make_shared<int>(0);
};

} // namespace quillmoth
