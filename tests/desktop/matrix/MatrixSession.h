#pragma once

#include "Platform/DesktopBackEnd.h"
#include "tests/desktop/support/ChildProcess.h"
#include "tests/desktop/support/DesktopWindows.h"

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

namespace quillmoth::test {

/// The user's hands, on a keyboard with an American layout. Keys are those of linux/input-event-codes.h. Each
/// call returns after the session has taken it.
class UserHands {
public:
    virtual ~UserHands() = default;

    virtual void pressKey(int key) = 0;
    virtual void releaseKey(int key) = 0;
    virtual void movePointer(int x, int y) = 0;
    /// The left one.
    virtual void pressButton() = 0;
    virtual void releaseButton() = 0;

    void tapKey(int key) { chord({key}); }

    /// Presses the keys in order and releases them in the reverse order.
    void chord(std::initializer_list<int> keys);
    void type(std::string_view asciiText);
    void click(int x, int y);
};

/// What a kind of session has to have for the matrix. The environment of this process points there while it
/// lives, and the toolkit runs on it. One at a time.
class MatrixSession {
public:
    virtual ~MatrixSession() = default;

    [[nodiscard]] virtual std::string name() const = 0;
    [[nodiscard]] virtual std::string homeDirectory() const = 0;
    /// What the program would be served by.
    [[nodiscard]] virtual platform::DesktopBackEnd& backEnd() = 0;
    [[nodiscard]] virtual UserHands& hands() = 0;

    /// What every program is started with.
    [[nodiscard]] virtual ChildOptions programOptions() = 0;

    [[nodiscard]] virtual bool isWayland() const { return true; }

    /// Ordinary windows, whatever they show.
    [[nodiscard]] virtual bool hasWindows() = 0;
    /// The title of the one with the focus; none where none has it.
    [[nodiscard]] virtual std::optional<std::string> frontTitle() = 0;
    [[nodiscard]] virtual DesktopRectangle frontPlace() = 0;

    /// What another program would paste.
    [[nodiscard]] virtual std::string onClipboard(const std::string& mediaType) = 0;
    /// A program that has this text, its HTML and a picture on the clipboard until it loses them.
    [[nodiscard]] virtual ChildProcess copyRich(const std::string& text, const std::string& html) = 0;

    /// The panel has the keyboard for a moment, where the application in front has to give it up for that.
    virtual void showPanel() {}

    /// Writes a picture of the screen as PNG.
    virtual void saveScreenshot(const std::string& path) = 0;

    /// Of the kind "x11" or "sway"; the window manager is for the former. Throws std::runtime_error where it
    /// does not come up.
    [[nodiscard]] static std::unique_ptr<MatrixSession> start(const std::string& kind,
                                                              const std::string& windowManager);
};

/// What programs are started with in any session.
ChildOptions commonProgramOptions();

} // namespace quillmoth::test
