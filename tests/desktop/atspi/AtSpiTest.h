#pragma once

#include "Quillmoth/Capture/SelectionWriter.h"
#include "tests/desktop/matrix/Fields.h"

#include <linux/input-event-codes.h>

namespace quillmoth::test {

/// The back end under test reads and writes what is in front on one desktop.
class AtSpiTest : public SessionTest<X11CapturingDesktop> {
protected:
    static platform::AtSpiAccessibility& accessibility() { return session().accessibility; }

    static bool isInFront(const ChildProcess& application) {
        return session().frontProcess() == application.processIdentifier();
    }

    /// A back end that has seen nothing so far, with these hooks beside that of the application in front.
    static platform::AtSpiAccessibility newcomer(platform::AtSpiHooks hooks = {});

    /// Starts an editor on a file that holds `text` and waits until the back end reads it there.
    static ChildProcess openEditor(const Editor& editor, const std::string& text);
    /// A window with a field; see FieldWindow.cpp.
    static ChildProcess openField(const std::string& kind, const std::string& text);
    /// Checks each of the editors that start quickly, on the same text.
    static void inEachEditor(const std::string& text,
                             const std::function<void(const ChildProcess& editor)>& check);

    /// The focused element of the front application; null, with the test failed, where there is none.
    static platform::AXUIElementRef focused();
    static platform::AXError read(const platform::AXUIElementRef& element, std::string_view attribute,
                                  platform::AXValue& value);
    static void select(platform::CFRange range);
    /// By the keyboard, until all of the text is what a capture gives.
    static void selectAll(const std::string& text);
    static platform::CFRange selectedRange();

    /// The captured text once it is `expected`, or what it is after a while, with the way it has come.
    static std::string capturedOnce(const std::string& expected);
    /// The whole text, as a screen reader reads it.
    static std::string textOf(const ChildProcess& application);
    static std::string textOnce(const ChildProcess& application, const std::string& expected);

    /// Over the selection, by writing and not by pasting.
    static WriteResult write(const std::string& text);

private:
    static ChildProcess open(const std::vector<std::string>& command, const std::string& text,
                             bool readsText);
};

double millisecondsOf(const std::function<void()>& work);

} // namespace quillmoth::test
