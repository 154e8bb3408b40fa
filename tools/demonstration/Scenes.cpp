#include "Scenes.h"

#include <linux/input-event-codes.h>

namespace quillmoth::test {

namespace {

constexpr const char* kFirstLine = "Their going to the the meeting tommorow, and I has not wrote the agenda.";
constexpr const char* kOtherLine = "This line stays as it is.";
constexpr const char* kCorrected = "They're going to the meeting tomorrow, and I haven't written the agenda.";
constexpr const char* kAgendaEnd = "no meeting needs a second hour";
constexpr const char* kTypedEnd = "the panel gives the keyboard back";
constexpr const char* kLetterTopic = "✍️ A note about a meeting";
constexpr const char* kAgendaTopic = "📋 Agenda for the spring release";
constexpr const char* kTypedTopic = "⌨️ How the panel takes the keyboard";

// For pictures only: no check depends on it.
constexpr std::chrono::milliseconds kPaintTime(100);

bool hasKeyboard(Demonstration& demonstration) {
    return demonstration.shows("\"Command\" focused");
}

/// Into the settings at the left, with the panel moved to their right.
void arrangeBeside(Demonstration& demonstration, std::uint32_t settings) {
    runChild({"xdotool", "windowmove", std::to_string(settings), "20", "30"}, std::chrono::seconds(5));
    const DesktopRectangle panel =
        demonstration.session().windows().geometry(demonstration.session().panelWindow());
    DesktopInput& input = demonstration.input();
    // An empty part of the bar.
    const int x = panel.x + 150;
    const int y = panel.y + panel.height - 20;
    input.movePointer(x, y);
    input.pressButton(1);
    for (const int by : {150, 300, 1250 - panel.x - panel.width})
        input.movePointer(x + by, y);
    input.releaseButton(1);
    // As a hand does: a press within the same thousandth of a second would be taken for the one before.
    letPass(kPaintTime);
}

bool closeConversationAndPanel(Demonstration& demonstration, const std::string& topic) {
    demonstration.input().tapKey(KEY_ESC);
    const bool stored =
        demonstration.check("Escape closes the conversation, and it is stored under a topic", [&] {
            return demonstration.session().readFile(ProgramSession::kHistory).find(topic) !=
                   std::string::npos;
        });
    for (int press = 0; press < 4 && demonstration.isOpen(); ++press) {
        demonstration.input().tapKey(KEY_ESC);
        waitFor([&] { return !demonstration.isOpen(); }, std::chrono::milliseconds(300));
    }
    return demonstration.check("Escape closes the panel", [&] { return !demonstration.isOpen(); }) && stored;
}

} // namespace

bool openPanel(Demonstration& demonstration, const std::string& what) {
    demonstration.input().pressKey(KEY_LEFTALT);
    demonstration.input().pressKey(KEY_SPACE);
    demonstration.input().releaseKey(KEY_SPACE);
    const bool shown = demonstration.check(what, [&] { return demonstration.isOpen(); });
    demonstration.input().releaseKey(KEY_LEFTALT);
    // The keyboard arrives a moment behind the picture; no hand is quicker, but these are no hands.
    waitFor([&] { return hasKeyboard(demonstration); });
    return shown;
}

bool awaitAnswer(Demonstration& demonstration, const std::string& what) {
    return demonstration.check(
        what, [&] { return demonstration.shows("New chat"); }, std::chrono::seconds(20));
}

std::string demonstrationText() {
    return std::string(kFirstLine) + "\n" + kOtherLine + "\n";
}

std::string demonstrationScript() {
    return std::string(R"([{"match": "Their going to", "answer": ")") + kCorrected + R"(", "topic": ")" +
           kLetterTopic + R"("},)" +
           R"({"match": "agenda", "answer": "## Agenda: spring release\n\n1. **Open bugs**, 10 minutes\n)"
           R"(2. **Release date**, 15 minutes\n   - what must be in it\n   - what can wait\n)"
           R"(3. Who writes the *announcement*\n\n| Topic | Minutes |\n|---|---:|\n| Open bugs | 10 |\n)"
           R"(| Release date | 15 |\n\n> Remember: )" +
           kAgendaEnd + R"(.", "topic": ")" + kAgendaTopic +
           R"("},{"match": "grab", "answer": "While its panel is open, the program *grabs the keyboard*: the )"
           R"(window in front stays the active one.\n\n```swift\nlet panel = Panel(nonActivating: true)\n)"
           R"(panel.grabKeyboard() // the focus stays where it is\n```\n\nWhen it closes, )" +
           kTypedEnd + R"(.", "topic": ")" + kTypedTopic + R"("}])";
}

