#pragma once

#include "tests/desktop/support/ProgramSession.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct _GDBusConnection;

namespace quillmoth::test {

/// The tests of a session that does not run as root go on as an ordinary user. To be called before anything
/// else.
void becomeOrdinaryUser();

/// A session of GNOME Shell without a screen, with the program, its home and its chat server in it. The
/// environment of this process points there while the object lives. Throws std::runtime_error where it does
/// not come up.
class GnomeDesktop {
public:
    static constexpr int kWidth = 1280;
    static constexpr int kHeight = 800;

    /// With the program's extension, or without it.
    explicit GnomeDesktop(bool hasExtension);
    ~GnomeDesktop();
    GnomeDesktop(const GnomeDesktop&) = delete;
    GnomeDesktop& operator=(const GnomeDesktop&) = delete;

    ProgramSession& program() { return program_; }

    // The user's hands, by linux/input-event-codes.h. Each call returns after the compositor has taken it.
    void pressKey(int key) { sendKey(key, true); }

    void releaseKey(int key) { sendKey(key, false); }

    void tapKey(int key);
    /// The last one while the others are held.
    void chord(const std::vector<int>& keys);
    /// Small letters, digits, spaces, full stops.
    void type(std::string_view text);
    void click(int x, int y, int clicks = 1);
    void drag(int fromX, int fromY, int byX, int byY);

    /// What the shell says to a line of its own language, as JSON.
    std::string evaluate(const std::string& line) const;
    /// The class of the window with the focus; empty for none.
    [[nodiscard]] std::string front() const;
    /// Of the window with that title.
    [[nodiscard]] DesktopRectangle rectangleOf(const std::string& title) const;

    /// What a user would paste. With `isPrimary`, with the middle button.
    [[nodiscard]] static std::string clipboard(bool isPrimary = false, const std::string& type = {});

    /// Writes a picture of the screen as PNG.
    void saveScreenshot(const std::string& path) const;

private:
    using Bus = std::unique_ptr<_GDBusConnection, void (*)(_GDBusConnection*)>;

    void installExtension() const;
    void startShell();
    void startSettingsDaemon();
    void connectHands();
    void sendKey(int key, bool isDown);
    void sendButton(bool isDown);
    void movePointer(int x, int y);
    void hands(const char* method, const std::string& arguments) const;
    std::string call(const char* service, const std::string& path, const char* interface, const char* method,
                     const std::string& arguments) const;

    ProgramSession program_;
    std::string directory_;
    std::optional<ChildProcess> systemBus_;
    std::optional<ChildProcess> shell_;
    std::optional<ChildProcess> settingsDaemon_;
    Bus bus_;
    std::string handsPath_;
};

} // namespace quillmoth::test
