#include "Platform/Linux/Desktop/SessionDisplay.h"
#include "tests/integration/ScopedVariable.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace quillmoth::platform {

TEST(SessionDisplay, OneThatCannotBeUsedIsNamedWithWhatToDo) {
    const test::TemporaryFolder folder;
    std::filesystem::create_directories(folder.path("plugins/platforms"));
    test::setContent(folder.path("plugins/platforms/libqwayland-generic.so"), "");
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    folder.path("wayland-7").copy(address.sun_path, sizeof address.sun_path - 1);
    const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(listen(listener, 8), 0);
    const test::ScopedVariable runtime("XDG_RUNTIME_DIR", folder.path());
    const test::ScopedVariable type("XDG_SESSION_TYPE", "");

    // What is chosen, of X11, of Wayland, the plugins, and what comes of it.
    const std::array<const char*, 5> cases[] = {
        {"", "", "", "plugins", "neither DISPLAY nor WAYLAND_DISPLAY is set; start"},
        {"", ":60987", "", "plugins", "the X server \":60987\" does not answer; check DISPLAY"},
        {"", "nonsense", "", "plugins", "the X server \"nonsense\" does not answer"},
        {"", "", "wayland-7", "plugins", "wayland"},
        {"", ":60987", "wayland-7", "plugins", "wayland"},
        {"", "", "wayland-7", "nothing", "Qt lacks its plugin; install the package qt6-wayland"},
        {"", "", "wayland-8", "plugins", "\"wayland-8\" does not answer; check WAYLAND_DISPLAY"},
        {"", ":60987", "wayland-7", "nothing", "or xwayland for an X server beside it; and the X server"},
        {"", ":1", "wayland-7", "plugins", "wayland"},
        {"", ":1", "wayland-7", "nothing", "xcb"},
        {"", ":1", "wayland-8", "plugins", "xcb"},
        {"offscreen", "", "", "plugins", "offscreen"},
        {"xcb", "", "wayland-7", "plugins", "the X server \"\" does not answer"},
        {"wayland-egl;xcb", "", "wayland-7", "plugins", "wayland-egl;xcb"},
    };
    for (const auto& [chosen, x11, wayland, plugins, outcome] : cases) {
        const test::ScopedVariable chosenVariable("QT_QPA_PLATFORM", chosen);
        const test::ScopedVariable x11Variable("DISPLAY", x11);
        const test::ScopedVariable waylandVariable("WAYLAND_DISPLAY", wayland);
        const auto display =
            findSessionDisplay({folder.path(plugins)}, [x11 = std::string(x11)] { return x11 == ":1"; });
        const std::string told = display ? *display : "error: " + display.error().description;
        EXPECT_NE(told.find(outcome), std::string::npos) << told;
        EXPECT_EQ(static_cast<bool>(display), told == outcome) << told;
    }
    const test::ScopedVariable ofX11("XDG_SESSION_TYPE", "x11");
    const test::ScopedVariable x11("DISPLAY", ":1");
    const test::ScopedVariable nested("WAYLAND_DISPLAY", "wayland-7");
    const test::ScopedVariable chosen("QT_QPA_PLATFORM", "");
    EXPECT_EQ(*findSessionDisplay({folder.path("plugins")}, [] { return true; }), "xcb");
    close(listener);
}

} // namespace quillmoth::platform
