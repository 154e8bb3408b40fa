#include "Scenes.h"
#include "tests/desktop/support/FrontEditor.h"

#include <linux/input-event-codes.h>

namespace quillmoth::test {

namespace {

constexpr const char* kWords = "Some words that are selected here";

/// A program that an answer cannot be written into.
struct Unwritable {
    std::string name;
    std::vector<std::string> command;
    /// In its window.
    std::function<void(DesktopInput& input, const DesktopRectangle& window)> select;
    /// What the panel says then.
    std::string told;
};

void selectAll(DesktopInput& input, const DesktopRectangle&) {
    input.chord({KEY_LEFTCTRL, KEY_A});
}

std::function<void(DesktopInput&, const DesktopRectangle&)> draggingFrom(int x, int y) {
    return [=](DesktopInput& input, const DesktopRectangle& window) {
        input.movePointer(window.x + x, window.y + y);
        input.pressButton(1);
        input.movePointer(window.x + x + 40, window.y + y);
        input.movePointer(window.x + x + 100, window.y + y);
        input.releaseButton(1);
    };
}

std::vector<Unwritable> unwritablePrograms(const std::string& file) {
    const std::string field = QUILLMOTH_FIELD_WINDOW;
    return {{"terminal",
             {"xterm", "-e", "cat " + file + "; sleep 600"},
             draggingFrom(4, 8),
             "XTerm is a terminal, which would run the lines of the answer."},
            {"read-only",
             {field, "readonly", kWords},
             selectAll,
             "cannot be edited. The answer is on the clipboard"},
            {"password", {field, "password", "secret"}, selectAll, "not written into a password field"},
            {"other-keys",
             {"xedit", "-xrm", "*editWindow*font: fixed", file},
             draggingFrom(17, 130),
             "Xedit did not take the answer. It is on the clipboard: paste it with Ctrl+V."}};
}

bool bringsBack(Demonstration& demonstration, const Unwritable& unwritable) {
    DesktopInput& input = demonstration.input();
    DesktopWindows& windows = demonstration.session().windows();
    const std::uint32_t before = windows.activeWindow();
    const ChildProcess program(unwritable.command);
    if (!demonstration.check("A window comes to the front: " + unwritable.name,
                             [&] { return windows.activeWindow() != before && windows.activeWindow() != 0; }))
        return false;
    // It is drawn a moment behind.
    letPass(std::chrono::milliseconds(300));
    unwritable.select(input, windows.geometry(windows.activeWindow()));
    if (!openPanel(demonstration, "The hot key opens the panel over it"))
        return false;
    input.type("why does your panel grab the keyboard");
    input.tapKey(KEY_ENTER);
    if (!awaitAnswer(demonstration, "The question is answered"))
        return false;
    input.chord({KEY_LEFTCTRL, KEY_ENTER});
    demonstration.check("The panel comes back and says why",
                        [&] { return demonstration.isOpen() && demonstration.shows(unwritable.told); });
    demonstration.check("The answer is on the clipboard", [&] {
        return runChild({"xclip", "-selection", "clipboard", "-o"}, std::chrono::seconds(5))
            .output.ends_with("gives the keyboard back.");
    });
    demonstration.takePicture("not-written-" + unwritable.name);
    for (int press = 0; press < 5 && demonstration.isOpen(); ++press) {
        input.tapKey(KEY_ESC);
        waitFor([&] { return !demonstration.isOpen(); }, std::chrono::milliseconds(300));
    }
    return demonstration.check("Escape closes the panel", [&] { return !demonstration.isOpen(); });
}

} // namespace

bool showWhatIsNotWritten(Demonstration& demonstration) {
    demonstration.session().writeFile("words.txt", std::string(kWords) + "\n");
    for (const Unwritable& each : unwritablePrograms(demonstration.session().path("words.txt"))) {
        if (!bringsBack(demonstration, each))
            return false;
    }
    return true;
}

} // namespace quillmoth::test
