#include "Platform/Linux/X11/Panel/X11PanelFocus.h"

#include "Foundation/FatalError.h"
#include "Foundation/Log.h"
#include "Platform/Linux/X11/Server/X11Reply.h"
#include "Platform/Linux/X11/Server/X11Windows.h"

#include <QGuiApplication>
#include <algorithm>
#include <chrono>
#include <utility>
#include <xcb/xinput.h>

namespace quillmoth::platform {

namespace {

using namespace std::chrono_literals;

constexpr auto kRetryPause = 10ms;
constexpr int kAttempts = 50;
/// While a key that is held for the window is down, the window cannot have the keyboard. It is let go after
/// so many attempts; what is struck just then may reach the active application.
constexpr int kAttemptsBesideHold = 12;
constexpr auto kIdleTime = 60s;
/// So long the toolkit may take to tell of a press in its windows.
constexpr auto kPressPause = 20ms;

/// With one of these held a key writes no text; without any, only keys that write none can be the desktop's.
constexpr std::uint32_t kCommandModifiers = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;
constexpr std::uint32_t kChordModifiers = kCommandModifiers | XCB_MOD_MASK_SHIFT;

xcb_connection_t* toolkitConnection() {
    const auto* application = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!application)
        fatalError("The toolkit does not run on X11");
    return application->connection();
}

/// Keys from F1 on, the Meta keys and what stands above the main block: not those that write or edit.
bool canBeDesktopKeyAlone(xcb_keycode_t keycode) {
    const auto within = [keycode](int first, int last) { return keycode >= first && keycode <= last; };
    return within(67, 76) || within(95, 96) || keycode == 107 || within(121, 124) || within(133, 134) ||
           within(137, 255);
}

} // namespace

X11PanelFocus::X11PanelFocus(X11Connection& connection, X11HotKeyCenter& hotKeys)
    : connection_(connection), hotKeys_(hotKeys), probe_(connection), toolkit_(toolkitConnection()),
      watch_(connection, {.pressedOutside = [this](xcb_timestamp_t time) { handlePressOutside(time); },
                          .pressedInside =
                              [this] {
                                  if (!isHeld())
                                      acquire(window_);
                              },
                          .activatedElsewhere = [this] { turn(Turn::activatedElsewhere); }}),
      lockWatch_([this] {
          if (window_)
              turn(Turn::sessionLocked);
      }),
      drain_(connection, [this](const X11KeyStroke& stroke) { strikeAgain(stroke); }),
      watchdog_(
          [this] {
              giveKeyboardBack();
              xcb_flush(toolkit_);
          },
          [this] {
              logLine("The program hung while it had the keyboard, which went back to the program in front.");
              turn(Turn::activatedElsewhere);
          }) {
    retryTimer_.setTimerType(Qt::PreciseTimer);
    retryTimer_.setInterval(kRetryPause);
    pressTimer_.setSingleShot(true);
    pressTimer_.setInterval(kPressPause);
    idleTimer_.setSingleShot(true);
    idleTimer_.setInterval(kIdleTime);
    QObject::connect(&retryTimer_, &QTimer::timeout, &retryTimer_, [this] { tryToGrab(); });
    QObject::connect(&idleTimer_, &QTimer::timeout, &idleTimer_, [this] { turn(Turn::idle); });
    QObject::connect(&pressTimer_, &QTimer::timeout, &pressTimer_, [this] {
        if (std::exchange(outsidePressTime_, std::nullopt))
            turn(Turn::pressedElsewhere);
    });
    foreignGrabs_ = hotKeys_.onKeyboardAskedFor([this](std::uint32_t client) { handleForeignGrab(client); });
    qGuiApp->installNativeEventFilter(this);
}

X11PanelFocus::~X11PanelFocus() {
    X11PanelFocus::release();
}

void X11PanelFocus::prepare() {
    drain_.stop();
    hotKeys_.holdKeys();
}

void X11PanelFocus::acquire(WindowIdentifier window) {
    if (isHeld() && window_ == window)
        return;
    giveUp();
    freeToolkit_();
    window_ = static_cast<xcb_window_t>(window);
    watch_.start(window_);
    drain_.stop();
    attempts_ = 0;
    tryToGrab();
    // Connecting to the buses takes a while: not between the hot key and the first picture.
    QTimer::singleShot(0, &lockWatch_, [this] { lockWatch_.start(); });
}