bool showSelectionToAnswer(Demonstration& demonstration) {
    DesktopInput& input = demonstration.input();
    input.chord({KEY_LEFTCTRL, KEY_HOME});
    input.chord({KEY_LEFTSHIFT, KEY_END});
    demonstration.check("The first line is selected in the editor",
                        [&] { return demonstration.editor().selection() == kFirstLine; });
    demonstration.takePicture("selection");
    if (!openPanel(demonstration, "The hot key opens the panel"))
        return false;
    demonstration.check("The editor is still the active window",
                        [&] { return demonstration.editor().isActive(); });
    demonstration.check("The panel says that it has the context",
                        [&] { return demonstration.shows("Context found press esc to remove context"); });
    demonstration.check("The editor's selection is kept",
                        [&] { return demonstration.editor().selection() == kFirstLine; });
    demonstration.takePicture("panel");
    input.type("gram");
    demonstration.check("Typing narrows the list", [&] {
        return demonstration.shows("Fix the grammar") && !demonstration.shows("Make it shorter");
    });
    input.tapKey(KEY_DOWN);
    letPass(kPaintTime);
    demonstration.takePicture("search");
    input.tapKey(KEY_ENTER);
    waitFor([&] { return demonstration.shows("Cancel"); }, std::chrono::seconds(2));
    demonstration.takePicture("streaming");
    if (!awaitAnswer(demonstration, "The answer streams in to its end"))
        return false;
    demonstration.check("The panel shows the answer", [&] { return demonstration.shows(kCorrected); });
    demonstration.takePicture("answer");
    input.chord({KEY_LEFTCTRL, KEY_ENTER});
    demonstration.check("Ctrl+Return closes the panel", [&] { return !demonstration.isOpen(); });
    demonstration.check("The answer stands in the editor in place of the selection", [&] {
        return demonstration.editor().text() == std::string(kCorrected) + "\n" + kOtherLine + "\n";
    });
    demonstration.check("The editor is the active window", [&] { return demonstration.editor().isActive(); });
    demonstration.takePicture("written-back");
    if (!openPanel(demonstration, "The hot key opens the panel again, with the conversation"))
        return false;
    return closeConversationAndPanel(demonstration, kLetterTopic);
}

bool showForm(Demonstration& demonstration) {
    DesktopInput& input = demonstration.input();
    input.chord({KEY_LEFTCTRL, KEY_END});
    if (!openPanel(demonstration, "Without a selection the hot key opens the panel"))
        return false;
    demonstration.check("The panel says that there is no selection",
                        [&] { return demonstration.shows("No selection"); });
    input.type("agenda");
    input.tapKey(KEY_DOWN);
    input.tapKey(KEY_ENTER);
    if (!demonstration.check("A preset with blanks opens its form",
                             [&] { return demonstration.shows("Back"); }))
        return false;
    // The first blank gets the focus a moment after the form appears.
    waitFor([&] { return demonstration.shows("focused"); });
    demonstration.takePicture("form");
    // Return in the last blank sends the form.
    for (const char* text : {"45 minutes", "the spring release", "the team", "the release date"}) {
        if (!demonstration.shows("Back"))
            break;
        input.type(text);
        input.tapKey(KEY_ENTER);
        waitFor([&] { return !demonstration.shows("Back"); }, std::chrono::milliseconds(200));
    }
    if (!awaitAnswer(demonstration, "The filled-in form is answered"))
        return false;
    demonstration.check("What was typed into the blanks was sent",
                        [&] { return demonstration.shows("spring release"); });
    demonstration.check("The answer is shown", [&] { return demonstration.shows(kAgendaEnd); });
    demonstration.takePicture("form-answered");
    return closeConversationAndPanel(demonstration, kAgendaTopic);
}

