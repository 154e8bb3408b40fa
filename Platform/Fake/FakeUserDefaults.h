#pragma once

#include "Platform/UserDefaults.h"

#include <map>
#include <string>

namespace quillmoth::platform {

/// Settings in memory. A change by another process is a set or remove by the test.
class FakeUserDefaults final : public UserDefaults {
public:
    [[nodiscard]] std::optional<DefaultsValue> object(std::string_view key) const override;
    void set(std::string_view key, DefaultsValue value) override;
    void remove(std::string_view key) override;
    Subscription onChange(std::function<void()> subscriber) override;

    [[nodiscard]] const std::map<std::string, DefaultsValue, std::less<>>& values() const { return values_; }

private:
    std::map<std::string, DefaultsValue, std::less<>> values_;
    Signal<> changed_;
};

} // namespace quillmoth::platform
