#include "Platform/Linux/KWin/KWinKeys.h"

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>
#include <memory>
#include <qnamespace.h>

namespace quillmoth::platform {

namespace {

constexpr int kCtrl = Qt::ControlModifier;
constexpr int kAlt = Qt::AltModifier;
constexpr int kShift = Qt::ShiftModifier;
constexpr int kNumberPad = Qt::KeypadModifier;

std::vector<int> seen(const char* layouts, int key, keys::CarbonModifiers modifiers) {
    const std::unique_ptr<xkb_context, void (*)(xkb_context*)> context(xkb_context_new(XKB_CONTEXT_NO_FLAGS),
                                                                       &xkb_context_unref);
    const xkb_rule_names names = {"evdev", "pc105", layouts, "", ""};
    const std::unique_ptr<xkb_keymap, void (*)(xkb_keymap*)> keymap(
        xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS), &xkb_keymap_unref);
    return keysSeenByKWin(keymap.get(), static_cast<xkb_keycode_t>(key + 8), modifiers);
}

} // namespace

TEST(KWinKeys, AreThoseUnderWhichKWinSeesThePosition) {
    using Codes = std::vector<int>;
    using namespace keys;
    EXPECT_EQ(seen("us", KEY_SPACE, kCarbonOption), Codes{kAlt | Qt::Key_Space});
    EXPECT_EQ(seen("us", KEY_J, kCarbonCommand | kCarbonShift), Codes{kCtrl | kShift | Qt::Key_J});
    EXPECT_EQ(seen("us", KEY_F5, kCarbonControl), Codes{static_cast<int>(Qt::MetaModifier) | Qt::Key_F5});
    EXPECT_EQ(seen("us", KEY_TAB, kCarbonOption | kCarbonShift), Codes{kAlt | kShift | Qt::Key_Tab});
    // A sign of its own with Shift stands for both.
    EXPECT_EQ(seen("us", KEY_1, kCarbonCommand | kCarbonShift),
              (Codes{kCtrl | Qt::Key_Exclam, kCtrl | kShift | Qt::Key_1}));
    // The position, not the letter.
    EXPECT_EQ(seen("fr", KEY_Q, kCarbonCommand), Codes{kCtrl | Qt::Key_A});
    EXPECT_EQ(seen("us,ru", KEY_J, kCarbonCommand), (Codes{kCtrl | Qt::Key_J, kCtrl | 0x041E}));
    EXPECT_EQ(seen("de", KEY_EQUAL, kCarbonOption).front(), kAlt | Qt::Key_Dead_Acute);
    EXPECT_NE(seen("us", KEY_KP1, kCarbonOption), Codes());
    EXPECT_EQ(seen("us", KEY_KP1, kCarbonOption).back(), kAlt | kNumberPad | Qt::Key_1);
    EXPECT_EQ(seen("us", KEY_LEFTMETA, kCarbonOption), Codes());
}

} // namespace quillmoth::platform
