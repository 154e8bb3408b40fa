#pragma once

#include "Platform/Fake/FakePlatform.h"
#include "Platform/Linux/AtSpi/AtSpiAccessibility.h"
#include "Platform/Linux/X11/Selection/X11Pasteboard.h"
#include "Platform/Linux/X11/X11BackEnd.h"
#include "Platform/Qt/QtMainQueue.h"
#include "Quillmoth/Assistant/DataModel.h"
#include "tests/desktop/support/VirtualDesktop.h"

#include <memory>
#include <string>

class QGuiApplication;

namespace quillmoth::test {

/// A virtual desktop on which the program's model captures and writes back through the real back ends.
/// Whatever has nothing to do with that is in memory.
class CapturingDesktop {
public:
    explicit CapturingDesktop(const std::string& windowManager);
    ~CapturingDesktop();
    CapturingDesktop(const CapturingDesktop&) = delete;
    CapturingDesktop& operator=(const CapturingDesktop&) = delete;

    VirtualDesktop& desktop() { return desktop_; }

    DesktopInput& input() { return desktop_.input(); }

    DataModel& model() { return *model_; }

    platform::AtSpiAccessibility& accessibility() { return *accessibility_; }

    platform::X11Pasteboard& pasteboard() { return *pasteboard_; }

    platform::FakePlatform& fakes() { return *fakes_; }

    [[nodiscard]] std::optional<std::int64_t> frontProcess();

    /// Where the focus is, as the error of asking.
    [[nodiscard]] platform::AXError focusError();

    /// Captures, with the copy where `byCopy`, and gives the text; empty where there is none.
    std::string capture(bool byCopy = false);

    /// How the latest capture and the latest write-back came about: "" is the plain way.
    std::string captureWay;
    std::string writeWay;

    void replaceSelection(const std::string& text);

    /// Has the front application paste the text; see X11Pasteboard.
    bool paste(const std::string& text, std::int64_t process, std::chrono::steady_clock::time_point deadline);

private:
    platform::AtSpiHooks hooks();

    VirtualDesktop desktop_;
    std::unique_ptr<QGuiApplication> application_;
    std::unique_ptr<platform::FakePlatform> fakes_;
    std::unique_ptr<platform::X11BackEnd> x11_;
    std::unique_ptr<platform::QtMainQueue> mainQueue_;
    std::unique_ptr<platform::X11Pasteboard> pasteboard_;
    std::unique_ptr<platform::AtSpiAccessibility> accessibility_;
    std::shared_ptr<DataModel> model_;
};

} // namespace quillmoth::test
