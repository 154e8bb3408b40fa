#include "Quillmoth/Shell/Panel/PanelMenu.h"

#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Looks/Palette.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace quillmoth {

namespace {

constexpr int kMenuFont = 13;
constexpr int kItemHeight = 28;
constexpr int kItemPadding = 10;
constexpr int kKeysGap = 32;
constexpr int kMenuPadding = 5;
constexpr int kSeparator = 9;
constexpr int kFromWindow = 6;
constexpr double kItemRadius = 6;
constexpr double kMenuRadius = 9;

int menuTextWidth(const QString& text, const QFont& font) {
    return QFontMetrics(font).horizontalAdvance(text);
}

} // namespace

PanelMenuItem::PanelMenuItem(const QAction& action, QWidget* parent)
    : QAbstractButton(parent), keys_(action.shortcut().toString(QKeySequence::NativeText)) {
    setText(action.text());
    setFont(textFont(kMenuFont));
    setEnabled(action.isEnabled());
    setFocusPolicy(Qt::TabFocus);
    setAccessibleName(keys_.isEmpty() ? text() : QStringLiteral("%1, %2").arg(text(), keys_));
    QObject::connect(this, &QAbstractButton::clicked, &action, &QAction::trigger);
}

QSize PanelMenuItem::sizeHint() const {
    const int keys = keys_.isEmpty() ? 0 : kKeysGap + menuTextWidth(keys_, font());
    return {menuTextWidth(text(), font()) + keys + 2 * kItemPadding, kItemHeight};
}

void PanelMenuItem::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool marked = hasFocus() && isEnabled();
    if (marked) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(kPanelTheme.rowSelected);
        painter.drawRoundedRect(rect(), kItemRadius, kItemRadius);
    }
    const QRect inside = rect().adjusted(kItemPadding, 0, -kItemPadding, 0);
    painter.setPen(marked ? kPanelTheme.white : isEnabled() ? kPanelTheme.text : kPanelTheme.gray);
    painter.drawText(inside, Qt::AlignVCenter | Qt::AlignLeading, text());
    painter.setPen(marked ? kPanelTheme.white : kPanelTheme.gray);
    painter.drawText(inside, Qt::AlignVCenter | Qt::AlignTrailing, keys_);
}

void PanelMenuItem::enterEvent(QEnterEvent*) {
    if (isEnabled())
        setFocus(Qt::PopupFocusReason);
}

void PanelMenuItem::keyPressEvent(QKeyEvent* event) {
    event->ignore();
}

void PanelMenu::open(QWidget& owner, std::unique_ptr<QMenu> actions, QPoint place, bool byKeyboard) {
    QWidget& window = *owner.window();
    for (QObject* child : window.children())
        if (auto* other = dynamic_cast<PanelMenu*>(child); other && other->isVisible())
            other->close();
    auto* menu = new PanelMenu(window, std::move(actions));
    menu->place(window.mapFromGlobal(place));
    menu->show();
    menu->raise();
    menu->setFocus(Qt::PopupFocusReason);
    if (byKeyboard)
        menu->moveMark(1);
}

PanelMenu::PanelMenu(QWidget& window, std::unique_ptr<QMenu> actions)
    : QWidget(&window), actions_(std::move(actions)), former_(window.focusWidget()) {
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::ArrowCursor);
    setAccessibleName(QStringLiteral("Menu"));
    addItems();
    qApp->installEventFilter(this);
    QObject::connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (isVisible() && (!now || (now != this && !isAncestorOf(now))))
            close();
    });
}

void PanelMenu::addItems() {
    int width = 0;
    int top = kMenuPadding;
    for (const QAction* action : actions_->actions()) {
        if (action->isSeparator()) {
            separators_.push_back(top + kSeparator / 2);
            top += kSeparator;
            continue;
        }
        auto* item = new PanelMenuItem(*action, this);
        // Behind the other reactions to the click.
        QObject::connect(item, &QAbstractButton::clicked, this, [this] { close(); });
        item->move(kMenuPadding, top);
        items_.push_back(item);
        width = std::max(width, item->sizeHint().width());
        top += kItemHeight;
    }
    for (PanelMenuItem* item : items_)
        item->resize(width, kItemHeight);
    resize(width + 2 * kMenuPadding, top + kMenuPadding);
}

