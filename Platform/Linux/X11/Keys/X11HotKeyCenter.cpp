#include "Platform/Linux/X11/Keys/X11HotKeyCenter.h"

#include "Platform/Linux/Shared/Keycodes.h"
#include "Platform/Linux/X11/Keys/X11PassiveGrab.h"
#include "Platform/Linux/X11/Server/XkbProtocol.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <xcb/xinput.h>

namespace quillmoth::platform {

namespace {

constexpr OSStatus kParameterError = -50;
constexpr OSStatus kHotKeyExistsError = -9878;
constexpr OSStatus kHotKeyInvalidError = -9879;

/// Window managers take their keys again a while after a change of the keymap, each at its own pace, and come
/// before us then. The grab watch tells when; for servers without it we try several times. Milliseconds from
/// one time to the next: at 0, 40, 150 and 600.
constexpr int kGrabPauses[] = {40, 110, 450};

bool sameCombination(xcb_keycode_t keycode, std::uint32_t modifiers, xcb_keycode_t otherKeycode,
                     std::uint32_t otherModifiers) {
    return keycode == otherKeycode && (modifiers & kHotKeyModifiers) == otherModifiers;
}

void selectKeymapNotices(X11Connection& connection) {
    constexpr std::uint16_t kNotices = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr std::uint16_t kAllParts = 0xFF;
    xcb_xkb_select_events(connection.get(), XCB_XKB_ID_USE_CORE_KBD, kNotices, 0, kNotices, kAllParts,
                          kAllParts, nullptr);
}

} // namespace

X11HotKeyCenter::X11HotKeyCenter(std::unique_ptr<X11Connection> connection)
    : connection_(std::move(connection)), hold_(*connection_, {.lostGrabs = [this] { grabAllAgain(); },
                                                               .gaveUp = [this] { handleHeldHotKeys(); }}),
      modifiers_(*connection_),
      grabWatch_({.grabbedKey = [this](xcb_keycode_t keycode) { handleGrabOf(keycode); },
                  .askedForKeyboard = [this](std::uint32_t client) { keyboardAskedFor_.emit(client); }}) {
    grabTimer_.setSingleShot(true);
    grabTimer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&grabTimer_, &QTimer::timeout, &grabTimer_, [this] { grabInSteps(); });
    releaseTimer_.setSingleShot(true);
    releaseTimer_.setInterval(0);
    QObject::connect(&releaseTimer_, &QTimer::timeout, &releaseTimer_, [this] {
        // Down: the press of a repeat is still on its way.
        if (pressed_ && !isKeyDown(*connection_, pressed_->keycode))
            release();
    });
    events_ = connection_->onEvent([this](const xcb_generic_event_t& event) { handle(event); });
    selectKeymapNotices(*connection_);
    connection_->selectEvents(connection_->root(), XCB_EVENT_MASK_PROPERTY_CHANGE);
}

X11HotKeyCenter::~X11HotKeyCenter() = default;

OSStatus X11HotKeyCenter::registerEventHotKey(std::uint32_t keyCode, std::uint32_t carbonModifiers,
                                              EventHotKeyID id, Handle& handle) {
    const auto keycode = keycodeForVirtualKeyCode(keyCode);
    if (!keycode)
        return kParameterError;
    const Registration registration = {id, *keycode, modifiersForCarbon(carbonModifiers)};
    if (find(registration.keycode, registration.modifiers))
        return kHotKeyExistsError;
    letKeysGo();
    if (!grabKey(*connection_, registration.keycode, variants(registration))) {
        ungrabKey(*connection_, registration.keycode, variants(registration));
        return kHotKeyExistsError;
    }
    handle = ++lastHandle_;
    registrations_[handle] = registration;
    return noErr;
}

OSStatus X11HotKeyCenter::unregisterEventHotKey(Handle handle) {
    const auto found = registrations_.find(handle);
    if (found == registrations_.end())
        return kHotKeyInvalidError;
    letKeysGo();
    ungrabKey(*connection_, found->second.keycode, variants(found->second));
    connection_->synchronize();
    if (pressed_ && pressed_->identifier.id == found->second.identifier.id)
        pressed_.reset();
    registrations_.erase(found);
    return noErr;
}

OSStatus X11HotKeyCenter::installEventHandler(Handler handler) {
    handler_ = std::move(handler);
    return noErr;
}

const X11HotKeyCenter::Registration* X11HotKeyCenter::find(xcb_keycode_t keycode,
                                                           std::uint32_t modifiers) const {
    for (const auto& [handle, registration] : registrations_) {
        if (sameCombination(keycode, modifiers, registration.keycode, registration.modifiers))
            return &registration;
    }
    return nullptr;
}

std::array<std::uint32_t, 4> X11HotKeyCenter::variants(const Registration& registration) const {
    auto masks = modifiers_.lockVariants();
    for (auto& mask : masks)
        mask |= registration.modifiers;
    return masks;
}

