#include "Platform/Linux/X11/Keys/X11KeyboardEvents.h"

#include "Platform/Linux/Shared/Keycodes.h"
#include "Platform/Linux/X11/Server/X11Reply.h"
#include "Platform/Linux/X11/Server/XkbProtocol.h"

#include <algorithm>
#include <linux/input-event-codes.h>
#include <optional>
#include <utility>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace quillmoth::platform {

namespace {

constexpr xcb_keycode_t kLeftControl = KEY_LEFTCTRL + 8;
constexpr xcb_keycode_t kRightControl = KEY_RIGHTCTRL + 8;
constexpr xcb_keycode_t kUsualV = KEY_V + 8;

constexpr xcb_keycode_t kLeftShift = KEY_LEFTSHIFT + 8;
constexpr xcb_keycode_t kRightShift = KEY_RIGHTSHIFT + 8;

bool isControl(xcb_keycode_t keycode) {
    return keycode == kLeftControl || keycode == kRightControl;
}

bool isShift(xcb_keycode_t keycode) {
    return keycode == kLeftShift || keycode == kRightShift;
}

/// What the keys write, two columns for each of the first two layouts, which is all that the core protocol
/// tells.
class WrittenKeys {
public:
    explicit WrittenKeys(xcb_connection_t* connection) {
        const auto stateCookie = xcb_xkb_get_state(connection, XCB_XKB_ID_USE_CORE_KBD);
        const auto* setup = xcb_get_setup(connection);
        first_ = setup->min_keycode;
        count_ = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
        const auto cookie = xcb_get_keyboard_mapping(connection, first_, count_);
        const auto state = owned(xcb_xkb_get_state_reply(connection, stateCookie, nullptr));
        map_ = owned(xcb_get_keyboard_mapping_reply(connection, cookie, nullptr));
        layout_ = state ? state->group : 0U;
    }

    /// The layout in force.
    [[nodiscard]] unsigned layout() const { return layout_; }

    [[nodiscard]] std::optional<xcb_keycode_t> keycode(xcb_keysym_t keysym, unsigned layout,
                                                       bool isShifted) const {
        const unsigned column = 2 * layout + (isShifted ? 1 : 0);
        if (!map_ || layout > 1 || column >= map_->keysyms_per_keycode)
            return std::nullopt;
        const auto* keysyms = xcb_get_keyboard_mapping_keysyms(map_.get());
        for (unsigned key = 0; key < count_; ++key) {
            if (keysyms[key * map_->keysyms_per_keycode + column] == keysym)
                return static_cast<xcb_keycode_t>(first_ + key);
        }
        return std::nullopt;
    }

private:
    xcb_keycode_t first_ = 0;
    std::uint8_t count_ = 0;
    unsigned layout_ = 0;
    X11Reply<xcb_get_keyboard_mapping_reply_t> map_;
};

/// Without modifiers in the layout in force, or else in another one of the user's: what chords go by.
std::optional<xcb_keycode_t> chordKeycode(const WrittenKeys& keys, xcb_keysym_t keysym) {
    const unsigned inForce = keys.layout() == 1 ? 1 : 0;
    const auto found = keys.keycode(keysym, inForce, false);
    return found ? found : keys.keycode(keysym, 1 - inForce, false);
}

} // namespace

X11KeyboardEvents::X11KeyboardEvents(X11Connection& connection, Bracket withoutGrab)
    : connection_(connection), withoutGrab_(std::move(withoutGrab)) {}

std::optional<CGKeyboardEvent> X11KeyboardEvents::createKeyboardEvent(std::uint16_t keyCode, bool keyDown) {
    if (!connection_.takesKeys() || !keycodeForVirtualKeyCode(keyCode))
        return std::nullopt;
    return CGKeyboardEvent{keyCode, keyDown, 0};
}

void X11KeyboardEvents::post(const CGKeyboardEvent& event) {
    const auto keycode = keycodeForVirtualKeyCode(event.keyCode);
    const bool isForbidden = isForbidden_ && event.flags != 0 && event.keyDown && isForbidden_();
    if (!keycode || isForbidden)
        return;
    withoutGrab_([&] {
        if (event.keyDown)
            press(*keycode, event.flags);
        else
            release(*keycode);
        connection_.synchronize();
    });
}

void X11KeyboardEvents::postPaste() {
    const xcb_keycode_t keycode = chordKeycode(WrittenKeys(connection_.get()), XKB_KEY_v).value_or(kUsualV);
    withoutGrab_([&] {
        press(keycode, keys::kFlagCommand);
        release(keycode);
        connection_.synchronize();
    });
}

std::optional<X11KeyboardEvents::Key> X11KeyboardEvents::keyFor(const Stroke& stroke) {
    const WrittenKeys keys(connection_.get());
    if (stroke.control) {
        if (const auto keycode = chordKeycode(keys, stroke.keysym))
            return Key{.keycode = *keycode};
    }
    for (const bool isShifted : {false, true}) {
        if (const auto keycode = keys.keycode(stroke.keysym, keys.layout(), isShifted))
            return Key{.keycode = *keycode, .isShifted = isShifted};
    }
    return std::nullopt;
}

bool X11KeyboardEvents::postStrokes(const std::vector<Stroke>& strokes) {
    std::vector<Key> sequence;
    for (const Stroke& stroke : strokes) {
        const auto key = keyFor(stroke);
        if (!key)
            return false;
        sequence.push_back(*key);
    }
    withoutGrab_([&] {
        for (std::size_t index = 0; index < sequence.size(); ++index) {
            press(sequence[index].keycode, (strokes[index].control ? keys::kFlagCommand : 0) |
                                               (sequence[index].isShifted ? keys::kFlagShift : 0));
            release(sequence[index].keycode);
        }
        connection_.synchronize();
    });
    return true;
}

void X11KeyboardEvents::press(xcb_keycode_t keycode, keys::ModifierFlags flags) {
    auto held = keysDown(connection_, X11Modifiers(connection_).heldKeys());
    // Control goes down first: a lone release of Alt or Super would open a menu.
    if ((flags & keys::kFlagCommand) != 0)
        hold(kLeftControl, isControl, held);
    if ((flags & keys::kFlagShift) != 0)
        hold(kLeftShift, isShift, held);
    for (const auto modifier : held)
        fake(XCB_KEY_RELEASE, modifier);
    released_ = std::move(held);
    fake(XCB_KEY_PRESS, keycode);
}

/// Presses `modifier` unless the user holds one of its kind, which is then not to be released.
void X11KeyboardEvents::hold(xcb_keycode_t modifier, bool (*isOfKind)(xcb_keycode_t),
                             std::vector<xcb_keycode_t>& held) {
    if (std::erase_if(held, isOfKind) > 0)
        return;
    fake(XCB_KEY_PRESS, modifier);
    pressed_.push_back(modifier);
}

void X11KeyboardEvents::release(xcb_keycode_t keycode) {
    fake(XCB_KEY_RELEASE, keycode);
    for (const auto modifier : std::exchange(released_, {}))
        fake(XCB_KEY_PRESS, modifier);
    for (const auto modifier : std::exchange(pressed_, {}))
        fake(XCB_KEY_RELEASE, modifier);
}

void X11KeyboardEvents::fake(std::uint8_t type, xcb_keycode_t keycode) {
    connection_.strike(type, keycode);
}

} // namespace quillmoth::platform
