#include "Quillmoth/Shell/Panel/PanelSurface.h"

#include "Quillmoth/Shell/Looks/Lengths.h"
#include "Quillmoth/Shell/Looks/OwnKeys.h"
#include "Quillmoth/Shell/Looks/Palette.h"
#include "Quillmoth/Shell/Panel/PanelGeometry.h"
#include "Quillmoth/Shell/Panel/PanelKeys.h"

#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <QWindow>

namespace quillmoth {

namespace {

Qt::CursorShape cursorFor(Qt::Edges edges) {
    if (edges == (Qt::LeftEdge | Qt::TopEdge) || edges == (Qt::RightEdge | Qt::BottomEdge))
        return Qt::SizeFDiagCursor;
    if (edges == (Qt::RightEdge | Qt::TopEdge) || edges == (Qt::LeftEdge | Qt::BottomEdge))
        return Qt::SizeBDiagCursor;
    return edges & (Qt::LeftEdge | Qt::RightEdge) ? Qt::SizeHorCursor : Qt::SizeVerCursor;
}

QList<ScaledScreen> scaledScreens() {
    QList<ScaledScreen> all;
    for (const QScreen* screen : QGuiApplication::screens())
        all.append({screen->geometry(), screen->devicePixelRatio()});
    return all;
}

} // namespace

PanelSurface::PanelSurface(std::unique_ptr<PanelContent> content, bool isOrdinaryWindow)
    : content_(content.release()), isOrdinaryWindow_(isOrdinaryWindow) {
    const Qt::WindowFlags flags =
        Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint | Qt::WindowStaysOnTopHint;
    setWindowFlags(isOrdinaryWindow ? Qt::Dialog | flags : Qt::Tool | Qt::BypassWindowManagerHint | flags);
    setAttribute(Qt::WA_ShowWithoutActivating, !isOrdinaryWindow);
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_QuitOnClose, false);
    fill();
    // So that the events of the window can be seen before it is shown.
    create();
    windowHandle()->installEventFilter(this);
    // The toolkit leaves the mask as large as the former screen's scale made it.
    QObject::connect(windowHandle(), &QWindow::screenChanged, this, [this] {
        clearMask();
        applyMask();
    });
}

PanelSurface::PanelSurface(std::unique_ptr<PanelContent> content, QWidget& stage)
    : QWidget(&stage), content_(content.release()), isOrdinaryWindow_(false) {
    fill();
    stage.windowHandle()->installEventFilter(this);
}

void PanelSurface::fill() {
    content_->setParent(this);
    content_->onLeastSizeChanged = [this] { applySize(); };
    chosen_.setSize(content_->naturalSize());
    resize(chosen_.size());
}

QSize PanelSurface::leastSize() const {
    return content_->leastSize();
}

QRect PanelSurface::place() const {
    return broughtBack(chosen_, leastSize(), screens ? screens() : QList<QRect>());
}

/// Stays where the user has dragged it, were it half off the screen, until it needs another size.
void PanelSurface::applySize() {
    const QRect wanted = place();
    if (!drag_ && wanted.size() != size())
        moveTo(wanted);
}

void PanelSurface::setFrame(const QRect& frame) {
    chosen_ = frame;
    moveTo(place());
}

/// While it is hidden, on its screen's scale at once, rather than when the server has told that it is there.
void PanelSurface::moveTo(const QRect& place) {
    if (QScreen* screen = isWindow() && !isVisible() ? QGuiApplication::screenAt(place.center()) : nullptr)
        setScreen(screen);
    setGeometry(place);
}

void PanelSurface::followScreens() {
    if (isVisible() && !drag_)
        moveTo(place());
}

void PanelSurface::setActive(bool active) {
    active_ = active;
    content_->setPanelActive(active);
    update();
}

void PanelSurface::setCompositing(bool compositing) {
    compositing_ = compositing;
    applyMask();
    update();
}

void PanelSurface::applyMask() {
    if (compositing_)
        clearMask();
    else
        setMask(panelMask(size(), panel::kCornerRadius));
}

void PanelSurface::resizeEvent(QResizeEvent*) {
    content_->setGeometry(rect());
    if (!compositing_)
        applyMask();
}

void PanelSurface::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    followScreens();
}

bool PanelSurface::event(QEvent* event) {
    // A press that closes a menu of another window gives the keyboard to this one, and does not reach it.
    if (event->type() == QEvent::WindowActivate && !active_)
        setActive(true);
    return QWidget::event(event);
}

void PanelSurface::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(rect(), compositing_ ? QColor(Qt::transparent) : kPanelTheme.base);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    if (!compositing_) {
        paintRim(painter);
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(active_ ? kPanelTheme.edge : kPanelTheme.edgeIdle);
    painter.drawRoundedRect(rect(), panel::kCornerRadius, panel::kCornerRadius);
    if (active_) {
        // The lighter top side ends where the corners are half round.
        const double mitre = panel::kCornerRadius * 0.3;
        painter.setClipRect(QRectF(mitre, 0, width() - 2 * mitre, mitre));
        painter.setBrush(kPanelTheme.edgeTop);
        painter.drawRoundedRect(rect(), panel::kCornerRadius, panel::kCornerRadius);
        painter.setClipping(false);
    }
    painter.setBrush(kPanelTheme.base);
    const double inner = panel::kCornerRadius - 1;
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), inner, inner);
}

