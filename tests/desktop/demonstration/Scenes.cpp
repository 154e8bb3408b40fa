#include "tests/desktop/demonstration/Scenes.h"

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

bool hasKeyboard(const DemonstrationDesktop& desktop) {
    return desktop.panelContents().find("\"Command\" focused") != std::string::npos;
}

bool openPanel(DemonstrationDesktop& desktop, const std::string& what) {
    desktop.input().pressKey(KEY_LEFTALT);
    desktop.input().pressKey(KEY_SPACE);
    desktop.input().releaseKey(KEY_SPACE);
    const bool shown = desktop.check(
        what, [&] { return desktop.isPanelVisible(); }, [&] { return desktop.programOutput(); });
    desktop.input().releaseKey(KEY_LEFTALT);
    // The keyboard arrives a moment behind the picture; no hand is quicker, but these are no hands.
    waitFor([&] { return hasKeyboard(desktop); });
    return shown;
}

/// The answer is complete when the bar offers a new chat in place of the cancelling.
bool awaitAnswer(DemonstrationDesktop& desktop, const std::string& what) {
    return desktop.check(
        what, [&] { return desktop.panelShows("New chat"); }, [&] { return desktop.panelContents(); },
        std::chrono::seconds(20));
}

/// Into the settings at the left, with the panel moved to their right.
void arrangeBeside(DemonstrationDesktop& desktop, std::uint32_t settings) {
    runChild({"xdotool", "windowmove", std::to_string(settings), "20", "30"}, std::chrono::seconds(5));
    const DesktopRectangle panel = desktop.desktop().windows().geometry(desktop.panelWindow());
    DesktopInput& input = desktop.input();
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

bool closeConversationAndPanel(DemonstrationDesktop& desktop, const std::string& topic) {
    desktop.input().tapKey(KEY_ESC);
    const bool stored = desktop.check(
        "Escape closes the conversation, and it is stored under a topic",
        [&] { return desktop.document("QuillmothHistory.json").find(topic) != std::string::npos; },
        [&] { return desktop.document("QuillmothHistory.json"); });
    for (int press = 0; press < 4 && desktop.isPanelVisible(); ++press) {
        desktop.input().tapKey(KEY_ESC);
        waitFor([&] { return !desktop.isPanelVisible(); }, std::chrono::milliseconds(300));
    }
    return desktop.check("Escape closes the panel", [&] { return !desktop.isPanelVisible(); }) && stored;
}

} // namespace

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

bool showSelectionToAnswer(DemonstrationDesktop& desktop) {
    DesktopInput& input = desktop.input();
    input.chord({KEY_LEFTCTRL, KEY_HOME});
    input.chord({KEY_LEFTSHIFT, KEY_END});
    desktop.check(
        "The first line is selected in the editor", [&] { return desktop.editorSelection() == kFirstLine; },
        [&] { return desktop.editorSelection(); });
    desktop.takePicture("selection");
    if (!openPanel(desktop, "The hot key opens the panel"))
        return false;
    desktop.check("The editor is still the active window", [&] { return desktop.isEditorActive(); });
    desktop.check(
        "The panel says that it has the context",
        [&] { return desktop.panelShows("Context found press esc to remove context"); },
        [&] { return desktop.panelContents(); });
    desktop.check("The editor's selection is kept", [&] { return desktop.editorSelection() == kFirstLine; });
    desktop.takePicture("panel");
    input.type("gram");
    desktop.check(
        "Typing narrows the list",
        [&] { return desktop.panelShows("Fix the grammar") && !desktop.panelShows("Make it shorter"); },
        [&] { return desktop.panelContents(); });
    input.tapKey(KEY_DOWN);
    letPass(kPaintTime);
    desktop.takePicture("search");
    input.tapKey(KEY_ENTER);
    waitFor([&] { return desktop.panelShows("Cancel"); }, std::chrono::seconds(2));
    desktop.takePicture("streaming");
    if (!awaitAnswer(desktop, "The answer streams in to its end"))
        return false;
    desktop.check(
        "The panel shows the answer", [&] { return desktop.panelShows(kCorrected); },
        [&] { return desktop.panelContents(); });
    desktop.takePicture("answer");
    input.chord({KEY_LEFTCTRL, KEY_ENTER});
    desktop.check("Ctrl+Return closes the panel", [&] { return !desktop.isPanelVisible(); });
    desktop.check(
        "The answer stands in the editor in place of the selection",
        [&] { return desktop.editorText() == std::string(kCorrected) + "\n" + kOtherLine + "\n"; },
        [&] { return desktop.editorText(); });
    desktop.check("The editor is the active window", [&] { return desktop.isEditorActive(); });
    desktop.takePicture("written-back");
    if (!openPanel(desktop, "The hot key opens the panel again, with the conversation"))
        return false;
    return closeConversationAndPanel(desktop, kLetterTopic);
}

