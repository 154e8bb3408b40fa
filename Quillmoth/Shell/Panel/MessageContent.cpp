#include "Quillmoth/Shell/Panel/MessageContent.h"

#include "MarkdownUI/Qt/AccessibleMarkdown.h"
#include "Quillmoth/Shell/Looks/Palette.h"
#include "Quillmoth/Shell/Panel/PanelMenu.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <QWheelEvent>
#include <QtMath>

#include <algorithm>
#include <memory>
#include <utility>

namespace quillmoth {

namespace {

/// So much is seen above and below what the Tab key leads to.
constexpr int kFocusMargin = 20;

/// The lines of a longer text are not all known before they are seen.
constexpr std::size_t kLongestShrunk = 20'000;

} // namespace

MessageContent::MessageContent(const MessageServices& services, QWidget* parent)
    : QWidget(parent), openLink_(services.openLink), tell_(services.tell), item_(*services.markdown, *this) {
    setMouseTracking(true);
    setFocusPolicy(Qt::NoFocus);
}

MessageContent::~MessageContent() {
    tellNoLink();
}

bool MessageContent::setText(const std::string& text) {
    if (text == item_.text())
        return false;
    fittedWidth_ = -1;
    if (text.starts_with(item_.text())) {
        item_.append(std::string_view(text).substr(item_.text().size()));
    } else {
        item_.setText(text);
        tellNoLink();
    }
    return true;
}

void MessageContent::append(std::string_view more) {
    fittedWidth_ = -1;
    item_.append(more);
}

void MessageContent::setForm(markdown::TextForm form) {
    fittedWidth_ = -1;
    item_.setForm(form);
    setFocusPolicy(form == markdown::TextForm::markdown ? Qt::TabFocus : Qt::NoFocus);
}

void MessageContent::setFontSize(double pixelSize) {
    fittedWidth_ = -1;
    item_.setFontSize(pixelSize);
}

int MessageContent::heightForWidth(int width) const {
    if (width != fittedWidth_)
        fit(width);
    toldHeight_ = qCeil(item_.height());
    return toldHeight_;
}

void MessageContent::fit(int width) const {
    fittedWidth_ = takenWidth_ = width;
    item_.setWidth(width);
    if (!isShrinking_ || item_.text().size() > kLongestShrunk)
        return;
    takenWidth_ = std::min(width, qCeil(item_.usedWidth()) + 1);
    item_.setWidth(takenWidth_);
}

int MessageContent::prepareToShow(int top, int bottom) {
    return qRound(layOut(top, bottom));
}

/// What is not laid out has an estimated height, and so has an image that has come.
double MessageContent::layOut(double top, double bottom) {
    const double moved = item_.ensureLaidOut(top, bottom);
    if (qCeil(item_.height()) != toldHeight_)
        itemResized();
    return moved;
}

void MessageContent::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    item_.retryImages();
}

void MessageContent::hideEvent(QHideEvent* event) {
    tellNoLink();
    QWidget::hideEvent(event);
}

void MessageContent::tellNoLink() {
    if (tell_ && !toldLink_.isEmpty())
        tell_(toldLink_ = QString(), false);
}

QString MessageContent::focusedLink() const {
    return hasFocus() ? item_.focusedTarget() : QString();
}

void MessageContent::tellLink(const QString& pointed) {
    const QString link = pointed.isEmpty() ? focusedLink() : pointed;
    if (tell_ && link != toldLink_)
        tell_(toldLink_ = link, false);
}