void X11PanelFocus::handOnHeldKeys() {
    for (const auto& stroke : hotKeys_.takeHeldKeys()) {
        xcb_key_press_event_t event = {};
        event.response_type = stroke.isPress ? XCB_KEY_PRESS : XCB_KEY_RELEASE;
        event.detail = stroke.keycode;
        event.time = stroke.time;
        event.root = connection_.root();
        event.event = window_;
        event.state = static_cast<std::uint16_t>(stroke.modifiers);
        event.same_screen = 1;
        xcb_send_event(toolkit_, 0, window_, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&event));
    }
}

void X11PanelFocus::release() {
    watch_.stop();
    pressTimer_.stop();
    outsidePressTime_.reset();
    if (means_ == Means::grab && lastKey_ != 0)
        drain_.start(lastKey_);
    giveUp();
    window_ = 0;
    hotKeys_.letKeysGo();
    // A hot key has closed the window, and what was typed since is for the active application.
    for (const auto& stroke : hotKeys_.takeHeldKeys()) {
        if (stroke.isPress)
            strikeAgain(stroke);
    }
}

void X11PanelFocus::tryToGrab() {
    if (hotKeys_.holdsKeysByForce() || attempts_ == kAttemptsBesideHold)
        hotKeys_.letKeysGo();
    if (grab())
        means_ = Means::grab;
    else if (++attempts_ < kAttempts)
        return retryTimer_.start();
    else
        moveInputFocus();
    retryTimer_.stop();
    idleTimer_.start();
    watchdog_.start();
    hotKeys_.letKeysGo();
    handOnHeldKeys();
    if (means_ == Means::grab)
        xcb_allow_events(toolkit_, XCB_ALLOW_ASYNC_KEYBOARD, XCB_CURRENT_TIME);
    xcb_flush(toolkit_);
}

