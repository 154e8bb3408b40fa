#pragma once

#include "Platform/NotificationCenter.h"

namespace quillmoth::platform {

/// Notices between the parts of this process. Observers may come, go and post while one is being told.
class LocalNotificationCenter final : public NotificationCenter {
public:
    void post(const Notification& notification) override;
    Subscription addObserver(const std::string& name,
                             std::function<void(const Notification&)> observer) override;

private:
    std::map<std::string, Signal<const Notification&>> signals_;
};

} // namespace quillmoth::platform
