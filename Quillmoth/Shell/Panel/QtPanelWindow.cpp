#include "Quillmoth/Shell/Panel/QtPanelWindow.h"

#include "Quillmoth/Shell/Panel/PanelGeometry.h"

#include <QApplication>
#include <QCursor>
#include <QScreen>
#include <QWindow>

namespace quillmoth {

namespace {

std::string frameKey(std::string_view name) {
    return "panelFrame " + std::string(name);
}

/// Under which earlier versions kept it.
std::string formerFrameKey(std::string_view name) {
    return "NSWindow Frame " + std::string(name);
}

QList<QRect> availableScreens() {
    QList<QRect> screens;
    for (const QScreen* screen : QGuiApplication::screens())
        screens.append(screen->availableGeometry());
    return screens;
}

std::unique_ptr<PanelSurface> madeSurface(const QtPanelServices& services,
                                          std::unique_ptr<PanelContent> content) {
    return services.stage != nullptr
               ? std::make_unique<PanelSurface>(std::move(content), *services.stage)
               : std::make_unique<PanelSurface>(std::move(content), services.isOrdinaryWindow);
}

/// Newer releases of the toolkit advise against this. What they advise instead asks the X server for the
/// input focus, which has to stay with the program in front.
void tellActive(QWidget& window) {
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    QApplication::setActiveWindow(&window);
    QT_WARNING_POP
}

} // namespace

QtPanelWindows::QtPanelWindows(QtPanelServices services, ContentFactory makeContent)
    : services_(std::move(services)), makeContent_(std::move(makeContent)) {}

std::unique_ptr<platform::PanelWindow> QtPanelWindows::makePanel() {
    auto window = std::make_unique<QtPanelWindow>(services_, makeContent_());
    lastSurface_ = &window->surface();
    return window;
}

QtPanelWindow::QtPanelWindow(QtPanelServices services, std::unique_ptr<PanelContent> content)
    : services_(std::move(services)), surface_(madeSurface(services_, std::move(content))) {
    surface_->onPressed = [this] { pressed(); };
    surface_->screens = services_.screens ? services_.screens : availableScreens;
    if (services_.stage != nullptr)
        surface_->screens = [stage = services_.stage] { return QList<QRect>{stage->rect()}; };
    followScreens();
    if (services_.onCompositingChange)
        compositing_ = services_.onCompositingChange([this] { followCompositing(); });
    turned_ =
        services_.focus.onTurnedElsewhere([this](platform::PanelFocus::Turn turn) { turnedElsewhere(turn); });
}

QtPanelWindow::~QtPanelWindow() {
    close();
}

void QtPanelWindow::setTitle(const std::string& title) {
    surface_->window()->setWindowTitle(QString::fromStdString(title));
    if (services_.stage != nullptr)
        surface_->setAccessibleName(QString::fromStdString(title));
}

void QtPanelWindow::center() {
    // By this a stage has the size of its output.
    if (services_.stage != nullptr)
        services_.focus.prepare();
    surface_->setFrame(centered(surface_->frame().size(), pointer(), surface_->screens()));
}

QPoint QtPanelWindow::pointer() const {
    if (services_.stage != nullptr)
        return {};
    const auto told = services_.placement != nullptr ? services_.placement->pointer() : std::nullopt;
    return told ? QPoint(told->x, told->y) : QCursor::pos();
}

void QtPanelWindow::place() {
    if (services_.placement == nullptr)
        return;
    const QRect at = surface_->place();
    const auto present = surface_->isVisible() ? services_.placement->area() : std::nullopt;
    services_.placement->place(
        present.value_or(platform::DesktopArea{at.x(), at.y(), at.width(), at.height()}));
}

bool QtPanelWindow::setFrameUsingName(std::string_view name) {
    auto saved = services_.defaults.string(frameKey(name));
    if (!saved)
        saved = services_.defaults.string(formerFrameKey(name));
    const auto frame = saved ? readFrame(*saved) : std::nullopt;
    if (!frame)
        return false;
    surface_->setFrame(*frame);
    return true;
}

void QtPanelWindow::saveFrameUsingName(std::string_view name) {
    // The desktop has moved it, where it did not itself.
    if (const auto area = services_.placement != nullptr ? services_.placement->area() : std::nullopt)
        surface_->noteFrame({area->x, area->y, area->width, area->height});
    services_.defaults.set(frameKey(name), writeFrame(surface_->frame()));
    // Only where there is one: each change of the settings writes their file.
    if (services_.defaults.object(formerFrameKey(name)))
        services_.defaults.remove(formerFrameKey(name));
}

void QtPanelWindow::orderFront() {
    followCompositing();
    if (!surface_->isVisible())
        services_.focus.prepare();
    place();
    surface_->show();
    surface_->raise();
    if (services_.shown)
        services_.shown();
}

void QtPanelWindow::followCompositing() {
    surface_->setCompositing(!services_.isCompositing || services_.isCompositing());
}

void QtPanelWindow::followScreens() {
    // Queued: the toolkit tells of a screen before it has moved the windows of that.
    const auto follow = [surface = surface_.get()] { surface->followScreens(); };
    const auto watch = [surface = surface_.get(), follow](const QScreen* screen) {
        QObject::connect(screen, &QScreen::availableGeometryChanged, surface, follow, Qt::QueuedConnection);
    };
    for (const QScreen* screen : QGuiApplication::screens())
        watch(screen);
    QObject::connect(qGuiApp, &QGuiApplication::screenAdded, surface_.get(), watch);
    for (const auto change : {&QGuiApplication::screenAdded, &QGuiApplication::screenRemoved})
        QObject::connect(qGuiApp, change, surface_.get(), follow, Qt::QueuedConnection);
}

void QtPanelWindow::makeKeyWindow() {
    if (!surface_->isVisible())
        return;
    if (!services_.focus.isImmediate() && !services_.focus.isHeld())
        place();
    services_.focus.acquire(surface_->window()->winId());
    surface_->setActive(services_.focus.isImmediate() || services_.focus.isHeld());
    // The toolkit learns a moment after a closing that the window has lost the keyboard. Where it comes back
    // before that, the toolkit sees no change; but hiding has taken the focus from the widgets.
    if (QGuiApplication::focusWindow() == surface_->window()->windowHandle())
        tellActive(*surface_->window());
}

void QtPanelWindow::close() {
    if (!surface_->isVisible())
        return;
    services_.focus.release();
    surface_->hide();
    // What is done next counts on the former window to be in front again.
    if (services_.isOrdinaryWindow)
        QGuiApplication::sync();
    if (services_.closed)
        services_.closed();
}

void QtPanelWindow::setResignMainHandler(std::function<void()> handler) {
    resignMain_ = std::move(handler);
}

void QtPanelWindow::turnedElsewhere(platform::PanelFocus::Turn turn) {
    if (!surface_->isVisible() || surface_->isBeingMoved())
        return;
    surface_->setActive(false);
    if (turn != platform::PanelFocus::Turn::idle && resignMain_)
        resignMain_();
}

void QtPanelWindow::pressed() {
    if (!surface_->isActive())
        makeKeyWindow();
}

} // namespace quillmoth
