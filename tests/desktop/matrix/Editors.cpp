#include "tests/desktop/matrix/Fields.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <linux/input-event-codes.h>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;

std::string samplePath(CapturingDesktop& desktop) {
    return desktop.session().homeDirectory() + "/sample.txt";
}

/// What is written into the file, within a while, once the one that is there is gone and `save` is done.
std::string writtenText(const std::string& path, const std::function<void()>& save) {
    std::filesystem::remove(path);
    save();
    std::string text;
    waitFor(
        [&] {
            std::ifstream file(path, std::ios::binary);
            text.assign(std::istreambuf_iterator<char>(file), {});
            return !text.empty();
        },
        2s);
    return text;
}

/// In visual mode, which other keys leave.
void selectInVim(UserHands& input, std::size_t sample) {
    input.tapKey(KEY_ESC);
    input.type(std::to_string(kFirstLines[sample] + 1) + "G0v" + (sample == 2 ? "j" : "") + "g_");
}

Field vimField(CapturingDesktop& desktop, const std::string& name) {
    Field field = editorField(desktop, name);
    UserHands& input = desktop.input();
    field.select = [&input](std::size_t sample) { selectInVim(input, sample); };
    field.contents = [&desktop, &input] {
        return writtenText(samplePath(desktop), [&input] {
            input.tapKey(KEY_ESC);
            input.type(":w!\n");
        });
    };
    field.undo = [&input] { input.type("u"); };
    return field;
}

RunningProgram openGvim(CapturingDesktop& desktop) {
    const Editor editor{"gvim (GTK 3)", {"gvim", "-f", "-n"}};
    return {startInFront(desktop, editor.commandOn(desktop.session().homeDirectory(), sampleDocument())),
            {vimField(desktop, editor.name)}};
}

std::vector<std::string> inXTerm(const std::vector<std::string>& command) {
    std::vector<std::string> whole{"xterm", "-fn", "fixed", "-u8", "-b", "2", "+sb", "-e"};
    whole.insert(whole.end(), command.begin(), command.end());
    return whole;
}

/// It has a connection to the X server of its own, beside the terminal's.
RunningProgram openVimInXTerm(CapturingDesktop& desktop) {
    const Editor editor{"Vim in xterm", inXTerm({"vim", "-n"})};
    Field field = vimField(desktop, editor.name);
    field.kind = Field::Kind::unwritable;
    return {startInFront(desktop, editor.commandOn(desktop.session().homeDirectory(), sampleDocument())),
            {field}};
}

RunningProgram openNanoInXTerm(CapturingDesktop& desktop) {
    const Editor editor{"nano in xterm", inXTerm({"nano"})};
    Field field = editorField(desktop, editor.name);
    field.kind = Field::Kind::unwritable;
    field.samples = {documentLines()[0], "", documentSamples()[2], ""};
    field.select = [&desktop](std::size_t sample) {
        constexpr std::size_t kTitle = 1;
        dragOverLines(desktop, kTitle + kFirstLines[sample], sample == 2 ? 2 : 1);
    };
    field.contents = [&desktop] {
        return writtenText(samplePath(desktop), [&desktop] {
            desktop.input().chord({KEY_LEFTCTRL, KEY_O});
            desktop.input().tapKey(KEY_ENTER);
        });
    };
    return {startInFront(desktop, editor.commandOn(desktop.session().homeDirectory(), sampleDocument())),
            {field}};
}

/// Saving would be a command between two steps of undo, so it writes its text down again and again by itself.
RunningProgram openEmacs(CapturingDesktop& desktop) {
    const std::string copy = desktop.session().homeDirectory() + "/copy.txt";
    const Editor editor{"Emacs",
                        {"emacs", "--no-splash", "--eval",
                         "(run-with-timer 0.1 0.1 (lambda () (with-current-buffer (window-buffer) "
                         "(write-region nil nil \"" +
                             copy + "\" nil 'quiet))))"}};
    Field field = editorField(desktop, editor.name);
    field.contents = [copy] { return writtenText(copy, [] {}); };
    field.undo = [&desktop] { desktop.input().chord({KEY_LEFTCTRL, KEY_SLASH}); };
    return {startInFront(desktop, editor.commandOn(desktop.session().homeDirectory(), sampleDocument())),
            {field}};
}

/// Of the Athena widgets, which know Latin-1 alone and have no accessibility; Ctrl+V turns the page.
RunningProgram openXedit(CapturingDesktop& desktop) {
    const Editor editor{"xedit (Xaw)", {"xedit", "-xrm", "*editWindow*font: fixed"}};
    Field field = editorField(desktop, editor.name);
    field.kind = Field::Kind::unwritable;
    field.samples = {documentLines()[0], "", "", ""};
    field.select = [&desktop](std::size_t) {
        const auto place = desktop.session().frontPlace();
        constexpr int kTextLeft = 17;
        constexpr int kTextTop = 130;
        UserHands& input = desktop.input();
        letPass(300ms);
        input.movePointer(place.x + kTextLeft, place.y + kTextTop);
        input.pressButton();
        input.movePointer(place.x + kTextLeft + 40, place.y + kTextTop);
        input.movePointer(place.x + 110, place.y + kTextTop);
        input.releaseButton();
    };
    // What has not changed is not saved.
    field.contents = [&desktop] {
        return writtenText(samplePath(desktop), [&desktop] {
            desktop.input().type(" ");
            desktop.input().tapKey(KEY_BACKSPACE);
            desktop.input().chord({KEY_LEFTCTRL, KEY_X});
            desktop.input().chord({KEY_LEFTCTRL, KEY_S});
        });
    };
    return {startInFront(desktop, editor.commandOn(desktop.session().homeDirectory(), sampleDocument())),
            {field}};
}

