#include "Platform/Linux/Tray/QtStatusItems.h"

#include "Foundation/FatalError.h"
#include "Foundation/Log.h"
#include "Platform/Linux/Tray/StatusMenu.h"
#include "Platform/Linux/Tray/TintedSymbol.h"
#include "Platform/Linux/Tray/TrayWatcher.h"

#include <QCursor>
#include <QGuiApplication>
#include <QPalette>
#include <QScreen>
#include <QSystemTrayIcon>
#include <QTimer>
#include <utility>

namespace quillmoth::platform {

class QtStatusItems::Item {
public:
    Item(std::function<QIcon()> icon, QString description, std::vector<MenuItem> menu,
         std::function<void(QMenu&)> style)
        : icon_(std::move(icon)), description_(std::move(description)), menu_(std::move(menu)),
          style_(std::move(style)) {
        menu_.setTitle(description_);
        menu_.setAccessibleName(description_);
        QObject::connect(&menu_, &QMenu::aboutToShow, &menu_, [this] { applyStyle(); });
        if (watcher_.isTrayAvailable()) {
            appear();
            return;
        }
        logLine(
            "This desktop shows no tray. Press the hot key, run \"quillmoth --toggle\", or use the actions "
            "of Quillmoth in the launcher.");
        watcher_.waitForTray([this] { appear(); });
    }

    void redrawSymbol() {
        if (tray_)
            tray_->setIcon(icon_());
    }

private:
    void appear() {
        tray_ = std::make_unique<QSystemTrayIcon>(icon_());
        tray_->setToolTip(description_);
        tray_->setContextMenu(&menu_);
        QObject::connect(tray_.get(), &QSystemTrayIcon::activated, tray_.get(), [this](auto reason) {
            // Every other kind of click either opens the menu by itself or repeats this one.
            if (reason == QSystemTrayIcon::Trigger)
                open();
        });
        tray_->show();
    }

    void applyStyle() {
        if (style_)
            style_(menu_);
    }

    /// Beside the item, on the side where there is more room.
    void open() {
        const QRect item = tray_->geometry();
        const QScreen* screen = QGuiApplication::screenAt(item.center());
        if (item.isEmpty() || screen == nullptr) {
            menu_.popup(QCursor::pos());
            return;
        }
        applyStyle();
        const bool isLow = item.center().y() > screen->geometry().center().y();
        const int top = isLow ? item.top() - menu_.sizeHint().height() - kGap : item.bottom() + 1 + kGap;
        menu_.popup(QPoint(item.left(), top));
    }

    static constexpr int kGap = 4;

    std::function<QIcon()> icon_;
    QString description_;
    StatusMenu menu_;
    std::function<void(QMenu&)> style_;
    TrayWatcher watcher_;
    std::unique_ptr<QSystemTrayIcon> tray_;
};

QtStatusItems::QtStatusItems() = default;

QtStatusItems::~QtStatusItems() = default;

void QtStatusItems::show(const std::string& symbol, const std::string& accessibilityDescription,
                         std::vector<MenuItem> menu) {
    // To draw the symbol and to ask the desktop takes a while, and a start has more to do.
    QTimer::singleShot(0, &context_,
                       [this, symbol, accessibilityDescription, menu = std::move(menu)]() mutable {
                           makeItem(symbol, accessibilityDescription, std::move(menu));
                       });
}

void QtStatusItems::redrawSymbol() {
    if (item_)
        item_->redrawSymbol();
}

void QtStatusItems::makeItem(const std::string& symbol, const std::string& accessibilityDescription,
                             std::vector<MenuItem> menu) {
    const auto icon = [this, symbol] {
        const QColor colour = colour_ ? colour_() : QGuiApplication::palette().color(QPalette::WindowText);
        QIcon drawn = tintedSymbol(symbol, colour);
        if (drawn.isNull())
            fatalError("There is no symbol \"" + symbol + "\" for the tray.");
        return drawn;
    };
    item_ = std::make_unique<Item>(icon, QString::fromStdString(accessibilityDescription), std::move(menu),
                                   menuStyle_);
}

} // namespace quillmoth::platform