void X11HotKeyCenter::handle(const xcb_generic_event_t& event) {
    const auto type = event.response_type & 0x7F;
    if (type == XCB_GE_GENERIC) {
        handleInputEvent(reinterpret_cast<const xcb_ge_generic_event_t&>(event));
    } else if (type == connection_->xkbEvent()) {
        // The second byte tells which XKB event it is; only those of a changed keymap are selected.
        startGrabbingAgain();
    } else if (type == XCB_PROPERTY_NOTIFY) {
        const auto& notice = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (notice.atom == connection_->atom("_NET_SUPPORTING_WM_CHECK"))
            startGrabbingAgain();
    }
}

void X11HotKeyCenter::handleInputEvent(const xcb_ge_generic_event_t& event) {
    if (event.extension != connection_->inputOpcode())
        return;
    const auto type = event.event_type;
    const auto& key = reinterpret_cast<const xcb_input_key_press_event_t&>(event);
    if ((type == XCB_INPUT_KEY_PRESS && !(key.flags & XCB_INPUT_KEY_EVENT_FLAGS_KEY_REPEAT)) ||
        type == XCB_INPUT_KEY_RELEASE)
        handleKey(strokeOf(key, type == XCB_INPUT_KEY_PRESS));
}

void X11HotKeyCenter::handleKey(const X11KeyStroke& stroke) {
    if (pressed_ && pressed_->keycode == stroke.keycode) {
        if (!stroke.isPress)
            release();
    } else if (hold_.isActive()) {
        hold_.add(stroke);
    } else if (const auto* registration = stroke.isPress ? find(stroke.keycode, stroke.modifiers) : nullptr) {
        hold_.start(stroke.keycode);
        press(*registration);
    }
}

bool X11HotKeyCenter::offer(const X11KeyStroke& stroke) {
    if (pressed_ && pressed_->keycode == stroke.keycode) {
        offerAgain(stroke);
        return true;
    }
    const auto* registration = stroke.isPress ? find(stroke.keycode, stroke.modifiers) : nullptr;
    if (!registration)
        return false;
    press(*registration);
    return true;
}

void X11HotKeyCenter::holdKeys() {
    if (!hold_.isActive())
        hold_.start(pressed_ ? pressed_->keycode : 0);
    hold_.insist();
}

void X11HotKeyCenter::letKeysGo() {
    hold_.letGo();
}

void X11HotKeyCenter::offerAgain(const X11KeyStroke& stroke) {
    // Core events show the repeat of a held key as a release and a press of the same time, sent together.
    if (!stroke.isPress) {
        releaseTime_ = stroke.time;
        releaseTimer_.start();
    } else if (stroke.time == releaseTime_) {
        releaseTimer_.stop();
    }
}

void X11HotKeyCenter::press(const Registration& registration) {
    pressed_ = registration;
    send(kEventHotKeyPressed, registration.identifier);
}

void X11HotKeyCenter::release() {
    const auto released = std::exchange(pressed_, std::nullopt);
    hold_.keyReleased();
    send(kEventHotKeyReleased, released->identifier);
}

/// No window has taken the keys, so nobody knows whom they were for; but hot keys are for us.
void X11HotKeyCenter::handleHeldHotKeys() {
    for (const auto& stroke : hold_.take())
        handleKey(stroke);
}

void X11HotKeyCenter::send(std::uint32_t kind, EventHotKeyID identifier) {
    // A copy: the handler may be replaced while it runs.
    const auto handler = handler_;
    const HotKeyEvent event = {.kind = kind, .hotKeyID = identifier};
    if (handler)
        handler(&event);
}

void X11HotKeyCenter::handleGrabOf(xcb_keycode_t keycode) {
    for (const auto& [handle, registration] : registrations_) {
        if (keycode == XCB_GRAB_ANY || keycode == registration.keycode)
            grabAgain(registration);
    }
    xcb_flush(connection_->get());
}

void X11HotKeyCenter::startGrabbingAgain() {
    grabStep_ = 0;
    const X11Modifiers current(*connection_);
    // A grab with the former Num Lock is known by that alone. The end of a hold gives up all there are.
    if (!hold_.hasAllKeys()) {
        for (const auto& [handle, registration] : registrations_)
            ungrabKey(*connection_, registration.keycode, variants(registration));
    }
    modifiers_ = current;
    grabInSteps();
}

void X11HotKeyCenter::grabAllAgain() {
    for (const auto& [handle, registration] : registrations_)
        grabAgain(registration);
    xcb_flush(connection_->get());
}

void X11HotKeyCenter::grabInSteps() {
    grabAllAgain();
    if (grabStep_ < std::size(kGrabPauses))
        grabTimer_.start(kGrabPauses[grabStep_++]);
}

void X11HotKeyCenter::grabAgain(const Registration& registration) {
    // Comes with the end of the hold.
    if (hold_.hasAllKeys())
        return;
    ungrabKey(*connection_, registration.keycode, variants(registration));
    grabKeyUnchecked(*connection_, registration.keycode, variants(registration));
}

} // namespace quillmoth::platform
