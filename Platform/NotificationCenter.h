#pragma once

#include "Foundation/Subscription.h"

#include <any>
#include <functional>
#include <map>
#include <string>

namespace quillmoth::platform {

struct Notification {
    std::string name;
    std::map<std::string, std::any> userInfo;
};

/// Notices within the process. Main thread; observers are called before post returns.
class NotificationCenter {
public:
    virtual ~NotificationCenter() = default;

    virtual void post(const Notification& notification) = 0;

    virtual Subscription addObserver(const std::string& name,
                                     std::function<void(const Notification&)> observer) = 0;
};

} // namespace quillmoth::platform