bool showTypedCommand(Demonstration& demonstration) {
    DesktopInput& input = demonstration.input();
    if (!openPanel(demonstration, "The hot key opens the panel for a typed command"))
        return false;
    input.type("why does your panel grab the keyboard");
    letPass(kPaintTime);
    demonstration.takePicture("typed-command");
    input.tapKey(KEY_ENTER);
    if (!awaitAnswer(demonstration, "A typed command is answered"))
        return false;
    demonstration.takePicture("typed-command-answered");
    return closeConversationAndPanel(demonstration, kTypedTopic);
}

bool showHistory(Demonstration& demonstration) {
    DesktopInput& input = demonstration.input();
    if (!openPanel(demonstration, "The hot key opens the panel for the history"))
        return false;
    input.chord({KEY_LEFTCTRL, KEY_H});
    demonstration.check(
        "Ctrl+H lists the stored conversations",
        [&] { return demonstration.shows("How the panel takes the keyboard"); }, std::chrono::seconds(1));
    input.tapKey(KEY_DOWN);
    letPass(kPaintTime);
    demonstration.takePicture("history");
    input.tapKey(KEY_ENTER);
    const bool reopened =
        demonstration.check("Return reopens the second one", [&] { return demonstration.shows(kAgendaEnd); });
    demonstration.takePicture("history-reopened");
    return closeConversationAndPanel(demonstration, kAgendaTopic) && reopened;
}

bool showBesideSettings(Demonstration& demonstration) {
    DesktopInput& input = demonstration.input();
    DesktopWindows& windows = demonstration.session().windows();
    demonstration.session().run({"--settings"});
    std::uint32_t settings = 0;
    const auto isActive = [&] {
        settings = windows.windowTitled("Settings").value_or(0);
        return settings != 0 && windows.activeWindow() == settings;
    };
    if (!demonstration.check("quillmoth --settings opens the settings", isActive) ||
        !openPanel(demonstration, "The hot key opens the panel over the settings"))
        return false;
    arrangeBeside(demonstration, settings);
    const auto clickSettings = [&] {
        const DesktopRectangle place = windows.geometry(settings);
        input.click(place.x + 12, place.y + place.height / 2);
    };
    clickSettings();
    demonstration.check("A click into the settings closes the panel",
                        [&] { return !demonstration.isOpen(); });
    if (!openPanel(demonstration, "The hot key opens the panel beside the settings"))
        return false;
    input.chord({KEY_LEFTCTRL, KEY_T});
    demonstration.check("Ctrl+T keeps it on top",
                        [&] { return demonstration.shows("\"On top, Ctrl+T\" checked"); });
    clickSettings();
    demonstration.check("A click into the settings leaves a panel that is on top there, without the keyboard",
                        [&] { return demonstration.isOpen() && isActive() && !hasKeyboard(demonstration); });
    input.type("email");
    letPass(kPaintTime);
    demonstration.takePicture("beside-settings");
    const DesktopRectangle panel = windows.geometry(demonstration.session().panelWindow());
    input.click(panel.x + 150, panel.y + panel.height - 20);
    demonstration.check("A click into the panel gives it the keyboard again",
                        [&] { return hasKeyboard(demonstration); });
    const auto isNarrowed = [&] {
        return demonstration.shows("Write an email") && !demonstration.shows("Plan my week");
    };
    const bool wasNarrowed = isNarrowed();
    input.type("email");
    demonstration.check("Only what is typed then comes to it", [&] { return !wasNarrowed && isNarrowed(); });
    for (int press = 0; press < 4 && demonstration.isOpen(); ++press) {
        input.tapKey(KEY_ESC);
        waitFor([&] { return !demonstration.isOpen(); }, std::chrono::milliseconds(300));
    }
    demonstration.check("Escape closes the panel", [&] { return !demonstration.isOpen(); });
    input.chord({KEY_LEFTCTRL, KEY_W});
    return demonstration.check("Ctrl+W closes the settings",
                               [&] { return !windows.windowTitled("Settings"); });
}

} // namespace quillmoth::test
