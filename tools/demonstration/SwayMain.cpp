// The main job in a session of sway without a screen, by the keyboard alone, with pictures and a report of
// it.

#include "ChatScript.h"
#include "Report.h"
#include "Scenes.h"
#include "tests/desktop/support/ProgramSession.h"
#include "tests/desktop/support/WaitFor.h"
#include "tests/desktop/wayland/SwaySession.h"

#include <linux/input-event-codes.h>

#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>

namespace {

using namespace quillmoth::test;
using namespace std::chrono_literals;

constexpr const char* kIntroduction =
    "Quillmoth in a session of sway, with an editor and a terminal of its own. A scripted server on the\n"
    "loopback address stands in for the language model.";
// As quick as a model that is in a hurry.
constexpr std::chrono::milliseconds kTimeOfAPiece(30);

class SwayShow {
public:
    explicit SwayShow(std::string output) : output_(std::move(output)) {
        std::filesystem::create_directories(output_);
        session_.writeFile("script.json", demonstrationScript());
        script_.load(session_.path("script.json"));
        script_.serve(session_.server(), kTimeOfAPiece);
    }

    bool run() {
        std::ofstream(session_.path("letter.txt")) << demonstrationText();
        const ChildProcess editor({"mousepad", "--disable-server", session_.path("letter.txt")},
                                  {.environment = {{"GSETTINGS_BACKEND", "memory"}}});
        check("An editor comes to the front", [] { return SwaySession::front() == "mousepad"; });
        session_.start();
        showAnswer();
        showTerminal();
        showRecorder();
        check("quillmoth --quit ends the program", [this] { return session_.quit() == 0; });
        report_.write(output_ + "/report.txt", kIntroduction);
        return report_.allPassed();
    }

private:
    void check(const std::string& what, const std::function<bool()>& condition) {
        const auto start = std::chrono::steady_clock::now();
        const bool passed = holdsWithin(20s, condition);
        const auto time =
            std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start);
        report_.add({.what = what,
                     .passed = passed,
                     .time = time,
                     .details = passed ? "" : session_.output() + session_.shown().described()});
    }

    bool shows(const std::string& text) {
        return session_.shown().described().find(text) != std::string::npos;
    }

    void takePicture(const std::string& name) {
        // What moves comes to rest.
        letPass(300ms);
        SwaySession::saveScreenshot(output_ + "/0" + std::to_string(++pictures_) + "-" + name + ".png");
    }

    void openPanel() {
        sway_.input().chord({KEY_LEFTALT, KEY_SPACE});
        check("The hot key opens the panel with the keyboard",
              [this] { return shows("\"Command\" focused"); });
    }

    void ask(const std::string& question) {
        sway_.input().type(question);
        sway_.input().tapKey(KEY_ENTER);
        check("The question is answered", [this] { return shows("New chat"); });
    }

    void closePanel() {
        for (int press = 0; press < 5 && shows("\"Command\""); ++press) {
            sway_.input().tapKey(KEY_ESC);
            waitFor([this] { return !shows("\"Command\""); }, 500ms);
        }
        check("Escape closes the panel", [this] { return !shows("\"Command\""); });
    }

    void showAnswer() {
        sway_.input().chord({KEY_LEFTCTRL, KEY_HOME});
        sway_.input().chord({KEY_LEFTSHIFT, KEY_END});
        openPanel();
        check("The panel has the selection", [this] { return shows("Context found"); });
        takePicture("panel");
        sway_.input().type("gram");
        sway_.input().tapKey(KEY_DOWN);
        sway_.input().tapKey(KEY_ENTER);
        check("The question is answered", [this] { return shows("New chat"); });
        takePicture("answer");
        sway_.input().chord({KEY_LEFTCTRL, KEY_ENTER});
        check("Ctrl+Return closes the panel", [this] { return !shows("\"Command\""); });
        takePicture("written-back");
        openPanel();
        closePanel();
    }

    void showTerminal() {
        const ChildProcess terminal(
            {"foot", "--font=monospace:size=11", "sh", "-c", "printf selected; exec sleep 600"},
            {.environment = {{"LC_ALL", "C.UTF-8"}}});
        check("A terminal comes to the front", [] { return SwaySession::front() == "foot"; });
        const DesktopRectangle window = SwaySession::frontRectangle();
        sway_.input().click(window.x + 20, window.y + 8, 2);
        openPanel();
        ask("why does your panel grab the keyboard");
        sway_.input().chord({KEY_LEFTCTRL, KEY_ENTER});
        check("The panel comes back and says that a terminal is not written into",
              [this] { return shows("terminal"); });
        takePicture("told-not-written");
        closePanel();
    }

    void showRecorder() {
        session_.run({"--settings"});
        const auto recorder = [this] { return session_.shown().find("text", "Open Quillmoth Hotkey:"); };
        check("The settings come to the front",
              [&] { return SwaySession::front() == "org.quillmoth.Quillmoth" && recorder().has_value(); });
        sway_.command("bindsym Mod4+j mark pressed");
        check("A click into the recorder records", [&] {
            const DesktopRectangle window = SwaySession::frontRectangle();
            const DesktopRectangle place = recorder()->bounds();
            sway_.input().click(window.x + place.x + 20, window.y + place.y + place.height / 2);
            return holdsWithin(1s, [&] { return recorder()->description() == "Press shortcut…"; });
        });
        takePicture("recorder");
        sway_.input().chord({KEY_LEFTMETA, KEY_J});
        check("A combination that sway takes is recorded",
              [&] { return recorder()->description() == "Super+J"; });
        takePicture("recorded");
    }

    std::string output_;
    ProgramSession session_{""};
    SwaySession sway_;
    ChatScript script_;
    Report report_;
    int pictures_ = 0;
};

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("Usage: sway-demonstration FOLDER\n", stderr);
        return 2;
    }
    try {
        std::printf("\n%s\n\n", kIntroduction);
        return SwayShow(argv[1]).run() ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "sway-demonstration: %s\n", error.what());
        return 1;
    }
}
