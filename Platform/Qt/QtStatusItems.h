#pragma once

#include "Platform/StatusItem.h"

#include <QObject>
#include <functional>
#include <memory>
#include <utility>

class QColor;
class QMenu;

namespace quillmoth::platform {

/// The program's item in the desktop's tray. Main thread, with a QApplication. Where there is no tray, that
/// and other ways to the program are logged, and the tray is taken when one appears. An item is made in the
/// next turn of the event loop.
class QtStatusItems final : public StatusItems {
public:
    /// `colour` gives the colour of the symbol, asked each time that the item appears.
    explicit QtStatusItems(std::function<QColor()> colour = {});
    ~QtStatusItems() override;

    /// Called before each opening of the menu where this program draws it itself.
    void setMenuStyle(std::function<void(QMenu&)> style) { menuStyle_ = std::move(style); }

    void show(const std::string& symbol, const std::string& accessibilityDescription,
              std::vector<MenuItem> menu) override;

private:
    class Item;

    void makeItem(const std::string& symbol, const std::string& accessibilityDescription,
                  std::vector<MenuItem> menu);

    std::function<QColor()> colour_;
    std::function<void(QMenu&)> menuStyle_;
    std::unique_ptr<Item> item_;
    QObject context_;
};

} // namespace quillmoth::platform
