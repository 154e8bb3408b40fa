#pragma once

#include "Platform/StatusItem.h"

#include <QMenu>
#include <vector>

namespace quillmoth::platform {

/// The menu of the tray item. Each item shows its key with Ctrl, which works while the menu is open, and only
/// then.
class StatusMenu final : public QMenu {
public:
    explicit StatusMenu(std::vector<MenuItem> items);

protected:
    bool event(QEvent* event) override;
};

} // namespace quillmoth::platform