bool showForm(DemonstrationDesktop& desktop) {
    DesktopInput& input = desktop.input();
    input.chord({KEY_LEFTCTRL, KEY_END});
    if (!openPanel(desktop, "Without a selection the hot key opens the panel"))
        return false;
    desktop.check(
        "The panel says that there is no selection", [&] { return desktop.panelShows("No selection"); },
        [&] { return desktop.panelContents(); });
    input.type("agenda");
    input.tapKey(KEY_DOWN);
    input.tapKey(KEY_ENTER);
    if (!desktop.check(
            "A preset with blanks opens its form", [&] { return desktop.panelShows("Back"); },
            [&] { return desktop.panelContents(); }))
        return false;
    // The first blank gets the focus a moment after the form appears.
    waitFor([&] { return desktop.panelContents().find("focused") != std::string::npos; });
    desktop.takePicture("form");
    // Return in the last blank sends the form.
    for (const char* text : {"45 minutes", "the spring release", "the team", "the release date"}) {
        if (!desktop.panelShows("Back"))
            break;
        input.type(text);
        input.tapKey(KEY_ENTER);
        waitFor([&] { return !desktop.panelShows("Back"); }, std::chrono::milliseconds(200));
    }
    if (!awaitAnswer(desktop, "The filled-in form is answered"))
        return false;
    desktop.check(
        "What was typed into the blanks was sent", [&] { return desktop.panelShows("spring release"); },
        [&] { return desktop.panelContents(); });
    desktop.check(
        "The answer is shown", [&] { return desktop.panelShows(kAgendaEnd); },
        [&] { return desktop.panelContents(); });
    desktop.takePicture("form-answered");
    return closeConversationAndPanel(desktop, kAgendaTopic);
}

bool showTypedCommand(DemonstrationDesktop& desktop) {
    DesktopInput& input = desktop.input();
    if (!openPanel(desktop, "The hot key opens the panel for a typed command"))
        return false;
    input.type("why does your panel grab the keyboard");
    letPass(kPaintTime);
    desktop.takePicture("typed-command");
    input.tapKey(KEY_ENTER);
    if (!awaitAnswer(desktop, "A typed command is answered"))
        return false;
    desktop.takePicture("typed-command-answered");
    return closeConversationAndPanel(desktop, kTypedTopic);
}

bool showHistory(DemonstrationDesktop& desktop) {
    DesktopInput& input = desktop.input();
    if (!openPanel(desktop, "The hot key opens the panel for the history"))
        return false;
    input.chord({KEY_LEFTCTRL, KEY_H});
    desktop.check(
        "Ctrl+H lists the stored conversations",
        [&] { return desktop.panelShows("How the panel takes the keyboard"); },
        [&] { return desktop.panelContents(); }, std::chrono::seconds(1));
    input.tapKey(KEY_DOWN);
    letPass(kPaintTime);
    desktop.takePicture("history");
    input.tapKey(KEY_ENTER);
    const bool reopened = desktop.check(
        "Return reopens the second one", [&] { return desktop.panelShows(kAgendaEnd); },
        [&] { return desktop.panelContents(); });
    desktop.takePicture("history-reopened");
    return closeConversationAndPanel(desktop, kAgendaTopic) && reopened;
}

bool showBesideSettings(DemonstrationDesktop& desktop) {
    DesktopInput& input = desktop.input();
    DesktopWindows& windows = desktop.desktop().windows();
    runChild({desktop.options().program, "--settings"}, std::chrono::seconds(5));
    std::uint32_t settings = 0;
    const auto isActive = [&] {
        settings = windows.windowTitled("Settings").value_or(0);
        return settings != 0 && windows.activeWindow() == settings;
    };
    if (!desktop.check("quillmoth --settings opens the settings", isActive) ||
        !openPanel(desktop, "The hot key opens the panel over the settings"))
        return false;
    arrangeBeside(desktop, settings);
    const auto clickSettings = [&] {
        const DesktopRectangle place = windows.geometry(settings);
        input.click(place.x + 12, place.y + place.height / 2);
    };
    clickSettings();
    desktop.check("A click into the settings closes the panel", [&] { return !desktop.isPanelVisible(); });
    if (!openPanel(desktop, "The hot key opens the panel beside the settings"))
        return false;
    input.chord({KEY_LEFTCTRL, KEY_T});
    desktop.check(
        "Ctrl+T keeps it on top", [&] { return desktop.panelShows("\"On top, Ctrl+T\" checked"); },
        [&] { return desktop.panelContents(); });
    clickSettings();
    desktop.check(
        "A click into the settings leaves a panel that is on top there, without the keyboard",
        [&] { return desktop.isPanelVisible() && isActive() && !hasKeyboard(desktop); },
        [&] { return desktop.panelContents(); });
    input.type("email");
    letPass(kPaintTime);
    desktop.takePicture("beside-settings");
    const DesktopRectangle panel = windows.geometry(desktop.panelWindow());
    input.click(panel.x + 150, panel.y + panel.height - 20);
    desktop.check("A click into the panel gives it the keyboard again", [&] { return hasKeyboard(desktop); });
    const auto isNarrowed = [&] {
        return desktop.panelShows("Write an email") && !desktop.panelShows("Plan my week");
    };
    const bool wasNarrowed = isNarrowed();
    input.type("email");
    desktop.check(
        "Only what is typed then comes to it", [&] { return !wasNarrowed && isNarrowed(); },
        [&] { return desktop.panelContents(); });
    for (int press = 0; press < 4 && desktop.isPanelVisible(); ++press) {
        input.tapKey(KEY_ESC);
        waitFor([&] { return !desktop.isPanelVisible(); }, std::chrono::milliseconds(300));
    }
    desktop.check("Escape closes the panel", [&] { return !desktop.isPanelVisible(); });
    input.chord({KEY_LEFTCTRL, KEY_W});
    return desktop.check("Ctrl+W closes the settings", [&] { return !windows.windowTitled("Settings"); });
}

} // namespace quillmoth::test
