#pragma once

#include "tests/desktop/support/ChildProcess.h"
#include "tests/desktop/support/DesktopInput.h"
#include "tests/desktop/support/DesktopWindows.h"
#include "tests/desktop/support/WaitFor.h"

#include <memory>
#include <optional>
#include <string>

struct xcb_connection_t;

namespace quillmoth::test {

struct VirtualDesktopOptions {
    /// Program name; empty for none. The variable QUILLMOTH_WINDOW_MANAGER, where set, wins over a name.
    std::string windowManager = "openbox";
    /// With an accessibility bus that reports itself as enabled.
    bool accessibility = false;
    int height = 800;
};

/// A desktop session of a test's own: an X server without a screen, a session bus, a home, a runtime folder
/// (mode 0700) and a window manager. The environment of this process points there from then on, so make it
/// before a Qt application and before children. One at a time. All of it ends with the object. Throws
/// std::runtime_error where a part does not come up.
class VirtualDesktop {
public:
    explicit VirtualDesktop(VirtualDesktopOptions options = {});
    ~VirtualDesktop();
    VirtualDesktop(const VirtualDesktop&) = delete;
    VirtualDesktop& operator=(const VirtualDesktop&) = delete;

    /// A folder that is removed with the desktop; HOME is in it.
    [[nodiscard]] const std::string& temporaryDirectory() const { return directory_; }

    [[nodiscard]] std::string homeDirectory() const { return directory_ + "/home"; }

    [[nodiscard]] const std::string& windowManager() const { return options_.windowManager; }

    DesktopInput& input() { return *input_; }

    [[nodiscard]] DesktopWindows& windows() const { return *windows_; }

    /// The test's own connection, not the one of the program under test.
    [[nodiscard]] xcb_connection_t* connection() const { return connection_; }

    [[nodiscard]] std::uint32_t rootWindow() const { return rootWindow_; }

    /// Writes a picture of the screen as PNG.
    bool saveScreenshot(const std::string& path) const;

    /// The desktop's switch of accessibility; false where the session bus does not answer.
    static bool setAccessible(bool isAccessible);

    /// Takes the whole keyboard, as a program that locks the screen does; false where another one has it.
    [[nodiscard]] bool grabKeyboard() const;
    void ungrabKeyboard() const;

    /// Starts the window manager of the options, or ends it.
    void startWindowManager();
    void stopWindowManager();

private:
    void makeDirectories();
    void startServer();
    void connect();
    void startBus();
    void startAccessibility();
    void awaitKeymap();
    std::uint32_t showProbe();

    VirtualDesktopOptions options_;
    std::string directory_;
    std::optional<ChildProcess> server_;
    std::optional<ChildProcess> bus_;
    std::optional<ChildProcess> accessibilityBus_;
    std::optional<ChildProcess> manager_;
    xcb_connection_t* connection_ = nullptr;
    std::uint32_t rootWindow_ = 0;
    std::unique_ptr<DesktopInput> input_;
    std::unique_ptr<DesktopWindows> windows_;
};

} // namespace quillmoth::test
