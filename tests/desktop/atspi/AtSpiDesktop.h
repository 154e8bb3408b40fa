#pragma once

#include "Platform/Linux/AtSpi/AtSpiAccessibility.h"
#include "tests/desktop/support/VirtualDesktop.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace quillmoth::test {

/// How to open a file in an application.
struct EditorKind {
    std::string name;
    std::vector<std::string> command;
};

/// A GTK 3, a Qt 5 and a Qt 6 editor.
std::vector<EditorKind> editorKinds();

/// One desktop for all tests of a suite, and the back end under test, which reads what is in front there.
class AtSpiDesktop : public ::testing::Test {
public:
    static void SetUpTestSuite();
    static void TearDownTestSuite();

protected:
    static VirtualDesktop& desktop() { return *desktop_; }

    static platform::AtSpiAccessibility& accessibility() { return *accessibility_; }

    static std::optional<std::int64_t> frontProcess();

    /// Starts an editor on a file that holds `text` and waits until the back end reads it there.
    static ChildProcess openEditor(const EditorKind& kind, const std::string& text);
    /// A window with a field; see FieldWindow.cpp.
    static ChildProcess openField(const std::string& kind, const std::string& text);

    /// The focused element of the front application; null, with the test failed, where there is none.
    static platform::AXUIElementRef focused();
    static platform::AXError read(const platform::AXUIElementRef& element, std::string_view attribute,
                                  platform::AXValue& value);
    /// What the whole road of a capture gives; the error in words where it gives none.
    static std::string capturedText();
    /// The selected text once it is `expected`, or what it is after a while.
    static std::string capturedTextOnce(const std::string& expected);

    /// What another process reads there: "--text", "--selection" or "--range".
    static std::string probed(const ChildProcess& application, const std::string& what);
    /// The same, read again where it is not `expected`: on a busy machine a reader may give up early.
    static std::string probedOnce(const ChildProcess& application, const std::string& what,
                                  const std::string& expected);

    /// Puts the text of the program in place of the selection, as the model does it.
    static platform::AXError replaceSelection(const std::string& text);

    /// Whether the front application is the given one.
    static bool isInFront(const ChildProcess& application);

private:
    static std::optional<ChildProcess> tryToOpen(const std::vector<std::string>& command,
                                                 const std::string& text, bool readsText);

    static std::unique_ptr<VirtualDesktop> desktop_;
    static std::unique_ptr<platform::AtSpiAccessibility> accessibility_;
    /// Why the application that was started last cannot be used yet.
    static std::string lastSeen_;
};

} // namespace quillmoth::test
