#include "Platform/Qt/QtPanelFocus.h"

#include <QGuiApplication>
#include <QWindow>

namespace quillmoth::platform {

namespace {

/// Menus of the panel belong to it.
bool isOf(const QWindow* window, PanelFocus::WindowIdentifier panel) {
    for (; window != nullptr; window = window->transientParent()) {
        if (window->handle() != nullptr && window->winId() == panel)
            return true;
    }
    return false;
}

} // namespace

QtPanelFocus::QtPanelFocus() {
    QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, &context_,
                     [this](const QWindow* focused) { follow(focused); });
}

QtPanelFocus::~QtPanelFocus() = default;

void QtPanelFocus::acquire(WindowIdentifier window) {
    window_ = window;
    if (!isPast_)
        follow(QGuiApplication::focusWindow());
    for (QWindow* each : QGuiApplication::allWindows()) {
        if (!isHeld_ && each->handle() != nullptr && each->winId() == window)
            each->requestActivate();
    }
}

void QtPanelFocus::release() {
    isPast_ = isHeld_;
    window_ = 0;
    isHeld_ = false;
}

void QtPanelFocus::follow(const QWindow* focused) {
    isPast_ = false;
    if (window_ == 0)
        return;
    const bool wasHeld = std::exchange(isHeld_, isOf(focused, window_));
    if (wasHeld && !isHeld_)
        turns_.emit(Turn::activatedElsewhere);
}

} // namespace quillmoth::platform
