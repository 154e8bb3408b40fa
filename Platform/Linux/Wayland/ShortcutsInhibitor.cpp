#include "Platform/Linux/Wayland/ShortcutsInhibitor.h"

#include "Platform/Linux/Wayland/ToolkitGlobals.h"

#include <QGuiApplication>
#include <QWindow>
#include <keyboard-shortcuts-inhibit-unstable-v1.h>
#include <qpa/qplatformnativeinterface.h>
#include <utility>
#include <wayland-client.h>

namespace quillmoth::platform {

namespace {

QWindow* windowWithIdentifier(PanelFocus::WindowIdentifier identifier) {
    for (QWindow* window : QGuiApplication::topLevelWindows()) {
        if (window->handle() != nullptr && window->winId() == identifier)
            return window;
    }
    return nullptr;
}

wl_seat* toolkitsSeat() {
    return static_cast<wl_seat*>(QGuiApplication::platformNativeInterface()->nativeResourceForIntegration(
        QByteArrayLiteral("wl_seat")));
}

} // namespace

struct ShortcutsInhibitor::Held {
    zwp_keyboard_shortcuts_inhibitor_v1* inhibitor = nullptr;

    void drop() {
        if (inhibitor == nullptr)
            return;
        zwp_keyboard_shortcuts_inhibitor_v1_destroy(std::exchange(inhibitor, nullptr));
        wl_display_flush(toolkitsDisplay());
    }
};

std::unique_ptr<ShortcutsInhibitor> ShortcutsInhibitor::create() {
    wl_display* display = toolkitsDisplay();
    if (display == nullptr)
        return nullptr;
    wl_event_queue* queue = wl_display_create_queue(display);
    auto* manager = static_cast<zwp_keyboard_shortcuts_inhibit_manager_v1*>(
        boundOnToolkitsDisplay(zwp_keyboard_shortcuts_inhibit_manager_v1_interface, 1, queue));
    // What comes of it from now on is read with the toolkit's events.
    if (manager != nullptr)
        wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(manager), nullptr);
    wl_event_queue_destroy(queue);
    return manager != nullptr ? std::unique_ptr<ShortcutsInhibitor>(new ShortcutsInhibitor(manager))
                              : nullptr;
}

ShortcutsInhibitor::ShortcutsInhibitor(zwp_keyboard_shortcuts_inhibit_manager_v1* manager)
    : manager_(manager), held_(std::make_shared<Held>()) {}

ShortcutsInhibitor::~ShortcutsInhibitor() {
    held_->drop();
    zwp_keyboard_shortcuts_inhibit_manager_v1_destroy(manager_);
}

Subscription ShortcutsInhibitor::inhibit(PanelFocus::WindowIdentifier window) {
    static constexpr zwp_keyboard_shortcuts_inhibitor_v1_listener kListener = {
        .active = [](void*, zwp_keyboard_shortcuts_inhibitor_v1*) {},
        .inactive = [](void*, zwp_keyboard_shortcuts_inhibitor_v1*) {},
    };
    QWindow* found = windowWithIdentifier(window);
    wl_surface* surface = found != nullptr ? toolkitsSurface(found) : nullptr;
    wl_seat* seat = toolkitsSeat();
    if (surface == nullptr || seat == nullptr || held_->inhibitor != nullptr)
        return {};
    held_->inhibitor = zwp_keyboard_shortcuts_inhibit_manager_v1_inhibit_shortcuts(manager_, surface, seat);
    zwp_keyboard_shortcuts_inhibitor_v1_add_listener(held_->inhibitor, &kListener, nullptr);
    wl_display_flush(toolkitsDisplay());
    return Subscription([weak = std::weak_ptr(held_)] {
        if (const auto held = weak.lock())
            held->drop();
    });
}

} // namespace quillmoth::platform
