#include "tests/desktop/atspi/AtSpiTest.h"
#include "tests/desktop/tray/OtherClipboards.h"

#include <csignal>
#include <cstdlib>
#include <thread>

namespace quillmoth::test {

using namespace platform;
using namespace std::chrono_literals;

namespace {

void expectKept() {
    EXPECT_TRUE(holdsWithin(5s, [] { return onClipboard("text/html") == "<b>kept</b>"; }));
    EXPECT_EQ(onClipboard(), "kept");
}

/// The process that owns a name on the session bus.
pid_t ownerOf(const std::string& name) {
    const auto result =
        runChild({"dbus-send", "--session", "--print-reply=literal", "--dest=org.freedesktop.DBus", "/",
                  "org.freedesktop.DBus.GetConnectionUnixProcessID", "string:" + name},
                 2s);
    const auto number = result.output.find("uint32 ");
    return number == std::string::npos ? 0
                                       : static_cast<pid_t>(std::atol(result.output.c_str() + number + 7));
}

} // namespace

TEST_F(AtSpiTest, AProgramThatStopsWhileItIsWrittenToLosesNoText) {
    const auto editor = openEditor(lightEditors()[0], "old words");
    const pid_t process = editor.processIdentifier();
    for (const auto delay : {0ms, 2ms, 5ms, 9ms}) {
        input().chord({KEY_LEFTCTRL, KEY_A});
        input().type("old words");
        selectAll("old words");
        std::thread stopper([process, delay] {
            std::this_thread::sleep_for(delay);
            kill(process, SIGSTOP);
        });
        EXPECT_LT(millisecondsOf([] { session().replaceSelection("answer"); }), 5000);
        stopper.join();
        EXPECT_LT(millisecondsOf([] { session().capture(); }), 5000);
        kill(process, SIGCONT);
        std::string text;
        waitFor([&] { return !(text = textOf(editor)).empty(); });
        EXPECT_TRUE(text == "old words" || text == "answer" || text == "answerold words") << text;
    }
}

TEST_F(AtSpiTest, AStoppedProgramPastesTheAnswerWhenItGoesOnAndNothingElse) {
    const auto owner = copyRich("kept", "<b>kept</b>");
    const auto editor = openEditor(lightEditors()[2], "old");
    const pid_t process = editor.processIdentifier();
    selectAll("old");
    kill(process, SIGSTOP);
    const auto hasNoOtherFocus = [](std::int64_t) { return false; };
    EXPECT_EQ(session().backEnd().paste("answer", std::chrono::steady_clock::now() + 300ms, hasNoOtherFocus),
              platform::PasteOutcome::notFetched);
    letPass(700ms);
    kill(process, SIGCONT);
    expectKept();
    EXPECT_EQ(textOnce(editor, "answer"), "answer");
}

TEST_F(AtSpiTest, TwoPressesAtOnceFindTheSelectionAndKeepTheClipboard) {
    const auto owner = copyRich("kept", "<b>kept</b>");
    const auto editor = openEditor(lightEditors()[0], "words");
    selectAll("words");
    session().fakes.userDefaults.set("useCopyHack", true);
    session().model->captureContext();
    letPass(100ms);
    session().model->captureContext();
    EXPECT_TRUE(holdsWithin(5s, [] { return session().model->_isContext.get(); }));
    letPass(500ms);
    EXPECT_EQ(session().model->_selectedValue.get(), "words");
    expectKept();
}

TEST_F(AtSpiTest, ACopyIsNotMadeWhereTheClipboardCouldNotBeKept) {
    const auto owner = copyRich("kept", "<b>kept</b>");
    const auto editor = openEditor(lightEditors()[0], "words");
    selectAll("words");
    kill(owner.processIdentifier(), SIGSTOP);
    EXPECT_LT(millisecondsOf([] { EXPECT_EQ(session().capture(true), ""); }), 5000);
    kill(owner.processIdentifier(), SIGCONT);
    expectKept();
}

TEST_F(AtSpiTest, AHungApplicationCostsItsDeadlineOnceAndIsPassedOverUntilItAnswers) {
    inEachEditor("some text", [](const ChildProcess& editor) {
        selectAll("some text");
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

// The bus goes away in the last ones.
TEST_F(AtSpiTest, TrustIsThatAccessibilityIsEnabledAndIsAskedForOnce) {
    bool consent = false;
    int asked = 0;
    AtSpiAccessibility asking =
        newcomer({.hasConsent = [&] { return consent; }, .askForConsent = [&] { ++asked; }});
    const auto editor = openEditor(lightEditors()[0], "words");
    const auto application = asking.createApplication(editor.processIdentifier());
    EXPECT_TRUE(asking.isProcessTrustedWithOptions(true));
    EXPECT_EQ(asked, 0) << "nothing to ask for";
    VirtualDesktop::setAccessible(false);
    EXPECT_FALSE(asking.isProcessTrusted());
    EXPECT_FALSE(asking.isProcessTrustedWithOptions(false));
    EXPECT_EQ(asked, 0);
    EXPECT_FALSE(asking.isProcessTrustedWithOptions(true));
    EXPECT_FALSE(asking.isProcessTrustedWithOptions(true));
    EXPECT_EQ(asked, 1);
    AXValue value;
    EXPECT_EQ(asking.copyAttributeValue(asking.createSystemWide(), "AXFocusedUIElement", value),
              kAXErrorAPIDisabled);
    EXPECT_NE(asking.setAttributeValue(application, "AXEnhancedUserInterface", true), kAXErrorSuccess);
    EXPECT_FALSE(asking.isProcessTrusted()) << "never switched on without consent";
    consent = true;
    EXPECT_EQ(asking.setAttributeValue(application, "AXEnhancedUserInterface", true), kAXErrorSuccess);
    EXPECT_TRUE(asking.isProcessTrusted());
}

TEST_F(AtSpiTest, ItWorksAgainWhenTheAccessibilityBusIsBack) {
    { const auto editor = openEditor(lightEditors()[0], "before"); }
    const pid_t launcher = ownerOf("org.a11y.Bus");
    ASSERT_GT(launcher, 0);
    kill(launcher, SIGSTOP);
    EXPECT_LT(millisecondsOf([] { EXPECT_FALSE(accessibility().isProcessTrusted()); }), 1100);
    kill(launcher, SIGCONT);
    ASSERT_TRUE(holdsWithin(3s, [] { return accessibility().isProcessTrusted(); }));
    kill(launcher, SIGTERM);
    ASSERT_TRUE(holdsWithin(3s, [&] { return ownerOf("org.a11y.Bus") != launcher; }));
    // The session bus starts another one when it is asked for.
    ASSERT_TRUE(holdsWithin(5s, [] { return accessibility().enableForDesktop(); }));
    EXPECT_TRUE(accessibility().isProcessTrusted());
    const auto editor = openEditor(lightEditors()[0], "after");
    selectAll("after");
}

} // namespace quillmoth::test
