#include "Platform/Qt/QtApplication.h"

#include <QGuiApplication>
#include <QMetaObject>
#include <QWindow>

#include <utility>

namespace quillmoth::platform {

QtApplication::QtApplication() {
    QGuiApplication::setQuitOnLastWindowClosed(false);
}

void QtApplication::setSettingsHandler(std::function<void()> handler) {
    settingsHandler_ = std::move(handler);
}

void QtApplication::activateIgnoringOtherApps() {
    for (QWindow* window : QGuiApplication::topLevelWindows()) {
        const bool ordinary = window->type() == Qt::Window || window->type() == Qt::Dialog;
        if (!ordinary || !window->isVisible() || window->flags().testFlag(Qt::BypassWindowManagerHint))
            continue;
        window->raise();
        window->requestActivate();
    }
}

void QtApplication::showSettingsWindow() {
    if (settingsHandler_)
        settingsHandler_();
}

void QtApplication::terminate() {
    QMetaObject::invokeMethod(
        qGuiApp, [] { QCoreApplication::exit(0); }, Qt::QueuedConnection);
}

} // namespace quillmoth::platform
