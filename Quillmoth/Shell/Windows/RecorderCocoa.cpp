#include "Quillmoth/Shell/Windows/RecorderCocoa.h"

#include "KeyboardShortcuts/ShortcutText.h"
#include "Quillmoth/Shell/Controls/Buttons.h"
#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Looks/Lengths.h"
#include "Quillmoth/Shell/Looks/Palette.h"
#include "Quillmoth/Shell/Windows/KeyFlags.h"
#include "Quillmoth/Shell/Windows/ShortcutPainter.h"

#include <QFocusEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFrame>

#include <any>
#include <chrono>
#include <utility>

namespace quillmoth {

namespace {

using KeyboardShortcuts::Name;
using KeyboardShortcuts::Shortcut;

/// A click this near to the field does not end the recording.
constexpr int kMargin = 3;
constexpr int kClearInset = 7;
constexpr int kClearSize = 14;
/// Without a key: a held keyboard keeps screen lockers and the window manager's keys out.
constexpr std::chrono::seconds kLongestGrab(60);

template<class... Visitors>
struct Overloaded : Visitors... {
    using Visitors::operator()...;
};
template<class... Visitors>
Overloaded(Visitors...) -> Overloaded<Visitors...>;

QString recorderTextOf(std::string_view key) {
    return QString::fromStdString(recorderText(key));
}

} // namespace

RecorderCocoa::RecorderCocoa(Name name, RecorderServices services, Change onChange)
    : services_(std::move(services)), onChange_(std::move(onChange)), shortcutName_(std::move(name)),
      cancelButton_(new SymbolButton(QStringLiteral("clear"), kClearSize)) {
    grabTimer_.setSingleShot(true);
    grabTimer_.setInterval(kLongestGrab);
    connect(&grabTimer_, &QTimer::timeout, this, [this] { freeKeyboard(); });
    setReadOnly(true);
    setAlignment(Qt::AlignCenter);
    setContextMenuPolicy(Qt::NoContextMenu);
    setFocusPolicy(Qt::NoFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setFont(textFont(14));
    setCursor(Qt::ArrowCursor);
    cancelButton_->setParent(this);
    cancelButton_->setFocusPolicy(Qt::NoFocus);
    cancelButton_->setAccessibleName(QStringLiteral("Clear shortcut"));
    connect(cancelButton_, &QToolButton::clicked, this, [this] { clickClearButton(); });
    showPrompt("record_shortcut");
    refreshText();
    observer_ = services_.shortcuts.shortcutByNameDidChange([this](const Name& changed) {
        if (changed == shortcutName_)
            refreshText();
    });
}

RecorderCocoa::~RecorderCocoa() {
    if (isRecording())
        endEditing();
}

bool RecorderCocoa::hasClearButton() const {
    return !cancelButton_->isHidden();
}

QSize RecorderCocoa::sizeHint() const {
    return {kMinimumWidth, window::kControlHeight};
}

void RecorderCocoa::showPrompt(std::string_view key) {
    prompt_ = recorderTextOf(key);
    setPlaceholderText(prompt_);
    describe();
    update();
}

void RecorderCocoa::describe() {
    setToolTip(words_);
    setAccessibleDescription(isRecording() || words_.isEmpty() ? prompt_ : words_);
}

void RecorderCocoa::refreshText() {
    showText(services_.shortcuts.getShortcut(shortcutName_));
}

void RecorderCocoa::showText(const std::optional<Shortcut>& shortcut) {
    setText(shortcut ? QString::fromStdString(KeyboardShortcuts::description(*shortcut, services_.layout))
                     : QString());
    words_ = shortcut
                 ? QString::fromStdString(KeyboardShortcuts::spokenDescription(*shortcut, services_.layout))
                 : QString();
    describe();
    cancelButton_->setVisible(!QLineEdit::text().isEmpty());
}

void RecorderCocoa::showEvent(QShowEvent* event) {
    QLineEdit::showEvent(event);
    // A window that has just been opened does not record by itself.
    services_.mainQueue.async([this, alive = std::weak_ptr(alive_)] {
        if (alive.expired())
            return;
        canBecomeKey_ = true;
        setFocusPolicy(Qt::StrongFocus);
    });
}

void RecorderCocoa::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    if (canBecomeKey_ && !isRecording())
        beginRecording();
}

void RecorderCocoa::beginRecording() {
    services_.shortcuts.setRecordingPause(true);
    eventMonitor_ = std::make_unique<LocalEventMonitor>(
        [this](QObject* receiver, QEvent& event) { return handle(receiver, event); });
    eventMonitor_->start();
    holdKeyboard();
    showPrompt("press_shortcut");
}

void RecorderCocoa::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    deselect();
    if (event->reason() != Qt::PopupFocusReason && isRecording())
        endEditing();
}

void RecorderCocoa::endEditing() {
    eventMonitor_.reset();
    freeKeyboard();
    showPrompt("record_shortcut");
    services_.shortcuts.setRecordingPause(false);
}

void RecorderCocoa::blur() {
    clearFocus();
}

