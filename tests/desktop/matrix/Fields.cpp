#include "tests/desktop/matrix/Fields.h"

#include <filesystem>
#include <fstream>
#include <linux/input-event-codes.h>
#include <stdexcept>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;

ProgramKind ownWindow(const std::string& name, const std::string& what, Field::Kind kind) {
    return {.name = name,
            .executable = ATSPI_FIELD_WINDOW,
            .isLight = true,
            .open = [=](CapturingDesktop& desktop) {
                Field field = editorField(desktop, name);
                field.kind = kind;
                if (kind == Field::Kind::secret) {
                    field.samples = {documentLines().front()};
                    field.select = [&desktop](std::size_t) { desktop.input().chord({KEY_LEFTCTRL, KEY_A}); };
                }
                return RunningProgram{startInFront(desktop, {ATSPI_FIELD_WINDOW, what, sampleDocument()}),
                                      {field}};
            }};
}

RunningProgram openXTerm(CapturingDesktop& desktop) {
    const std::string path = desktop.session().homeDirectory() + "/sample.txt";
    std::ofstream(path, std::ios::binary) << sampleDocument();
    // This terminal keeps no joiners between cells, and composes what can be composed.
    auto samples = documentSamples();
    samples[1] = "\U0001F600 smile \u00E9l\u00E8ve \U0001F469\U0001F680 flies";
    const auto select = [&desktop](std::size_t sample) {
        dragOverLines(desktop, kFirstLines[sample], sample == 2 ? 2 : 1);
    };
    return {startInFront(desktop, {"xterm", "-fn", "fixed", "-u8", "-b", "2", "+sb", "-e", "sh", "-c",
                                   "cat " + path + "; exec sleep 300"}),
            {{"xterm", samples, select, Field::Kind::readOnly}}};
}

/// A terminal that shows one sample after the other, which `select` selects with all that is there.
RunningProgram openShowing(CapturingDesktop& desktop, std::vector<std::string> command,
                           const std::function<void()>& select) {
    const std::string folder = desktop.session().homeDirectory();
    const auto samples = documentSamples();
    for (std::size_t sample = 0; sample < samples.size(); ++sample)
        std::ofstream(folder + "/sample" + std::to_string(sample)) << samples[sample];
    const std::string name = command.front();
    command.insert(command.end(),
                   {"sh", "-c", "stty -echo; while read n; do clear; cat " + folder + "/sample$n; done"});
    return {startInFront(desktop, command),
            {{name, samples,
              [&desktop, select](std::size_t sample) {
                  desktop.input().type(std::to_string(sample) + "\n");
                  letPass(900ms);
                  select();
              },
              Field::Kind::readOnly}}};
}

RunningProgram openXfceTerminal(CapturingDesktop& desktop) {
    return openShowing(desktop, {"xfce4-terminal", "--disable-server", "--hide-menubar", "-x"}, [&desktop] {
        desktop.input().chord({KEY_LEFTCTRL, KEY_LEFTSHIFT, KEY_A});
    });
}

RunningProgram openFoot(CapturingDesktop& desktop) {
    RunningProgram program = openShowing(desktop, {"foot"}, [&desktop] {
        const auto place = desktop.session().frontPlace();
        UserHands& input = desktop.input();
        input.movePointer(place.x + 2, place.y + 4);
        input.pressButton();
        input.movePointer(place.x + 60, place.y + 4);
        input.movePointer(place.x + place.width - 20, place.y + place.height / 2);
        input.releaseButton();
    });
    // It composes what can be composed.
    program.fields.front().samples[1] = "\U0001F600 smile \u00E9l\u00E8ve \U0001F469\u200D\U0001F680 flies";
    return program;
}

} // namespace

ProgramKind editorKind(const Editor& editor, bool isLight) {
    return {
        .name = editor.name,
        .executable = editor.command.front(),
        .isLight = isLight,
        .open = [=](CapturingDesktop& desktop) {
            return RunningProgram{
                startInFront(desktop, editor.commandOn(desktop.session().homeDirectory(), sampleDocument())),
                {editorField(desktop, editor.name)}};
        }};
}

void dragOverLines(CapturingDesktop& desktop, std::size_t first, std::size_t count) {
    constexpr int kLineHeight = 13;
    constexpr int kBorder = 2;
    const auto place = desktop.session().frontPlace();
    const auto lineAt = [&](std::size_t line) {
        return place.y + kBorder + kLineHeight * static_cast<int>(line) + kLineHeight / 2;
    };
    UserHands& input = desktop.input();
    // Far from the press before it, which would make it a double one.
    letPass(300ms);
    input.movePointer(place.x + kBorder, lineAt(first));
    input.pressButton();
    input.movePointer(place.x + kBorder + 60, lineAt(first));
    input.movePointer(place.x + place.width - 20, lineAt(first + count - 1));
    input.releaseButton();
}

