#pragma once

#include "Platform/LoginItem.h"

#include <set>
#include <string>

namespace quillmoth::platform {

/// Login items in memory.
class FakeLoginItems final : public LoginItems {
public:
    [[nodiscard]] bool isEnabled(const std::string& identifier) const override {
        return enabled.contains(identifier);
    }

    Result<void> registerItem(const std::string& identifier) override {
        if (!failure.empty())
            return Error{failure};
        enabled.insert(identifier);
        return {};
    }

    Result<void> unregisterItem(const std::string& identifier) override {
        enabled.erase(identifier);
        return {};
    }

    std::set<std::string> enabled;
    /// What registering fails with.
    std::string failure;
};

} // namespace quillmoth::platform
