#include "tests/desktop/atspi/AtSpiTest.h"

#include <csignal>

namespace quillmoth::test {

using namespace platform;

TEST_F(AtSpiTest, AHungApplicationCostsItsDeadlineOnceAndIsPassedOverUntilItAnswers) {
    inEachEditor("some text", [](const ChildProcess& editor) {
        input().chord({KEY_LEFTCTRL, KEY_A});
        ASSERT_EQ(capturedOnce("some text"), "some text");
        const auto element = focused();
        kill(editor.processIdentifier(), SIGSTOP);
        for (const int limit : {1100, 50}) {
            const double time =
                millisecondsOf([] { EXPECT_EQ(session().focusError(), kAXErrorCannotComplete); });
            EXPECT_LT(time, limit);
        }
        AXValue value;
        EXPECT_EQ(read(element, "AXValue", value), kAXErrorCannotComplete);
        kill(editor.processIdentifier(), SIGCONT);
        const auto isReadAgain = [] {
            return session().capture() == "some text" && session().captureWay.empty();
        };
        EXPECT_TRUE(waitFor(isReadAgain));
    });
}

TEST_F(AtSpiTest, AStoppedApplicationBehindDoesNotDelayTheOneInFront) {
    const auto hung = openEditor(lightEditors()[0], "behind");
    kill(hung.processIdentifier(), SIGSTOP);
    {
        const auto editor = openEditor(lightEditors()[2], "in front");
        AtSpiAccessibility other = newcomer();
        AXValue element;
        const double time = millisecondsOf([&] {
            EXPECT_EQ(other.copyAttributeValue(other.createSystemWide(), "AXFocusedUIElement", element),
                      kAXErrorSuccess);
        });
        EXPECT_LT(time, 250) << "a search of the desktop must not ask the stopped one";
    }
    kill(hung.processIdentifier(), SIGCONT);
}

TEST_F(AtSpiTest, AnApplicationThatQuitsGivesAnErrorAtOnce) {
    auto editor = openEditor(lightEditors()[0], "going");
    const auto element = focused();
    editor.terminate();
    AXValue value;
    const double time = millisecondsOf([&] {
        for (const char* attribute : {"AXSelectedText", "AXValue", "AXSelectedTextRange"})
            EXPECT_EQ(read(element, attribute, value), kAXErrorInvalidUIElement) << attribute;
        EXPECT_NE(accessibility().setAttributeValue(element, "AXValue", std::string("x")), kAXErrorSuccess);
    });
    EXPECT_LT(time, 100);
}

} // namespace quillmoth::test
