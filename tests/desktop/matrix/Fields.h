#pragma once

#include "tests/desktop/matrix/CapturingDesktop.h"
#include "tests/desktop/support/WaitFor.h"

#include <functional>
#include <string>
#include <vector>

namespace quillmoth::test {

/// What is selected in turn: a plain line, emoji and combining marks, two paragraphs, a line from right to
/// left.
constexpr std::size_t kSampleCount = 4;

/// A field of a running program, and how a user deals with it.
struct Field {
    std::string name;
    /// What the selection of each sample holds; empty where there is no such thing in this field.
    std::vector<std::string> samples;
    std::function<void(std::size_t sample)> select;
    /// In an `unwritable` one an answer must change nothing, and that has to be told.
    enum class Kind { editor, singleLine, readOnly, secret, unwritable } kind = Kind::editor;
    /// All that it holds; without it, what selecting all and copying gives.
    std::function<std::string()> contents = {};
    /// Takes a step back; without it, Ctrl+Z.
    std::function<void()> undo = {};
};

/// A program with its fields; open one at a time.
struct RunningProgram {
    ChildProcess process;
    std::vector<Field> fields;
};

/// A row of the matrix, or several that one program gives.
struct ProgramKind {
    std::string name;
    /// The program that has to be installed.
    std::string executable;
    /// Quick to start, and there after a plain installation.
    bool isLight = false;
    /// Not on an X server.
    bool needsWayland = false;
    std::function<RunningProgram(CapturingDesktop&)> open;
};

/// An editor that opens a file.
struct Editor {
    std::string name;
    /// What the name of the file is added to.
    std::vector<std::string> command;

    /// Puts the text into a file of the home folder; the whole command.
    [[nodiscard]] std::vector<std::string> commandOn(const std::string& home, const std::string& text) const;
};

/// Those that start quickly: a GTK 3, a Qt 5 and a Qt 6 one.
std::vector<Editor> lightEditors();

/// The document that editors show: one paragraph a line.
std::string sampleDocument();

std::vector<ProgramKind> programKinds();

/// The programs of browsers, mail and offices; see programKinds.
std::vector<ProgramKind> webPrograms();
std::vector<ProgramKind> officePrograms();
/// Editors beside the light ones: usual ones, and those that have keys or a toolkit of their own.
std::vector<ProgramKind> usualEditors();
std::vector<ProgramKind> oddEditors();
ProgramKind editorKind(const Editor& editor, bool isLight);

/// An empty folder of the home folder.
std::string freshFolder(CapturingDesktop& desktop, const std::string& name);

/// Starts a program; throws where it does not come to the front.
ChildProcess startInFront(CapturingDesktop& desktop, const std::vector<std::string>& command,
                          std::chrono::seconds limit = std::chrono::seconds(10));
/// Starts a program that takes its time, until a window of this title is in front.
ChildProcess openTitled(CapturingDesktop& desktop, const std::vector<std::string>& command,
                        const std::string& title);

/// What the program copies of its selection.
std::string copiedText(CapturingDesktop& desktop);

/// An editor whose selection is made with the keys that all of them have.
Field editorField(CapturingDesktop& desktop, const std::string& name);
void selectLinesOfSample(UserHands& input, std::size_t sample);
/// Drags over lines of a terminal of the font "fixed" with a border of two pixels, from its top on.
void dragOverLines(CapturingDesktop& desktop, std::size_t first, std::size_t count);
/// Where each sample begins in the document.
constexpr std::size_t kFirstLines[kSampleCount] = {0, 1, 2, 4};

std::vector<std::string> documentSamples();
std::vector<std::string> documentLines();

} // namespace quillmoth::test
