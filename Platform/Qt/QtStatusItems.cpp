#include "Platform/Qt/QtStatusItems.h"

#include "Foundation/FatalError.h"
#include "Foundation/Log.h"
#include "Platform/Qt/StatusMenu.h"
#include "Platform/Qt/TintedSymbol.h"
#include "Platform/Qt/TrayWatcher.h"

#include <QCursor>
#include <QGuiApplication>
#include <QPalette>
#include <QSystemTrayIcon>
#include <QTimer>
#include <utility>

namespace quillmoth::platform {

class QtStatusItems::Item {
public:
    Item(QIcon icon, QString description, std::vector<MenuItem> menu)
        : icon_(std::move(icon)), description_(std::move(description)), menu_(std::move(menu)) {
        menu_.setTitle(description_);
        menu_.setAccessibleName(description_);
        if (watcher_.isTrayAvailable()) {
            appear();
            return;
        }
        logLine(
            "This desktop shows no tray. Press the hot key, run \"quillmoth --toggle\", or use the actions "
            "of Quillmoth in the launcher.");
        watcher_.waitForTray([this] { appear(); });
    }

private:
    void appear() {
        tray_ = std::make_unique<QSystemTrayIcon>(icon_);
        tray_->setToolTip(description_);
        tray_->setContextMenu(&menu_);
        QObject::connect(tray_.get(), &QSystemTrayIcon::activated, tray_.get(), [this](auto reason) {
            // Every other kind of click either opens the menu by itself or repeats this one.
            if (reason == QSystemTrayIcon::Trigger)
                menu_.popup(QCursor::pos());
        });
        tray_->show();
    }

    QIcon icon_;
    QString description_;
    StatusMenu menu_;
    TrayWatcher watcher_;
    std::unique_ptr<QSystemTrayIcon> tray_;
};

QtStatusItems::QtStatusItems(std::function<QColor()> colour) : colour_(std::move(colour)) {}

QtStatusItems::~QtStatusItems() = default;

void QtStatusItems::show(const std::string& symbol, const std::string& accessibilityDescription,
                         std::vector<MenuItem> menu) {
    // To draw the symbol and to ask the desktop takes a while, and a start has more to do.
    QTimer::singleShot(0, &context_,
                       [this, symbol, accessibilityDescription, menu = std::move(menu)]() mutable {
                           makeItem(symbol, accessibilityDescription, std::move(menu));
                       });
}

void QtStatusItems::makeItem(const std::string& symbol, const std::string& accessibilityDescription,
                             std::vector<MenuItem> menu) {
    const QColor colour = colour_ ? colour_() : QGuiApplication::palette().color(QPalette::WindowText);
    QIcon icon = tintedSymbol(symbol, colour);
    if (icon.isNull())
        fatalError("There is no symbol \"" + symbol + "\" for the tray.");
    item_ = std::make_unique<Item>(std::move(icon), QString::fromStdString(accessibilityDescription),
                                   std::move(menu));
}

} // namespace quillmoth::platform
