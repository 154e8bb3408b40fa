#include "tests/desktop/atspi/AtSpiDesktop.h"

#include <linux/input-event-codes.h>

using namespace quillmoth::platform;
using namespace quillmoth::test;

namespace {

using FieldTest = AtSpiDesktop;

} // namespace

TEST_F(FieldTest, aPasswordIsNeitherReadNorWritten) {
    const auto field = openField("password", "secret");
    desktop().input().chord({KEY_LEFTCTRL, KEY_A});
    const auto element = focused();
    AXValue value;
    ASSERT_EQ(read(element, "AXSelectedText", value), kAXErrorSuccess);
    EXPECT_EQ(std::get<std::string>(value), "") << "as if nothing was selected";
    for (const char* attribute : {"AXValue", "AXSelectedTextRange", "AXSelectedTextMarkerRange"})
        EXPECT_EQ(read(element, attribute, value), kAXErrorNoValue) << attribute;
    EXPECT_NE(accessibility().setAttributeValue(element, "AXValue", std::string("known")), kAXErrorSuccess);
    EXPECT_NE(accessibility().setAttributeValue(element, "AXSelectedTextRange", CFRange{0, 0}),
              kAXErrorSuccess);
}

TEST_F(FieldTest, aReadOnlyViewIsReadButNotWritten) {
    const auto field = openField("readonly", "fixed words");
    desktop().input().chord({KEY_LEFTCTRL, KEY_A});
    EXPECT_EQ(capturedTextOnce("fixed words"), "fixed words");
    EXPECT_NE(replaceSelection("other words"), kAXErrorSuccess);
    EXPECT_EQ(probedOnce(field, "--text", "fixed words"), "fixed words");
}

TEST_F(FieldTest, lineBreaksAreFlattenedInASingleLine) {
    const auto field = openField("line", "one two three");
    accessibility().setAttributeValue(focused(), "AXSelectedTextRange", CFRange{4, 3});
    ASSERT_EQ(capturedTextOnce("two"), "two");
    EXPECT_EQ(replaceSelection("2\r\nand\na \U0001F600 half"), kAXErrorSuccess);
    EXPECT_EQ(probedOnce(field, "--text", "one 2 and a \U0001F600 half three"),
              "one 2 and a \U0001F600 half three");
    EXPECT_EQ(probedOnce(field, "--range", "4,0"), "4,0");
}

TEST_F(FieldTest, aFieldThatCutsTheAnswerKeepsItsOldText) {
    const auto field = openField("short", "just full");
    accessibility().setAttributeValue(focused(), "AXSelectedTextRange", CFRange{5, 4});
    ASSERT_EQ(capturedTextOnce("full"), "full");
    EXPECT_NE(replaceSelection("too long for it"), kAXErrorSuccess);
    EXPECT_EQ(probedOnce(field, "--text", "just full"), "just full");
}
