#include "tests/desktop/atspi/AtSpiTest.h"
#include "tests/desktop/tray/OtherClipboards.h"

#include <csignal>
#include <thread>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;

void expectKept() {
    EXPECT_TRUE(holdsWithin(5s, [] { return onClipboard("text/html") == "<b>kept</b>"; }));
    EXPECT_EQ(onClipboard(), "kept");
}

} // namespace

TEST_F(AtSpiTest, AProgramThatStopsWhileItIsWrittenToLosesNoText) {
    const auto editor = openEditor(lightEditors()[0], "old words");
    const pid_t process = editor.processIdentifier();
    for (const auto delay : {0ms, 2ms, 5ms, 9ms}) {
        input().chord({KEY_LEFTCTRL, KEY_A});
        input().type("old words");
        input().chord({KEY_LEFTCTRL, KEY_A});
        ASSERT_EQ(capturedOnce("old words"), "old words");
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
    input().chord({KEY_LEFTCTRL, KEY_A});
    ASSERT_EQ(capturedOnce("old"), "old");
    kill(process, SIGSTOP);
    EXPECT_EQ(session().selectionPaste.paste("answer", std::chrono::steady_clock::now() + 300ms),
              platform::PasteOutcome::notFetched);
    letPass(700ms);
    kill(process, SIGCONT);
    expectKept();
    EXPECT_EQ(textOnce(editor, "answer"), "answer");
}

TEST_F(AtSpiTest, TwoPressesAtOnceFindTheSelectionAndKeepTheClipboard) {
    const auto owner = copyRich("kept", "<b>kept</b>");
    const auto editor = openEditor(lightEditors()[0], "words");
    input().chord({KEY_LEFTCTRL, KEY_A});
    ASSERT_EQ(capturedOnce("words"), "words");
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
    input().chord({KEY_LEFTCTRL, KEY_A});
    ASSERT_EQ(capturedOnce("words"), "words");
    kill(owner.processIdentifier(), SIGSTOP);
    EXPECT_LT(millisecondsOf([] { EXPECT_EQ(session().capture(true), ""); }), 5000);
    kill(owner.processIdentifier(), SIGCONT);
    expectKept();
}

} // namespace quillmoth::test
