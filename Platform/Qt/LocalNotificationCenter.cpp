#include "Platform/Qt/LocalNotificationCenter.h"

#include <utility>

namespace quillmoth::platform {

void LocalNotificationCenter::post(const Notification& notification) {
    const auto found = signals_.find(notification.name);
    if (found != signals_.end())
        found->second.emit(notification);
}

Subscription LocalNotificationCenter::addObserver(const std::string& name,
                                                  std::function<void(const Notification&)> observer) {
    return signals_[name].subscribe(std::move(observer));
}

} // namespace quillmoth::platform
