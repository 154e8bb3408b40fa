#pragma once

#include <functional>
#include <string>
#include <vector>

namespace quillmoth::platform {

struct MenuItem {
    /// Empty for a separator.
    std::string title;
    std::string keyEquivalent;
    std::function<void()> action;
};

/// The program's item in the desktop's tray. Main thread.
class StatusItems {
public:
    virtual ~StatusItems() = default;

    /// Shows the item with the named symbol; a click opens the menu. Where the desktop has no tray the menu
    /// is kept for the launcher.
    virtual void show(const std::string& symbol, const std::string& accessibilityDescription,
                      std::vector<MenuItem> menu) = 0;
};

} // namespace quillmoth::platform