void PanelMenu::place(QPoint corner) {
    const QRect room = parentWidget()->rect().adjusted(kFromWindow, kFromWindow, -kFromWindow, -kFromWindow);
    QRect frame(corner, size());
    frame.moveRight(std::min(frame.right(), room.right()));
    frame.moveLeft(std::max(frame.left(), room.left()));
    frame.moveBottom(std::min(frame.bottom(), room.bottom()));
    frame.moveTop(std::max(frame.top(), room.top()));
    move(frame.topLeft());
}

bool PanelMenu::eventFilter(QObject* watched, QEvent* event) {
    auto* widget = qobject_cast<QWidget*>(watched);
    if (!widget || !isVisible())
        return false;
    const bool leaves =
        widget == parentWidget() && (event->type() == QEvent::Hide || event->type() == QEvent::Resize);
    const bool pressesElsewhere =
        event->type() == QEvent::MouseButtonPress && widget != this && !isAncestorOf(widget);
    if (leaves || pressesElsewhere)
        close();
    return pressesElsewhere && widget->window() == window();
}

void PanelMenu::keyPressEvent(QKeyEvent* event) {
    const auto marked = std::find_if(items_.begin(), items_.end(),
                                     [](const PanelMenuItem* item) { return item->hasFocus(); });
    switch (event->key()) {
    case Qt::Key_Down:
        moveMark(1);
        break;
    case Qt::Key_Up:
        moveMark(-1);
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        if (marked != items_.end() && !event->isAutoRepeat())
            (*marked)->click();
        break;
    case Qt::Key_Escape:
        close();
        break;
    default:
        break;
    }
}

void PanelMenu::moveMark(int step) {
    const int count = static_cast<int>(items_.size());
    const auto marked = std::find_if(items_.begin(), items_.end(),
                                     [](const PanelMenuItem* item) { return item->hasFocus(); });
    int position =
        marked == items_.end() ? (step > 0 ? -1 : count) : static_cast<int>(marked - items_.begin());
    for (int tried = 0; tried < count; ++tried) {
        position = (position + step + count) % count;
        PanelMenuItem& item = *items_[static_cast<std::size_t>(position)];
        if (item.isEnabled())
            return item.setFocus(Qt::PopupFocusReason);
    }
}

bool PanelMenu::focusNextPrevChild(bool isNext) {
    moveMark(isNext ? 1 : -1);
    return true;
}

/// A press beside the items is none on the panel.
void PanelMenu::mousePressEvent(QMouseEvent*) {}

void PanelMenu::close() {
    if (std::exchange(closed_, true))
        return;
    qApp->removeEventFilter(this);
    const QWidget* focused = window()->focusWidget();
    if (former_ && (focused == this || isAncestorOf(focused)))
        former_->setFocus(Qt::PopupFocusReason);
    hide();
    deleteLater();
}

void openSelectionMenu(QWidget& owner, QPoint place, const QString& selected,
                       std::function<void()> selectAll) {
    auto actions = std::make_unique<QMenu>();
    QAction* copy = actions->addAction(QStringLiteral("Copy"));
    copy->setShortcut(QKeySequence::Copy);
    copy->setEnabled(!selected.isEmpty());
    QObject::connect(copy, &QAction::triggered, &owner,
                     [selected] { QGuiApplication::clipboard()->setText(selected); });
    QObject::connect(actions->addAction(QStringLiteral("Select All")), &QAction::triggered, &owner,
                     std::move(selectAll));
    PanelMenu::open(owner, std::move(actions), place, false);
}

void PanelMenu::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(kPanelTheme.fieldEdge, 1));
    painter.setBrush(kPanelTheme.field);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kMenuRadius, kMenuRadius);
    for (const int y : separators_)
        painter.fillRect(kMenuPadding + kItemPadding, y, width() - 2 * (kMenuPadding + kItemPadding), 1,
                         kPanelTheme.fieldEdge);
}

} // namespace quillmoth
