#pragma once

#include "Platform/StatusItem.h"

#include <QColor>
#include <QObject>
#include <functional>
#include <memory>
#include <utility>

class QMenu;

namespace quillmoth::platform {

/// The program's item in the desktop's tray. Main thread, with a QApplication. Where there is no tray, that
/// and other ways to the program are logged, and the tray is taken when one appears. An item is made in the
/// next turn of the event loop.
class QtStatusItems final : public StatusItems {
public:
    QtStatusItems();
    ~QtStatusItems() override;

    /// Asked each time that the symbol is drawn. Without it the symbol has the colour of the palette's text.
    void setSymbolColour(std::function<QColor()> colour) { colour_ = std::move(colour); }

    /// Draws the symbol anew, after a change of its colour.
    void redrawSymbol();

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
