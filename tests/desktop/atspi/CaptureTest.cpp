#include "Foundation/Text.h"
#include "tests/desktop/atspi/AtSpiTest.h"

#include <algorithm>

namespace quillmoth::test {

using namespace platform;
using namespace std::chrono_literals;

TEST_F(AtSpiTest, TheSelectionOfEachEditorIsReadQuicklyAlsoWhereTheFocusWasNotSeenToCome) {
    inEachEditor("one \U0001F600 two", [](const ChildProcess&) {
        EXPECT_EQ(capturedOnce(""), "");
        selectAll("one \U0001F600 two");
        std::vector<double> times(9);
        for (double& time : times)
            time = millisecondsOf([] { session().capture(); });
        std::sort(times.begin(), times.end());
        std::printf("median of a capture %.2f ms, slowest %.2f ms\n", times[4], times.back());
        EXPECT_LT(times[4], 50);
        AtSpiAccessibility other = newcomer();
        AXValue element;
        AXValue value;
        ASSERT_EQ(other.copyAttributeValue(other.createSystemWide(), "AXFocusedUIElement", element),
                  kAXErrorSuccess);
        ASSERT_EQ(other.copyAttributeValue(std::get<AXUIElementRef>(element), "AXSelectedText", value),
                  kAXErrorSuccess);
        EXPECT_EQ(std::get<std::string>(value), "one \U0001F600 two");
        input().tapKey(KEY_RIGHT);
        EXPECT_EQ(capturedOnce(""), "");
    });
}

TEST_F(AtSpiTest, RangesAreInUTF16UnitsWhateverTheApplicationCounts) {
    inEachEditor("\U0001F600\U0001F601 a word", [](const ChildProcess&) {
        select({5, 6});
        EXPECT_EQ(capturedOnce("a word"), "a word");
        EXPECT_EQ(selectedRange(), (CFRange{5, 6}));
        select({4, 0});
        EXPECT_EQ(selectedRange(), (CFRange{4, 0})) << "length 0 places the caret";
    });
}

TEST_F(AtSpiTest, AProgramWithoutAccessibleTreeIsAskedForItsPrimarySelection) {
    AtSpiAccessibility accessibility = newcomer({.frontProcess = [] { return session().frontProcess(); }});
    const ChildProcess terminal({"xterm", "-e", "sh", "-c", "echo picked; sleep 60"});
    ASSERT_TRUE(holdsWithin(5s, [&] { return isInFront(terminal); }));
    AXValue element;
    ASSERT_EQ(
        accessibility.copyAttributeValue(accessibility.createSystemWide(), "AXFocusedUIElement", element),
        kAXErrorSuccess);
    AXValue value;
    const auto stand = std::get<AXUIElementRef>(element);
    EXPECT_EQ(accessibility.copyAttributeValue(stand, "AXSelectedText", value), kAXErrorSuccess);
    EXPECT_EQ(value, AXValue()) << "it is not known whether something is selected";
    EXPECT_EQ(accessibility.copyAttributeValue(stand, "AXValue", value), kAXErrorAttributeUnsupported);
    EXPECT_EQ(session().capture(), "");
    EXPECT_EQ(session().model->_status.get(), "No selection");
}

TEST_F(AtSpiTest, AnAnswerTakesThePlaceOfTheSelectionAndNothingElseChanges) {
    const std::string before = "first \U0001F600 line\nthe \u05E9\u05DC\u05D5\u05DD middle\n";
    std::string after = "\nand e\u0301 the rest";
    while (after.size() < 200'000)
        after += "\na line of some words, with an accent \u00E9 in it";
    const auto place = static_cast<std::int64_t>(utf16Length(before));
    inEachEditor(before + "replace \U0001F601 me" + after, [&](const ChildProcess& editor) {
        std::string held = "replace \U0001F601 me";
        // The last one but one leaves nothing to be replaced, so that the last one comes to the caret.
        for (const std::string answer :
             {"short", "several \U0001F680 lines,\nwith na\u00EFve \u05E2\u05D5\u05DC\u05DD", "",
              "replace \U0001F602 me"}) {
            select({place, static_cast<std::int64_t>(utf16Length(held))});
            ASSERT_EQ(capturedOnce(held), held);
            EXPECT_EQ(write(answer), WriteResult::written);
            EXPECT_TRUE(textOnce(editor, before + answer + after) == before + answer + after) << answer;
            EXPECT_EQ(selectedRange(), (CFRange{place, 0})) << "at the start of the answer";
            held = answer;
        }
        const auto end = static_cast<std::int64_t>(utf16Length(before + held + after));
        select({end, 0});
        EXPECT_EQ(write("the end"), WriteResult::written);
        EXPECT_TRUE(textOnce(editor, before + held + after + "the end").ends_with("itthe end"));
    });
}

TEST_F(AtSpiTest, APasswordIsNeitherReadNorWritten) {
    const auto field = openField("password", "secret");
    input().chord({KEY_LEFTCTRL, KEY_A});
    // What it is is known a moment after it is in front.
    AXValue value;
    EXPECT_TRUE(holdsWithin(2s, [&] {
        return read(focused(), "AXSelectedText", value) == kAXErrorSuccess && value == AXValue(std::string());
    })) << "as if nothing was selected";
    const auto element = focused();
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
