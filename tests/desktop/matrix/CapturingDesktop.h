#pragma once

#include "Platform/Fake/FakePlatform.h"
#include "Platform/Linux/AtSpi/AtSpiAccessibility.h"
#include "Platform/Qt/QtMainQueue.h"
#include "Platform/Qt/QtWorkspace.h"
#include "Quillmoth/Assistant/DataModel.h"
#include "tests/desktop/matrix/X11MatrixSession.h"

namespace quillmoth::test {

/// A session in which the program's model captures and writes back through the real back ends. Whatever has
/// nothing to do with that is in memory.
class CapturingDesktop {
public:
    explicit CapturingDesktop(std::unique_ptr<MatrixSession> matrixSession);

    MatrixSession& session() { return *session_; }

    UserHands& input() { return session_->hands(); }

    platform::DesktopBackEnd& backEnd() { return session_->backEnd(); }

    [[nodiscard]] std::optional<std::int64_t> frontProcess() { return backEnd().frontProcess(); }

    /// What has the focus, or the error of asking.
    platform::AXError copyFocused(platform::AXUIElementRef& element);
    [[nodiscard]] platform::AXError focusError();

    /// Captures, with the copy where `byCopy`, and gives the text; empty where there is none.
    std::string capture(bool byCopy = false);

    /// What is told of it. `behindPanel` has the panel open and close before, as it does in the program.
    WriteResult replaceSelection(const std::string& text, bool behindPanel = false);

    /// How the latest capture and the latest write-back came about: "" is the plain way.
    std::string captureWay;
    std::string writeWay;
    /// Otherwise a field's text is changed in place.
    bool mayPaste = true;

private:
    std::unique_ptr<MatrixSession> session_;
    std::chrono::steady_clock::time_point focusComesBackBy_;

public:
    platform::FakePlatform fakes;
    platform::QtMainQueue mainQueue;
    platform::AtSpiAccessibility accessibility;
    platform::QtWorkspace workspace;
    std::shared_ptr<DataModel> model;

private:
    platform::AtSpiHooks hooks();
    platform::QtWorkspace::Front front();
    std::optional<std::string> primarySelection();
    platform::DesktopBackEnd::OtherFocus otherFocus();
};

/// The same, on an X server of its own.
class X11CapturingDesktop final : public CapturingDesktop {
public:
    X11CapturingDesktop() : X11CapturingDesktop(std::make_unique<X11MatrixSession>("openbox")) {}

private:
    explicit X11CapturingDesktop(std::unique_ptr<X11MatrixSession> matrixSession)
        : CapturingDesktop(std::move(matrixSession)) {}

public:
    VirtualDesktop& desktop = static_cast<X11MatrixSession&>(session()).desktop();
};

} // namespace quillmoth::test
