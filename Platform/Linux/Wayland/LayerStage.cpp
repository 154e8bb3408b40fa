#include "Platform/Linux/Wayland/LayerStage.h"

#include "Platform/Linux/Wayland/LayerShellProtocol.h"
#include "Platform/Linux/Wayland/ToolkitGlobals.h"

#include <QGuiApplication>
#include <QTimer>
#include <QWindow>
#include <chrono>
#include <qpa/qplatformnativeinterface.h>
#include <wayland-client.h>

namespace quillmoth::platform {

namespace {

constexpr std::uint32_t kLayerShellVersion = 3;
/// For a compositor that does not tell of the end of the keyboard.
constexpr std::chrono::milliseconds kLeaveLimit{250};
constexpr std::uint32_t kAllEdges = ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP | ZWLR_LAYER_SURFACE_V1_ANCHOR_BOTTOM |
                                    ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT | ZWLR_LAYER_SURFACE_V1_ANCHOR_RIGHT;

} // namespace

std::unique_ptr<LayerStage> LayerStage::create(std::function<std::string()> focusedOutput) {
    wl_display* display = toolkitsDisplay();
    if (display == nullptr)
        return nullptr;
    wl_event_queue* queue = wl_display_create_queue(display);
    // The toolkit does not read what comes to the queue.
    auto* shell = static_cast<zwlr_layer_shell_v1*>(
        boundOnToolkitsDisplay(zwlr_layer_shell_v1_interface, kLayerShellVersion, queue));
    if (shell != nullptr)
        return std::unique_ptr<LayerStage>(new LayerStage(shell, queue, std::move(focusedOutput)));
    wl_event_queue_destroy(queue);
    return nullptr;
}

LayerStage::LayerStage(zwlr_layer_shell_v1* shell, wl_event_queue* queue,
                       std::function<std::string()> focusedOutput)
    : shell_(shell), queue_(queue), focusedOutput_(std::move(focusedOutput)) {
    // By this the toolkit leaves the role of such a window to us.
    qputenv("QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT", "1");
    setWindowFlags(Qt::FramelessWindowHint | Qt::BypassWindowManagerHint);
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_QuitOnClose, false);
    QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, this,
                     [this](const QWindow* focused) { follow(focused); });
    QWidget::create();
}

LayerStage::~LayerStage() {
    takeOffLayer();
    zwlr_layer_shell_v1_destroy(shell_);
    wl_event_queue_destroy(queue_);
}

QScreen* LayerStage::wantedScreen() const {
    const QString name = QString::fromStdString(focusedOutput_());
    for (QScreen* screen : QGuiApplication::screens()) {
        if (screen->name() == name)
            return screen;
    }
    return QGuiApplication::primaryScreen();
}

wl_surface* LayerStage::surface() const {
    return toolkitsSurface(windowHandle());
}

void LayerStage::prepare() {
    QScreen* screen = layer_ == nullptr ? wantedScreen() : nullptr;
    if (screen == nullptr)
        return;
    windowHandle()->setScreen(screen);
    setGeometry(screen->geometry());
    // The toolkit makes the surface, and paints in a later turn: the role comes in between.
    show();
    if (surface() != nullptr)
        putOnLayer(*screen);
}

void LayerStage::putOnLayer(QScreen& screen) {
    static constexpr zwlr_layer_surface_v1_listener kListener = {
        .configure =
            [](void* data, zwlr_layer_surface_v1*, std::uint32_t serial, std::uint32_t width,
               std::uint32_t height) {
                static_cast<LayerStage*>(data)->configured(
                    serial, {static_cast<int>(width), static_cast<int>(height)});
            },
        .closed = [](void* data, zwlr_layer_surface_v1*) { static_cast<LayerStage*>(data)->outputHasGone(); },
    };
    auto* output =
        static_cast<wl_output*>(QGuiApplication::platformNativeInterface()->nativeResourceForScreen(
            QByteArrayLiteral("output"), &screen));
    layer_ = zwlr_layer_shell_v1_get_layer_surface(shell_, surface(), output,
                                                   ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY, "quillmoth");
    zwlr_layer_surface_v1_add_listener(layer_, &kListener, this);
    zwlr_layer_surface_v1_set_anchor(layer_, kAllEdges);
    // Over bars too.
    zwlr_layer_surface_v1_set_exclusive_zone(layer_, -1);
    takeKeys(true);
    wl_display_roundtrip_queue(toolkitsDisplay(), queue_);
    // What the compositor tells later is read with the toolkit's events.
    if (layer_ != nullptr)
        wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(layer_), nullptr);
}

void LayerStage::configured(std::uint32_t serial, QSize size) {
    zwlr_layer_surface_v1_ack_configure(layer_, serial);
    if (!size.isEmpty())
        resize(size);
}

void LayerStage::takeKeys(bool takes) {
    if (layer_ == nullptr)
        return;
    zwlr_layer_surface_v1_set_keyboard_interactivity(layer_, takes ? 1 : 0);
    // Where the pointer is taken; all of it for an empty one.
    windowHandle()->setMask(takes ? QRegion() : QRegion(childrenRect()));
    wl_surface_commit(surface());
    wl_display_flush(toolkitsDisplay());
}

void LayerStage::acquire(WindowIdentifier) {
    if (layer_ == nullptr || hasKeyboard_)
        return;
    isAsked_ = true;
    takeKeys(true);
    if (isLeaveDue_)
        QTimer::singleShot(kLeaveLimit, this, [this] { followWithoutLeave(); });
    else
        follow(QGuiApplication::focusWindow());
}

void LayerStage::followWithoutLeave() {
    if (std::exchange(isLeaveDue_, false))
        follow(QGuiApplication::focusWindow());
}

void LayerStage::release() {
    isAsked_ = false;
    hasKeyboard_ = false;
    goOffScreen();
    wl_display_flush(toolkitsDisplay());
}

void LayerStage::goOffScreen() {
    takeOffLayer();
    hide();
    isLeaveDue_ = QGuiApplication::focusWindow() == windowHandle();
}

void LayerStage::takeOffLayer() {
    // Before the surface goes, whose role it is.
    if (layer_ != nullptr)
        zwlr_layer_surface_v1_destroy(std::exchange(layer_, nullptr));
}

void LayerStage::follow(const QWindow* focused) {
    // Told late, it would end a use of the keyboard that has begun meanwhile.
    if (focused != windowHandle() && std::exchange(isLeaveDue_, false))
        return;
    if (!isAsked_)
        return;
    const bool had = std::exchange(hasKeyboard_, focused == windowHandle());
    if (had && !hasKeyboard_)
        turn(Turn::activatedElsewhere);
}

void LayerStage::frontChanged() {
    if (isAsked_)
        turn(Turn::activatedElsewhere);
}

void LayerStage::mousePressEvent(QMouseEvent*) {
    if (isAsked_)
        turn(Turn::pressedElsewhere);
}

void LayerStage::turn(Turn kind) {
    isAsked_ = false;
    hasKeyboard_ = false;
    takeKeys(false);
    turns_.emit(kind);
    if (kind == Turn::pressedElsewhere && layer_ != nullptr && yielded_)
        yielded_();
}

void LayerStage::outputHasGone() {
    const bool wasUsed = std::exchange(isAsked_, false);
    hasKeyboard_ = false;
    takeOffLayer();
    if (!isVisible())
        return;
    // The panel comes up where there is an output, with the keyboard if it had that.
    goOffScreen();
    prepare();
    if (wasUsed)
        acquire(winId());
    else
        takeKeys(false);
}

} // namespace quillmoth::platform