void RecorderCocoa::clickClearButton() {
    clear();
    textDidChange();
}

void RecorderCocoa::textDidChange() {
    if (!QLineEdit::text().isEmpty())
        return;
    services_.shortcuts.setShortcut(std::nullopt, shortcutName_);
    if (onChange_)
        onChange_(std::nullopt);
    showText(std::nullopt);
    setFocus(Qt::OtherFocusReason);
}

bool RecorderCocoa::handle(QObject* receiver, QEvent& event) {
    const auto* widget = qobject_cast<QWidget*>(receiver);
    if (widget == nullptr)
        return false;
    switch (event.type()) {
    case QEvent::MouseButtonRelease:
        handleRelease(static_cast<QMouseEvent&>(event));
        return false;
    case QEvent::ShortcutOverride:
        // No shortcut of the window's is to fire; the press itself follows.
        event.accept();
        return true;
    case QEvent::KeyPress:
        return handleKey(static_cast<QKeyEvent&>(event));
    default:
        return false;
    }
}

void RecorderCocoa::handleRelease(const QMouseEvent& event) {
    if (event.button() != Qt::LeftButton && event.button() != Qt::RightButton)
        return;
    const QPoint position = mapFromGlobal(event.globalPosition().toPoint());
    if (!rect().adjusted(-kMargin, -kMargin, kMargin, kMargin).contains(position))
        blur();
}

bool RecorderCocoa::handleKey(const QKeyEvent& event) {
    if (isModifierKey(event.key()))
        return false;
    const auto keyCode =
        services_.virtualKeyCode ? services_.virtualKeyCode(event.nativeScanCode()) : std::nullopt;
    holdKeyboard();
    // The present shortcut may be recorded again, although it counts as taken.
    const auto isSystems = [this](const Shortcut& shortcut) {
        return shortcut != services_.shortcuts.getShortcut(shortcutName_) &&
               services_.shortcuts.isSystems(shortcut);
    };
    carryOut(recordingStep({.keyCode = keyCode,
                            .modifierFlags = keyFlags(event.modifiers()),
                            .specialKey = specialKey(event.key())},
                           services_.mainMenu(), isSystems, services_.layout));
    return true;
}

void RecorderCocoa::holdKeyboard() {
    // Other window systems than X11 do not let a window have it, but may leave their own keys to it.
    if (QGuiApplication::platformName() == QLatin1String("xcb"))
        grabKeyboard();
    else if (services_.inhibitShortcuts && !inhibition_)
        inhibition_ = services_.inhibitShortcuts(window()->winId());
    grabTimer_.start();
}

void RecorderCocoa::freeKeyboard() {
    grabTimer_.stop();
    releaseKeyboard();
    inhibition_.reset();
}

void RecorderCocoa::carryOut(const RecordingStep& step) {
    std::visit(Overloaded{
                   // Moving the focus ends the recording.
                   [this](RecordingEndsAndMovesOn) { focusNextPrevChild(true); },
                   [this](RecordingEnds) { blur(); },
                   [this](RecordingClears) { clickClearButton(); },
                   [this](RecordingBeeps) { services_.beep(); },
                   [this](const RecordingMeetsMenuItem& conflict) {
                       refuse(QString::fromStdString(usedByMenuItemText(conflict.title)), {});
                   },
                   [this](RecordingMeetsSystem) {
                       refuse(recorderTextOf("keyboard_shortcut_used_by_system"),
                              recorderTextOf("keyboard_shortcuts_can_be_changed"));
                   },
                   [this](const RecordingAccepts& accepted) {
                       showText(accepted.shortcut);
                       services_.shortcuts.setShortcut(accepted.shortcut, shortcutName_);
                       if (onChange_)
                           onChange_(accepted.shortcut);
                       blur();
                   },
               },
               step);
}

void RecorderCocoa::refuse(const QString& message, const QString& informativeText) {
    blur();
    services_.alert(message, informativeText, [this, alive = std::weak_ptr(alive_)] {
        if (alive.expired())
            return;
        window()->activateWindow();
        setFocus(Qt::OtherFocusReason);
    });
}

void RecorderCocoa::resizeEvent(QResizeEvent* event) {
    QLineEdit::resizeEvent(event);
    const int surplus = (cancelButton_->width() - kClearSize) / 2;
    cancelButton_->move(width() - kClearInset - kClearSize - surplus,
                        (height() - cancelButton_->height()) / 2);
}

void RecorderCocoa::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QStyleOptionFrame option;
    initStyleOption(&option);
    style()->drawPrimitive(QStyle::PE_PanelLineEdit, &option, &painter, this);
    const WindowTheme& theme = windowTheme(palette());
    const bool isEmpty = QLineEdit::text().isEmpty();
    painter.setFont(isEmpty ? textFont() : font());
    painter.setPen(isEmpty ? theme.text2 : theme.text);
    drawShortcutText(painter, rect(), isEmpty ? prompt_ : QLineEdit::text());
}

} // namespace quillmoth
