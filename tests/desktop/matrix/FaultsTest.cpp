#include "tests/desktop/matrix/Examination.h"

#include <csignal>
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>
#include <thread>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;

std::string onClipboard(const std::string& target = "UTF8_STRING") {
    return runChild({"xclip", "-selection", "clipboard", "-o", "-t", target}, 5s).output;
}

double secondsOf(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// What goes wrong in other programs while the model reads from them and writes to them.
class Faults : public testing::Test {
protected:
    static void SetUpTestSuite() { desktop_ = std::make_unique<CapturingDesktop>("openbox"); }

    static void TearDownTestSuite() { desktop_.reset(); }

    static RunningProgram open(const std::string& name) {
        for (const ProgramKind& kind : programKinds()) {
            if (kind.name.starts_with(name))
                return kind.open(*desktop_);
        }
        throw std::runtime_error("there is no program " + name);
    }

    /// The first line of the document is selected and captured.
    static void selectFirst(const RunningProgram& program) {
        program.fields.front().select(0);
        EXPECT_TRUE(holdsWithin(5s, [] { return desktop_->capture() == documentLines().front(); }));
    }

    static std::string documentText() {
        desktop_->input().chord({KEY_LEFTCTRL, KEY_A});
        std::string text;
        waitFor([&] { return !(text = desktop_->capture()).empty(); });
        return text;
    }

    static ChildProcess keepOnClipboard() {
        ChildProcess owner({CLIPBOARD_OWNER, "kept", "<b>kept</b>"});
        EXPECT_TRUE(holdsWithin(5s, [] { return onClipboard() == "kept"; }));
        return owner;
    }

    static inline std::unique_ptr<CapturingDesktop> desktop_;
};

} // namespace

TEST_F(Faults, AProgramThatStopsWhileItIsWrittenToLosesNoText) {
    const std::string old = documentLines().front();
    const auto program = open("mousepad");
    const pid_t process = program.processes.front().processIdentifier();
    for (const auto delay : {0ms, 2ms, 5ms, 9ms}) {
        desktop_->input().chord({KEY_LEFTCTRL, KEY_A});
        desktop_->input().type(old);
        selectFirst(program);
        std::thread stopper([process, delay] {
            std::this_thread::sleep_for(delay);
            kill(process, SIGSTOP);
        });
        EXPECT_LT(secondsOf([] { desktop_->replaceSelection("answer"); }), 5);
        stopper.join();
        EXPECT_LT(secondsOf([] { desktop_->capture(); }), 5);
        kill(process, SIGCONT);
        const std::string text = documentText();
        EXPECT_TRUE(text == old || text == "answer" || text == "answer" + old) << text;
    }
}

TEST_F(Faults, AStoppedProgramPastesTheAnswerWhenItGoesOnAndNothingElse) {
    const auto owner = keepOnClipboard();
    const auto program = open("QPlainTextEdit");
    const pid_t process = program.processes.front().processIdentifier();
    selectFirst(program);
    kill(process, SIGSTOP);
    const auto deadline = std::chrono::steady_clock::now() + 300ms;
    EXPECT_FALSE(desktop_->paste("answer", process, deadline));
    letPass(700ms);
    kill(process, SIGCONT);
    EXPECT_TRUE(holdsWithin(5s, [] { return onClipboard("text/html") == "<b>kept</b>"; }));
    EXPECT_EQ(onClipboard(), "kept");
    EXPECT_TRUE(documentText().starts_with("answer\n")) << documentText();
}

TEST_F(Faults, AProgramThatTellsNonsenseIsAnsweredAndNotWrittenTo) {
    const ChildProcess window = startInFront(*desktop_, {ATSPI_FIELD_WINDOW, "nonsense", ""});
    EXPECT_TRUE(holdsWithin(5s, [] { return desktop_->focusError() == platform::kAXErrorSuccess; }));
    EXPECT_LT(secondsOf([] { desktop_->capture(); }), 5);
    EXPECT_LT(secondsOf([] { desktop_->replaceSelection("answer"); }), 5);
    EXPECT_EQ(desktop_->writeWay, "") << "pasting where the selection is not known would hit anything";
}

TEST_F(Faults, TwoPressesAtOnceFindTheSelectionAndKeepTheClipboard) {
    const auto owner = keepOnClipboard();
    const auto program = open("mousepad");
    selectFirst(program);
    desktop_->fakes().userDefaults.set("useCopyHack", true);
    desktop_->model().captureContext();
    letPass(100ms);
    desktop_->model().captureContext();
    EXPECT_TRUE(holdsWithin(5s, [] { return desktop_->model()._isContext.get(); }));
    letPass(500ms);
    EXPECT_EQ(desktop_->model()._selectedValue.get(), documentLines().front());
    EXPECT_EQ(onClipboard(), "kept");
    EXPECT_EQ(onClipboard("text/html"), "<b>kept</b>");
}

TEST_F(Faults, ACopyIsNotMadeWhereTheClipboardCouldNotBeKept) {
    const auto owner = keepOnClipboard();
    const auto program = open("mousepad");
    selectFirst(program);
    kill(owner.processIdentifier(), SIGSTOP);
    std::string seen;
    EXPECT_LT(secondsOf([&] { seen = desktop_->capture(true); }), 5);
    EXPECT_EQ(seen, "");
    kill(owner.processIdentifier(), SIGCONT);
    EXPECT_EQ(onClipboard("text/html"), "<b>kept</b>");
}

} // namespace quillmoth::test
