#include "tests/desktop/atspi/AtSpiTest.h"

namespace quillmoth::test {

using namespace platform;

TEST_F(AtSpiTest, APasswordIsNeitherReadNorWritten) {
    const auto field = openField("password", "secret");
    input().chord({KEY_LEFTCTRL, KEY_A});
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

TEST_F(AtSpiTest, AFieldKeepsItsTextWhereItDoesNotTakeTheAnswerWhole) {
    for (const auto& [kind, result] :
         {std::pair("readonly", WriteResult::notEditable), std::pair("short", WriteResult::refused)}) {
        const auto field = openField(kind, "just full");
        select({5, 4});
        ASSERT_EQ(capturedOnce("full"), "full");
        EXPECT_EQ(write("too long for it"), result) << kind;
        EXPECT_EQ(textOnce(field, "just full"), "just full") << kind;
    }
}

TEST_F(AtSpiTest, LineBreaksAreFlattenedInASingleLine) {
    const auto field = openField("line", "one two three");
    select({4, 3});
    ASSERT_EQ(capturedOnce("two"), "two");
    EXPECT_EQ(write("2\r\nand\na \U0001F600 half"), WriteResult::written);
    EXPECT_EQ(textOnce(field, "one 2 and a \U0001F600 half three"), "one 2 and a \U0001F600 half three");
    EXPECT_EQ(selectedRange(), (CFRange{4, 0}));
}

TEST_F(AtSpiTest, AFieldThatTellsNonsenseIsAnsweredAndNotWrittenTo) {
    const auto field = openField("nonsense", "odd");
    EXPECT_LT(millisecondsOf([] { session().capture(); }), 5000);
    EXPECT_LT(
        millisecondsOf([] { EXPECT_NE(session().model->replaceSelection("answer"), WriteResult::written); }),
        5000);
}

} // namespace quillmoth::test