/// The pixels along the steps of the mask, which so read as the border.
void PanelSurface::paintRim(QPainter& painter) const {
    const QColor& side = active_ ? kPanelTheme.edge : kPanelTheme.edgeIdle;
    const QColor& top = active_ ? kPanelTheme.edgeTop : kPanelTheme.edgeIdle;
    const QList<int> steps = cornerSteps(panel::kCornerRadius);
    const int radius = panel::kCornerRadius;
    painter.fillRect(0, radius, 1, height() - 2 * radius, side);
    painter.fillRect(width() - 1, radius, 1, height() - 2 * radius, side);
    painter.fillRect(steps[0], 0, width() - 2 * steps[0], 1, top);
    painter.fillRect(steps[0], height() - 1, width() - 2 * steps[0], 1, side);
    for (int row = 1; row < steps.size(); ++row) {
        const int length = std::max(1, steps[row - 1] - steps[row]);
        // Half way round the corner the top side ends.
        const QColor& upper = row * 2 < steps[row] * 3 ? top : side;
        for (const int y : {row, height() - 1 - row}) {
            const QColor& color = y == row ? upper : side;
            painter.fillRect(steps[row], y, length, 1, color);
            painter.fillRect(width() - steps[row] - length, y, length, 1, color);
        }
    }
}

bool PanelSurface::eventFilter(QObject* watched, QEvent* event) {
    if (watched != window()->windowHandle())
        return QWidget::eventFilter(watched, event);
    // What comes here while the desktop has the window comes behind its end.
    if (event->type() == QEvent::KeyPress || event->type() == QEvent::Enter ||
        event->type() == QEvent::FocusIn)
        isBeingMoved_ = false;
    const auto place = [this](const QMouseEvent& mouse) {
        return mapFrom(window(), mouse.position().toPoint());
    };
    if (event->type() == QEvent::MouseButtonPress) {
        const auto* press = static_cast<QMouseEvent*>(event);
        if (!rect().contains(place(*press)))
            return false;
        if (onPressed)
            onPressed();
        const Qt::Edges edges = edgesAt(place(*press), size());
        if (edges && press->button() == Qt::LeftButton) {
            beginDrag(*press, edges);
            return true;
        }
    } else if (event->type() == QEvent::MouseMove) {
        const auto* move = static_cast<QMouseEvent*>(event);
        if (drag_ && drag_->edges) {
            drag(move->globalPosition().toPoint());
            return true;
        }
        if (move->buttons() == Qt::NoButton)
            showEdgeCursor(rect().contains(place(*move)) ? edgesAt(place(*move), size()) : Qt::Edges());
    } else if (event->type() == QEvent::MouseButtonRelease && drag_ && drag_->edges) {
        endDrag();
        return true;
    } else if (event->type() == QEvent::Leave)
        showEdgeCursor({});
    else if (event->type() == QEvent::KeyPress)
        return handleKey(*static_cast<QKeyEvent*>(event));
    return false;
}

bool PanelSurface::handleKey(const QKeyEvent& event) {
    if (isOwnKey(event, OwnKey::contextMenu)) {
        openMenu();
        return true;
    }
    const auto latin = latinEquivalent(event);
    if (latin)
        QCoreApplication::sendEvent(window()->windowHandle(), latin.get());
    return latin != nullptr;
}

/// The toolkit does so for the menu key alone, which many keyboards lack.
void PanelSurface::openMenu() {
    QWidget* widget = focusWidget();
    if (!widget)
        return;
    const QPoint middle = widget->rect().center();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, middle, widget->mapToGlobal(middle));
    QCoreApplication::sendEvent(widget, &event);
}

void PanelSurface::showEdgeCursor(Qt::Edges edges) {
    if (edges == pointedEdges_)
        return;
    pointedEdges_ = edges;
    if (edges)
        window()->windowHandle()->setCursor(cursorFor(edges));
    else
        window()->windowHandle()->unsetCursor();
}

void PanelSurface::beginDrag(const QMouseEvent& press, Qt::Edges edges) {
    if (isOrdinaryWindow_) {
        isBeingMoved_ = edges ? windowHandle()->startSystemResize(edges) : windowHandle()->startSystemMove();
        return;
    }
    drag_ = Drag{.from = press.globalPosition().toPoint(),
                 .frame = geometry(),
                 .grip = press.position().toPoint(),
                 .edges = edges};
}

/// It may have come to a screen of another size.
void PanelSurface::endDrag() {
    drag_.reset();
    applySize();
}

void PanelSurface::drag(QPoint globalPosition) {
    const QPoint by = globalPosition - drag_->from;
    if (!drag_->edges) {
        // Where scales change on the way, the toolkit may have an outdated size for a moment.
        const QSize size = drag_->frame.size();
        chosen_.moveTopLeft(isWindow() ? heldAt(drag_->grip, globalPosition, size, scaledScreens())
                                       : drag_->frame.topLeft() + by);
        setGeometry({chosen_.topLeft(), size});
        return;
    }
    // On a small screen it may be smaller than its content would have it.
    chosen_ = resized(drag_->frame, drag_->edges, by, leastSize().boundedTo(drag_->frame.size()));
    setGeometry(chosen_);
}

void PanelSurface::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        beginDrag(*event, {});
}

void PanelSurface::mouseMoveEvent(QMouseEvent* event) {
    if (drag_ && (event->buttons() & Qt::LeftButton))
        drag(event->globalPosition().toPoint());
}

void PanelSurface::mouseReleaseEvent(QMouseEvent*) {
    endDrag();
}

} // namespace quillmoth
