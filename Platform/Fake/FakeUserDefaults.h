#pragma once

#include "Platform/UserDefaults.h"

#include <map>
#include <string>
#include <vector>

namespace quillmoth::platform {

/// Settings in memory. A change by another process is a set or remove by the test.
class FakeUserDefaults final : public UserDefaults {
public:
    [[nodiscard]] std::optional<DefaultsValue> object(std::string_view key) const override;
    void set(std::string_view key, DefaultsValue value) override;
    void remove(std::string_view key) override;
    Subscription onChange(std::function<void()> subscriber) override;

    [[nodiscard]] std::string obstacle(std::string_view key) const override;

    void makeReadable(std::string_view key) override { wanted.emplace_back(key); }

    /// What stands in the way of reading a key.
    std::map<std::string, std::string, std::less<>> obstacles;
    /// The keys that were to be made readable.
    std::vector<std::string> wanted;

    [[nodiscard]] const std::map<std::string, DefaultsValue, std::less<>>& values() const { return values_; }

private:
    std::map<std::string, DefaultsValue, std::less<>> values_;
    Signal<> changed_;
};

} // namespace quillmoth::platform
