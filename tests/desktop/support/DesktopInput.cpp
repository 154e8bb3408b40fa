#include "tests/desktop/support/DesktopInput.h"

#include "tests/desktop/support/DesktopWindows.h"

#include <linux/input-event-codes.h>
#include <stdexcept>
#include <string>
#include <xcb/xcb.h>
#include <xcb/xinput.h>
#include <xcb/xtest.h>

namespace quillmoth::test {

namespace {

constexpr int kFirstKeycode = 8;

struct KeyPosition {
    int key = 0;
    bool shifted = false;
};

std::uint32_t keysymFor(char character) {
    constexpr std::uint32_t kReturn = 0xff0d;
    return character == '\n' ? kReturn : static_cast<unsigned char>(character);
}

KeyPosition find(xcb_connection_t* connection, std::uint32_t keysym) {
    const auto cookie = xcb_get_keyboard_mapping(connection, kFirstKeycode, 248);
    const auto reply = ownedReply(xcb_get_keyboard_mapping_reply(connection, cookie, nullptr));
    if (!reply)
        throw std::runtime_error("no keyboard mapping");
    const xcb_keysym_t* keysyms = xcb_get_keyboard_mapping_keysyms(reply.get());
    const int width = reply->keysyms_per_keycode;
    for (int level = 0; level < 2; ++level) {
        for (int key = 0; key < 248; ++key) {
            if (keysyms[key * width + level] == keysym)
                return {key, level == 1};
        }
    }
    throw std::runtime_error("no key writes keysym " + std::to_string(keysym));
}

/// The keyboard that belongs to the server and not to XTEST; 0 for none.
std::uint8_t serverKeyboard(xcb_connection_t* connection) {
    const auto cookie = xcb_input_xi_query_device(connection, XCB_INPUT_DEVICE_ALL);
    const auto reply = ownedReply(xcb_input_xi_query_device_reply(connection, cookie, nullptr));
    if (!reply)
        return 0;
    auto devices = xcb_input_xi_query_device_infos_iterator(reply.get());
    for (; devices.rem > 0; xcb_input_xi_device_info_next(&devices)) {
        const std::string_view name(xcb_input_xi_device_info_name(devices.data), devices.data->name_len);
        if (devices.data->type == XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD &&
            name.find("XTEST") == std::string_view::npos)
            return static_cast<std::uint8_t>(devices.data->deviceid);
    }
    return 0;
}

} // namespace

DesktopInput::DesktopInput(xcb_connection_t* connection, std::uint32_t rootWindow)
    : connection_(connection), rootWindow_(rootWindow) {}

void DesktopInput::useSecondKeyboard(bool isSecond) {
    keyboard_ = isSecond ? serverKeyboard(connection_) : 0;
    if (isSecond && keyboard_ == 0)
        throw std::runtime_error("no second keyboard");
}

void DesktopInput::send(std::uint8_t type, int detail, int x, int y) {
    std::uint8_t device = 0;
    if (keyboard_ != 0 && (type == XCB_KEY_PRESS || type == XCB_KEY_RELEASE)) {
        const auto first = xcb_get_extension_data(connection_, &xcb_input_id)->first_event;
        type = first + (type == XCB_KEY_PRESS ? XCB_INPUT_DEVICE_KEY_PRESS : XCB_INPUT_DEVICE_KEY_RELEASE);
        device = keyboard_;
    }
    xcb_test_fake_input(connection_, type, static_cast<std::uint8_t>(detail), XCB_CURRENT_TIME, rootWindow_,
                        static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), device);
    ownedReply(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

void DesktopInput::pressKey(int key) {
    send(XCB_KEY_PRESS, key + kFirstKeycode);
}

void DesktopInput::releaseKey(int key) {
    send(XCB_KEY_RELEASE, key + kFirstKeycode);
}

void DesktopInput::tapKey(int key) {
    pressKey(key);
    releaseKey(key);
}

void DesktopInput::chord(std::initializer_list<int> keys) {
    for (const int key : keys)
        pressKey(key);
    for (auto key = std::rbegin(keys); key != std::rend(keys); ++key)
        releaseKey(*key);
}

void DesktopInput::type(std::string_view asciiText) {
    for (const char character : asciiText) {
        const auto [key, shifted] = find(connection_, keysymFor(character));
        if (shifted)
            chord({KEY_LEFTSHIFT, key});
        else
            tapKey(key);
    }
}

void DesktopInput::movePointer(int x, int y) {
    send(XCB_MOTION_NOTIFY, 0, x, y);
}

void DesktopInput::pressButton(int button) {
    send(XCB_BUTTON_PRESS, button);
}

void DesktopInput::releaseButton(int button) {
    send(XCB_BUTTON_RELEASE, button);
}

void DesktopInput::clickButton(int button) {
    pressButton(button);
    releaseButton(button);
}

void DesktopInput::click(int x, int y, int button) {
    movePointer(x, y);
    clickButton(button);
}

} // namespace quillmoth::test