/// The server keeps what is struck from then on, until the keys that were held before have been handed on.
bool X11PanelFocus::grab() {
    const auto cookie =
        xcb_grab_keyboard(toolkit_, 1, window_, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_SYNC);
    const auto reply = owned(xcb_grab_keyboard_reply(toolkit_, cookie, nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

void X11PanelFocus::moveInputFocus() {
    const auto focus = owned(xcb_get_input_focus_reply(toolkit_, xcb_get_input_focus(toolkit_), nullptr));
    formerFocus_ = focus ? focus->focus : static_cast<xcb_window_t>(XCB_INPUT_FOCUS_POINTER_ROOT);
    xcb_set_input_focus(toolkit_, XCB_INPUT_FOCUS_POINTER_ROOT, window_, XCB_CURRENT_TIME);
    xcb_flush(toolkit_);
    means_ = Means::inputFocus;
}

void X11PanelFocus::giveUp() {
    retryTimer_.stop();
    idleTimer_.stop();
    watchdog_.stop();
    if (means_ == Means::none)
        return;
    giveKeyboardBack();
    means_ = Means::none;
    // The reply says that the server has done it.
    owned(xcb_get_input_focus_reply(toolkit_, xcb_get_input_focus(toolkit_), nullptr)).reset();
}

/// On the watchdog's thread too: reads only what is left alone while the watchdog is on.
void X11PanelFocus::giveKeyboardBack() {
    if (means_ == Means::grab)
        xcb_ungrab_keyboard(toolkit_, XCB_CURRENT_TIME);
    else
        xcb_set_input_focus(toolkit_, XCB_INPUT_FOCUS_POINTER_ROOT, formerFocus_, XCB_CURRENT_TIME);
}

void X11PanelFocus::handlePressOutside(xcb_timestamp_t time) {
    if (time == ownPressTime_)
        return;
    // A menu that the press opens needs the keyboard at once.
    giveUp();
    outsidePressTime_ = time;
    pressTimer_.start();
}

/// It was refused, and asks again: lockers try for a second or longer.
void X11PanelFocus::handleForeignGrab(std::uint32_t client) {
    const auto isBaseOf = [client](xcb_connection_t* connection) {
        return xcb_get_setup(connection)->resource_id_base == client;
    };
    const bool isOwn =
        isBaseOf(toolkit_) || isBaseOf(connection_.get()) || isBaseOf(hotKeys_.connection().get());
    if (!isOwn && means_ == Means::grab)
        turn(Turn::activatedElsewhere);
}

void X11PanelFocus::handleToolkitPress(const xcb_generic_event_t& event) {
    const auto& press = reinterpret_cast<const xcb_input_button_press_event_t&>(event);
    if (press.extension != connection_.inputOpcode() || press.event_type != XCB_INPUT_BUTTON_PRESS)
        return;
    if (belongsTo(connection_, press.event, window_))
        handleOwnPress(press.time);
    else if (!isWheel(press.detail) && !isPointed(connection_, window_))
        // Before the toolkit acts on it: a grab that it then makes is not to be given up for ours.
        giveUp();
}

/// The toolkit has one keyboard grab for all its windows. A menu or another window takes ours over, and what
/// had grabbed before gives ours up with its own.
void X11PanelFocus::handleFocusOut(const xcb_focus_out_event_t& event) {
    if (means_ != Means::grab || event.event != window_)
        return;
    // What the watchdog has done comes back as such an event too.
    if (watchdog_.hasRescued())
        return;
    if (event.mode == XCB_NOTIFY_MODE_GRAB) {
        watchdog_.stop();
        means_ = Means::none;
        turn(Turn::activatedElsewhere);
    } else if (event.mode == XCB_NOTIFY_MODE_UNGRAB) {
        attempts_ = 0;
        tryToGrab();
    }
}

void X11PanelFocus::handleOwnPress(xcb_timestamp_t time) {
    ownPressTime_ = time;
    if (outsidePressTime_ != time)
        return;
    outsidePressTime_.reset();
    acquire(window_);
}

void X11PanelFocus::turn(Turn kind) {
    giveUp();
    turned_.emit(kind);
}

void X11PanelFocus::withoutGrab(const std::function<void()>& work) {
    const bool wasHeld = hotKeys_.holdsKeys();
    hotKeys_.letKeysGo();
    drain_.stop();
    const bool wasGrabbed = means_ == Means::grab;
    if (wasGrabbed)
        giveUp();
    work();
    if (wasHeld)
        hotKeys_.holdKeys();
    if (wasGrabbed && window_)
        acquire(window_);
}

bool X11PanelFocus::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (window_ == 0 || eventType != "xcb_generic_event_t")
        return false;
    const auto& event = *static_cast<const xcb_generic_event_t*>(message);
    const auto type = event.response_type & 0x7F;
    if (type == XCB_GE_GENERIC)
        handleToolkitPress(event);
    else if (type == XCB_FOCUS_OUT)
        handleFocusOut(reinterpret_cast<const xcb_focus_out_event_t&>(event));
    if (means_ == Means::none || (type != XCB_KEY_PRESS && type != XCB_KEY_RELEASE))
        return false;
    const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(event);
    return handleKey({key.detail, key.state, key.time, type == XCB_KEY_PRESS});
}

bool X11PanelFocus::handleKey(const X11KeyStroke& stroke) {
    if (stroke.isPress)
        idleTimer_.start();
    // With the input focus only, hot keys and the desktop's keys take their ordinary way.
    if (means_ != Means::grab)
        return false;
    const bool isHotKey = hotKeys_.offer(stroke);
    if (stroke.isPress)
        lastKey_ = isHotKey ? 0 : stroke.keycode;
    if (isHotKey)
        return true;
    if (!stroke.isPress || !belongsToDesktop(stroke))
        return false;
    turn(Turn::desktopShortcut);
    strikeAgain(stroke);
    return true;
}

bool X11PanelFocus::belongsToDesktop(const X11KeyStroke& stroke) const {
    if (!(stroke.modifiers & kCommandModifiers) && !canBeDesktopKeyAlone(stroke.keycode))
        return false;
    return probe_.isGrabbed(stroke.keycode, stroke.modifiers & kChordModifiers);
}

void X11PanelFocus::strikeAgain(const X11KeyStroke& stroke) {
    // The user holds the key, so a press alone would be a repeat of it.
    const std::uint8_t strokes[] = {XCB_KEY_RELEASE, XCB_KEY_PRESS, XCB_KEY_RELEASE};
    for (const auto type : strokes)
        connection_.strike(type, stroke.keycode);
    connection_.synchronize();
}

} // namespace quillmoth::platform
