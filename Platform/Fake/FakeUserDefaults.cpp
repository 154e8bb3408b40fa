#include "Platform/Fake/FakeUserDefaults.h"

#include <utility>

namespace quillmoth::platform {

std::optional<DefaultsValue> FakeUserDefaults::object(std::string_view key) const {
    const auto found = values_.find(key);
    return found == values_.end() ? std::nullopt : std::optional(found->second);
}

void FakeUserDefaults::set(std::string_view key, DefaultsValue value) {
    values_.insert_or_assign(std::string(key), std::move(value));
    changed_.emit();
}

void FakeUserDefaults::remove(std::string_view key) {
    const auto found = values_.find(key);
    if (found == values_.end())
        return;
    values_.erase(found);
    changed_.emit();
}

std::string FakeUserDefaults::obstacle(std::string_view key) const {
    const auto found = obstacles.find(key);
    return found == obstacles.end() ? "" : found->second;
}

Subscription FakeUserDefaults::onChange(std::function<void()> subscriber) {
    return changed_.subscribe(std::move(subscriber));
}

} // namespace quillmoth::platform