void MessageContent::paintEvent(QPaintEvent* event) {
    const QRectF exposed = event->rect();
    item_.setWidth(width());
    layOut(exposed.top(), exposed.bottom());
    QPainter painter(this);
    item_.paint(painter, exposed, {0, 0});
    if (!hasFocus() || item_.focusedPart())
        return;
    painter.setPen(kPanelTheme.accent);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void MessageContent::press(QMouseEvent* event) {
    const int clicks = clicks_.countPress(*event);
    if (event->button() != Qt::LeftButton || !item_.isInteractiveAt(event->position())) {
        // The panel is dragged by what is no text and no control.
        event->ignore();
        return;
    }
    if (onSelectionBegun)
        onSelectionBegun();
    item_.mousePress(event->position(), clicks, event->modifiers());
}

void MessageContent::mousePressEvent(QMouseEvent* event) {
    press(event);
}

void MessageContent::mouseDoubleClickEvent(QMouseEvent* event) {
    press(event);
}

void MessageContent::mouseMoveEvent(QMouseEvent* event) {
    const bool isPressed = event->buttons() & Qt::LeftButton;
    item_.mouseMove(event->position(), isPressed);
    setCursor(item_.cursorAt(event->position()));
    tellLink(item_.targetAt(event->position()));
    if (isPressed && onReveal)
        onReveal(qFloor(event->position().y()) - 1, qCeil(event->position().y()) + 1);
}

void MessageContent::mouseReleaseEvent(QMouseEvent* event) {
    item_.mouseRelease(event->position());
}

void MessageContent::leaveEvent(QEvent*) {
    item_.leave();
    tellLink();
}

void MessageContent::wheelEvent(QWheelEvent* event) {
    if (!item_.wheel(*event, event->position()))
        event->ignore();
}

void MessageContent::keyPressEvent(QKeyEvent* event) {
    const QString before = focusedLink();
    if (!item_.keyPress(*event))
        event->ignore();
    // What a key has just told of the same link stays.
    if (focusedLink() != before)
        tellLink();
}

bool MessageContent::focusNextPrevChild(bool isNext) {
    return focusNextControl(isNext) || QWidget::focusNextPrevChild(isNext);
}

bool MessageContent::focusNextControl(bool isNext) {
    if (!item_.focusNextControl(isNext))
        return false;
    const QRectF frame = item_.focusedFrame().value_or(QRectF());
    if (onReveal)
        onReveal(qFloor(frame.top()) - kFocusMargin, qCeil(frame.bottom()) + kFocusMargin);
    markdown::announceFocusedPart(*this, item_);
    tellLink();
    return true;
}

/// The Tab key goes to the first link or copy button at once. Where there is none the answer itself can be
/// selected by keys.
void MessageContent::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    const bool isForward = event->reason() == Qt::TabFocusReason;
    if (isForward || event->reason() == Qt::BacktabFocusReason)
        focusNextControl(isForward);
    update();
}

void MessageContent::focusOutEvent(QFocusEvent* event) {
    const bool returns =
        event->reason() == Qt::PopupFocusReason || event->reason() == Qt::ActiveWindowFocusReason;
    if (!returns)
        item_.clearFocus();
    QWidget::focusOutEvent(event);
    tellLink();
    update();
}

void MessageContent::contextMenuEvent(QContextMenuEvent* event) {
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    const QPointF point =
        isByKey ? item_.focusedFrame().value_or(item_.caretRectangle()).center() : QPointF(event->pos());
    auto actions = std::make_unique<QMenu>();
    if (const QString link = item_.linkAt(point); !link.isEmpty())
        QObject::connect(actions->addAction(QStringLiteral("Open Link")), &QAction::triggered, this,
                         [this, link] { openLink(link); });
    item_.addActions(*actions, point);
    PanelMenu::open(*this, std::move(actions), mapToGlobal(point.toPoint()), isByKey);
}

void MessageContent::itemChanged(const QRectF& area) {
    if (area.isNull())
        update();
    else
        update(area.toAlignedRect());
}

void MessageContent::itemResized() {
    // It may come from the midst of a paint or of a question for the height.
    if (std::exchange(resizeTold_, true))
        return;
    QTimer::singleShot(0, this, [this] {
        resizeTold_ = false;
        if (onHeightChanged && qCeil(item_.height()) != toldHeight_)
            onHeightChanged();
    });
}

void MessageContent::openLink(const QString& url) {
    const QString refusal = openLink_ ? openLink_(url) : QString();
    // Until another link is told.
    if (tell_ && !refusal.isEmpty())
        tell_(toldLink_ = refusal, true);
}

void MessageContent::copyText(const QString& text) {
    QGuiApplication::clipboard()->setText(text);
}

void MessageContent::copyButtonRenamed(std::size_t codeBlock) {
    markdown::announceCopyButton(*this, item_, codeBlock);
}

void MessageContent::callAfter(std::chrono::milliseconds delay, std::function<void()> work) {
    QTimer::singleShot(delay, this, std::move(work));
}

} // namespace quillmoth
