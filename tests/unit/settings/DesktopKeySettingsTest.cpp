#include "Platform/Linux/Desktop/DesktopKeySettings.h"
#include "Platform/Fake/FakeDesktop.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace quillmoth::platform {
namespace {

constexpr std::int64_t kCtrl = 0x100;
constexpr std::int64_t kShift = 0x200;
constexpr std::int64_t kAlt = 0x800;
constexpr std::int64_t kSuper = 0x1000;

using Keys = std::vector<KeyCombination>;

TEST(DesktopKeySettings, OpenboxKeysAreReadAndAChainCountsByItsFirstKey) {
    const Keys expected = {{"Left", kCtrl | kAlt}, {"g", kSuper}, {"Print", 0}, {"F4", kAlt}};
    EXPECT_EQ(openboxKeys(QByteArray::fromStdString(test::contentOf(QUILLMOTH_KEY_SETTINGS "/openbox.xml"))),
              expected)
        << "a modifier that hot keys do not know leaves its key out";
    EXPECT_TRUE(openboxKeys("<keyboard><keybind key=").empty());
}

TEST(DesktopKeySettings, XfceKeysAreTheUsersOwnListWhereThereIsOne) {
    const Keys expected = {{"F4", kAlt}, {"Page_Down", kAlt | kShift}, {"Delete", kCtrl | kAlt}};
    EXPECT_EQ(xfceKeys(QByteArray::fromStdString(test::contentOf(QUILLMOTH_KEY_SETTINGS "/xfce.xml"))),
              expected);
}

TEST(DesktopKeySettings, AnAcceleratorIsReadWithItsModifiersInAnyCase) {
    EXPECT_EQ(acceleratorCombination("<Super>l"), (KeyCombination{"l", kSuper}));
    EXPECT_EQ(acceleratorCombination("<control><ALT>T"), (KeyCombination{"T", kCtrl | kAlt}));
    for (const char* text : {"", "disabled", "<Alt>", "<Hyper>x", "<Alt"})
        EXPECT_EQ(acceleratorCombination(text), std::nullopt) << text;
}

TEST(DesktopKeySettings, AKeyIsFoundByWhatItWritesUnderTheLayoutInForce) {
    FakeKeyboardLayout layout;
    layout.characters = {{0, "q"}, {12, "a"}, {27, "ß"}, {44, "-"}};
    const KeyNames names(layout);
    EXPECT_EQ(names.virtualKeyCode("a"), 12);
    EXPECT_EQ(names.virtualKeyCode("Q"), 0);
    EXPECT_EQ(names.virtualKeyCode("minus"), 44);
    EXPECT_EQ(names.virtualKeyCode("space"), 49);
    EXPECT_EQ(names.virtualKeyCode("Print"), std::nullopt) << "a key without a virtual key code";
    // And back
    EXPECT_EQ(names.name(44), "minus");
    EXPECT_EQ(names.name(12), "a");
    EXPECT_EQ(names.name(27), std::nullopt) << "what has no name in ASCII";
    EXPECT_EQ(writtenAccelerator({names.name(49).value_or(""), kCtrl | kAlt | kShift | kSuper}),
              "<Control><Alt><Shift><Super>space");
}

} // namespace
} // namespace quillmoth::platform
