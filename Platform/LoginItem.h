#pragma once

#include "Foundation/Result.h"

#include <string>

namespace quillmoth::platform {

/// The programs that the desktop starts with the user's session, by identifier. Main thread.
class LoginItems {
public:
    virtual ~LoginItems() = default;

    /// False also where it cannot be found out.
    [[nodiscard]] virtual bool isEnabled(const std::string& identifier) const = 0;

    virtual Result<void> registerItem(const std::string& identifier) = 0;

    /// Succeeds where the item was not registered.
    virtual Result<void> unregisterItem(const std::string& identifier) = 0;
};

} // namespace quillmoth::platform
