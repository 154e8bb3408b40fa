#pragma once

#include "Platform/Fake/FakePlatform.h"
#include "Platform/Linux/AtSpi/AtSpiAccessibility.h"
#include "Platform/Linux/X11/X11SelectionPaste.h"
#include "Platform/Qt/QtMainQueue.h"
#include "Platform/Qt/QtWorkspace.h"
#include "Quillmoth/Assistant/DataModel.h"
#include "tests/desktop/x11/X11Session.h"

namespace quillmoth::test {

/// A virtual desktop on which the program's model captures and writes back through the real back ends.
/// Whatever has nothing to do with that is in memory.
class CapturingDesktop : public X11Desktop {
public:
    explicit CapturingDesktop(const std::string& windowManager = "openbox");

    DesktopInput& input() { return desktop.input(); }

    [[nodiscard]] std::optional<std::int64_t> frontProcess();

    /// What has the focus, or the error of asking.
    platform::AXError copyFocused(platform::AXUIElementRef& element);
    [[nodiscard]] platform::AXError focusError();

    /// Captures, with the copy where `byCopy`, and gives the text; empty where there is none.
    std::string capture(bool byCopy = false);

    /// What is told of it.
    WriteResult replaceSelection(const std::string& text);

    /// How the latest capture and the latest write-back came about: "" is the plain way.
    std::string captureWay;
    std::string writeWay;
    /// Otherwise a field's text is changed in place.
    bool mayPaste = true;

    platform::FakePlatform fakes;
    platform::QtMainQueue mainQueue;
    platform::X11Pasteboard pasteboard;
    platform::AtSpiAccessibility accessibility;
    platform::X11SelectionPaste selectionPaste;
    platform::QtWorkspace workspace;
    std::shared_ptr<DataModel> model;

private:
    platform::AtSpiHooks hooks();
    platform::QtWorkspace::Front front();
    std::optional<std::string> primarySelection();

    bool hasOtherFocus(std::int64_t process) { return accessibility.hasFieldBesideTerminal(process); }
};

} // namespace quillmoth::test