std::vector<std::string> Editor::commandOn(const std::string& home, const std::string& text) const {
    const std::string path = home + "/sample.txt";
    std::ofstream(path, std::ios::binary) << text;
    std::vector<std::string> whole = command;
    whole.push_back(path);
    return whole;
}

std::vector<Editor> lightEditors() {
    return {{"mousepad (GTK 3)", {"mousepad", "--disable-server"}},
            {"featherpad (Qt 5)", {"featherpad", "--standalone"}},
            {"QPlainTextEdit (Qt 6)", {ATSPI_FIELD_WINDOW, "file"}}};
}

std::vector<std::string> documentLines() {
    return {"plain words",
            "\U0001F600 smile e\u0301le\u0300ve \U0001F469\u200D\U0001F680 flies",
            "first paragraph",
            "second paragraph",
            "\u05E9\u05DC\u05D5\u05DD \u05E2\u05D5\u05DC\u05DD",
            "the end"};
}

std::string sampleDocument() {
    std::string document;
    for (const std::string& line : documentLines())
        document += (document.empty() ? "" : "\n") + line;
    return document;
}

std::vector<std::string> documentSamples() {
    const auto lines = documentLines();
    return {lines[0], lines[1], lines[2] + "\n" + lines[3], lines[4]};
}

void selectLinesOfSample(UserHands& input, std::size_t sample) {
    input.chord({KEY_LEFTCTRL, KEY_HOME});
    for (std::size_t line = 0; line < kFirstLines[sample]; ++line)
        input.tapKey(KEY_DOWN);
    // In a line from right to left the place below is its end.
    input.tapKey(KEY_HOME);
    if (sample == 2)
        input.chord({KEY_LEFTSHIFT, KEY_DOWN});
    input.chord({KEY_LEFTSHIFT, KEY_END});
}

Field editorField(CapturingDesktop& desktop, const std::string& name) {
    return {.name = name, .samples = documentSamples(), .select = [&desktop](std::size_t sample) {
                selectLinesOfSample(desktop.input(), sample);
            }};
}

ChildProcess startInFront(CapturingDesktop& desktop, const std::vector<std::string>& command,
                          std::chrono::seconds limit) {
    MatrixSession& session = desktop.session();
    waitFor([&] { return !session.hasWindows(); });
    ChildProcess process(command, session.programOptions());
    bool isInFront = false;
    waitFor(
        [&] {
            isInFront = session.frontTitle().has_value();
            return isInFront || !process.isRunning();
        },
        limit);
    if (!isInFront)
        throw std::runtime_error(command.front() + " does not come to the front: " + process.output());
    return process;
}

std::string freshFolder(CapturingDesktop& desktop, const std::string& name) {
    std::string path = desktop.session().homeDirectory() + '/' + name;
    std::filesystem::remove_all(path);
    std::filesystem::create_directories(path);
    return path;
}

ChildProcess openTitled(CapturingDesktop& desktop, const std::vector<std::string>& command,
                        const std::string& title) {
    ChildProcess process = startInFront(desktop, command, 30s);
    const auto isShown = [&] {
        return desktop.session().frontTitle().value_or("").find(title) != std::string::npos;
    };
    if (!holdsWithin(30s, isShown))
        throw std::runtime_error(command.front() + " does not show " + title);
    return process;
}

std::vector<ProgramKind> programKinds() {
    std::vector<ProgramKind> kinds;
    for (const Editor& editor : lightEditors())
        kinds.push_back(editorKind(editor, true));
    kinds.push_back(editorKind({"gnome-text-editor (GTK 4)", {"gnome-text-editor", "--standalone"}}, false));
    kinds.push_back(ownWindow("read-only view (Qt 6)", "readonly", Field::Kind::readOnly));
    kinds.push_back(ownWindow("password field (Qt 6)", "password", Field::Kind::secret));
    kinds.push_back({.name = "xterm", .executable = "xterm", .isLight = true, .open = openXTerm});
    kinds.push_back({.name = "xfce4-terminal", .executable = "xfce4-terminal", .open = openXfceTerminal});
    kinds.push_back(
        {.name = "foot", .executable = "foot", .isLight = true, .needsWayland = true, .open = openFoot});
    for (const auto& more : {usualEditors(), oddEditors(), webPrograms(), officePrograms()})
        kinds.insert(kinds.end(), more.begin(), more.end());
    return kinds;
}

} // namespace quillmoth::test
