#include "tests/desktop/atspi/AtSpiDesktop.h"

#include <linux/input-event-codes.h>
#include <signal.h>

using namespace quillmoth::platform;
using namespace quillmoth::test;

namespace {

using HungApplicationTest = AtSpiDesktop;

double millisecondsOf(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

const std::string kCannotComplete = "error " + std::to_string(kAXErrorCannotComplete);

} // namespace

TEST_F(HungApplicationTest, costsItsDeadlineOnceAndIsPassedOverUntilItAnswers) {
    for (const EditorKind& kind : editorKinds()) {
        SCOPED_TRACE(kind.name);
        const auto editor = openEditor(kind, "some text");
        desktop().input().chord({KEY_LEFTCTRL, KEY_A});
        ASSERT_EQ(capturedTextOnce("some text"), "some text");
        const auto element = focused();
        kill(editor.processIdentifier(), SIGSTOP);
        const double first = millisecondsOf([] { EXPECT_EQ(capturedText(), kCannotComplete); });
        const double second = millisecondsOf([] { EXPECT_EQ(capturedText(), kCannotComplete); });
        AXValue value;
        EXPECT_EQ(read(element, "AXValue", value), kAXErrorCannotComplete);
        kill(editor.processIdentifier(), SIGCONT);
        std::printf("%s: stopped, a capture takes %.1f ms, the next one %.2f ms\n", kind.name.c_str(), first,
                    second);
        EXPECT_LT(first, 1100);
        EXPECT_LT(second, 50);
        EXPECT_EQ(capturedTextOnce("some text"), "some text") << "it answers again";
    }
}

TEST_F(HungApplicationTest, aStoppedApplicationBehindDoesNotDelayTheOneInFront) {
    const auto hung = openEditor(editorKinds()[0], "behind");
    kill(hung.processIdentifier(), SIGSTOP);
    {
        const auto editor = openEditor(editorKinds()[2], "in front");
        desktop().input().chord({KEY_LEFTCTRL, KEY_A});
        ASSERT_EQ(capturedTextOnce("in front"), "in front");
        AtSpiAccessibility newcomer({.frontProcess = frontProcess});
        AXValue element;
        const double time = millisecondsOf([&] {
            EXPECT_EQ(newcomer.copyAttributeValue(newcomer.createSystemWide(), "AXFocusedUIElement", element),
                      kAXErrorSuccess);
        });
        EXPECT_LT(time, 250) << "a search of the desktop must not ask the stopped one";
    }
    kill(hung.processIdentifier(), SIGCONT);
}

TEST_F(HungApplicationTest, anApplicationThatQuitsGivesAnErrorAtOnce) {
    auto editor = openEditor(editorKinds()[0], "going");
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
