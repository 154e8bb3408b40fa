#include "Platform/Linux/Wayland/ToolkitGlobals.h"

#include <QGuiApplication>
#include <QWindow>
#include <algorithm>
#include <cstring>
#include <qpa/qplatformnativeinterface.h>
#include <wayland-client.h>

namespace quillmoth::platform {

namespace {

struct WantedGlobal {
    const wl_interface* interface;
    std::uint32_t version;
    void* found = nullptr;
};

} // namespace

wl_display* toolkitsDisplay() {
    auto* native = QGuiApplication::platformNativeInterface();
    const bool isOnWayland = QGuiApplication::platformName().startsWith(QStringLiteral("wayland"));
    return native != nullptr && isOnWayland ? static_cast<wl_display*>(native->nativeResourceForIntegration(
                                                  QByteArrayLiteral("wl_display")))
                                            : nullptr;
}

wl_surface* toolkitsSurface(QWindow* window) {
    return static_cast<wl_surface*>(QGuiApplication::platformNativeInterface()->nativeResourceForWindow(
        QByteArrayLiteral("surface"), window));
}

void* boundOnToolkitsDisplay(const wl_interface& interface, std::uint32_t version, wl_event_queue* queue) {
    static constexpr wl_registry_listener kListener = {
        .global =
            [](void* data, wl_registry* registry, std::uint32_t name, const char* offered,
               std::uint32_t offeredVersion) {
                auto& wanted = *static_cast<WantedGlobal*>(data);
                if (wanted.found == nullptr && std::strcmp(offered, wanted.interface->name) == 0)
                    wanted.found = wl_registry_bind(registry, name, wanted.interface,
                                                    std::min(offeredVersion, wanted.version));
            },
        .global_remove = [](void*, wl_registry*, std::uint32_t) {},
    };
    wl_display* display = toolkitsDisplay();
    auto* wrapper = static_cast<wl_display*>(wl_proxy_create_wrapper(display));
    wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(wrapper), queue);
    wl_registry* registry = wl_display_get_registry(wrapper);
    wl_proxy_wrapper_destroy(wrapper);
    WantedGlobal wanted{.interface = &interface, .version = version};
    wl_registry_add_listener(registry, &kListener, &wanted);
    wl_display_roundtrip_queue(display, queue);
    wl_registry_destroy(registry);
    return wanted.found;
}

} // namespace quillmoth::platform