/// Tk 8.6 hands over a character beyond the Basic Multilingual Plane as two halves of three bytes each.
std::string withWholeCharacters(const std::string& text) {
    const auto byteAt = [&text](std::size_t index) {
        return index < text.size() ? static_cast<unsigned char>(text[index]) : 0U;
    };
    std::string whole;
    for (std::size_t index = 0; index < text.size(); ++index) {
        const bool isPair = byteAt(index) == 0xEDU && byteAt(index + 1) >= 0xA0U &&
                            byteAt(index + 1) < 0xB0U && byteAt(index + 3) == 0xEDU;
        if (!isPair) {
            whole += text[index];
            continue;
        }
        const unsigned plane = (byteAt(index + 1) & 0x0FU) + 1;
        whole += static_cast<char>(0xF0U | plane >> 2U);
        whole += static_cast<char>(0x80U | (plane & 3U) << 4U | (byteAt(index + 2) >> 2U & 0x0FU));
        whole += static_cast<char>(0x80U | (byteAt(index + 2) & 3U) << 4U | (byteAt(index + 4) & 0x0FU));
        whole += text[index + 5];
        index += 5;
    }
    return whole;
}

RunningProgram openTk(CapturingDesktop& desktop) {
    const Editor editor{"text widget (Tk)", {"wish", MATRIX_SOURCES "/text-widget.tcl"}};
    Field field = editorField(desktop, editor.name);
    field.samples[1].clear();
    // Ctrl+A goes to the start of the line there.
    field.contents = [&desktop] {
        desktop.input().chord({KEY_LEFTCTRL, KEY_SLASH});
        return withWholeCharacters(copiedText(desktop));
    };
    return {startInFront(desktop, editor.commandOn(desktop.session().homeDirectory(), sampleDocument())),
            {field}};
}

/// A picture with a text on it that is being edited; of GTK 2, without accessibility.
RunningProgram openGimp(CapturingDesktop& desktop) {
    const std::string path = desktop.session().homeDirectory() + "/sample.ppm";
    constexpr int kWidth = 600;
    constexpr int kHeight = 400;
    std::ofstream(path, std::ios::binary)
        << "P6 " << kWidth << ' ' << kHeight << " 255\n"
        << std::string(static_cast<std::size_t>(kWidth) * kHeight * 3, '\xFF');
    RunningProgram program{
        openTitled(desktop, {"gimp", "--new-instance", "--no-splash", "--no-data", path}, "[sample]"),
        {editorField(desktop, "GIMP, text tool")}};
    UserHands& input = desktop.input();
    input.tapKey(KEY_T);
    const auto place = desktop.session().frontPlace();
    input.click(place.x + place.width / 2, place.y + place.height / 2);
    desktop.backEnd().pasteboard().clearContents();
    desktop.backEnd().pasteboard().setString(sampleDocument());
    // Keys that come before the click is dealt with belong to the picture.
    letPass(1s);
    input.chord({KEY_LEFTCTRL, KEY_V});
    letPass(1s);
    return program;
}

constexpr const char* kJavaBridge = "/usr/share/java/java-atk-wrapper.jar";

std::function<RunningProgram(CapturingDesktop&)> openSwing(const std::string& name, bool isAccessible) {
    return [=](CapturingDesktop& desktop) {
        Editor editor{name, {"java"}};
        if (isAccessible) {
            editor.command.insert(
                editor.command.end(),
                {"-Djavax.accessibility.assistive_technologies=org.GNOME.Accessibility.AtkWrapper", "-cp",
                 kJavaBridge});
        }
        editor.command.push_back(MATRIX_SOURCES "/TextArea.java");
        return RunningProgram{
            startInFront(desktop, editor.commandOn(desktop.session().homeDirectory(), sampleDocument())),
            {editorField(desktop, name)}};
    };
}

} // namespace

std::vector<ProgramKind> usualEditors() {
    return {editorKind({"KWrite (Qt 5)", {"kwrite"}}, true),
            editorKind({"Kate (Qt 5)", {"kate", "--new", "--block"}}, false),
            editorKind({"gedit (GTK 3)", {"gedit", "--standalone"}}, false),
            editorKind({"pluma (GTK 3)", {"pluma"}}, false),
            editorKind({"Geany (Scintilla)", {"geany", "--new-instance", "--no-session"}}, false),
            editorKind({"L3afpad (GTK 3)", {"l3afpad"}}, false),
            editorKind({"AbiWord (GTK 3)", {"abiword"}}, false)};
}

std::vector<ProgramKind> oddEditors() {
    const std::string bridged = "JTextArea (Swing, accessible)";
    const std::string plain = "JTextArea (Swing)";
    return {{.name = "Emacs", .executable = "emacs", .isLight = true, .open = openEmacs},
            {.name = "gvim (GTK 3)", .executable = "gvim", .isLight = true, .open = openGvim},
            {.name = bridged, .executable = kJavaBridge, .open = openSwing(bridged, true)},
            {.name = plain, .executable = "java", .open = openSwing(plain, false)},
            {.name = "text widget (Tk)", .executable = "wish", .open = openTk},
            {.name = "xedit (Xaw)", .executable = "xedit", .open = openXedit},
            {.name = "GIMP", .executable = "gimp", .open = openGimp},
            {.name = "Vim in xterm", .executable = "gvim", .isLight = true, .open = openVimInXTerm},
            {.name = "nano in xterm", .executable = "nano", .open = openNanoInXTerm}};
}

} // namespace quillmoth::test
