#pragma once

#include "Platform/Linux/X11/X11BackEnd.h"
#include "tests/desktop/support/SessionTest.h"

#include <stdexcept>

namespace quillmoth::test {

/// A desktop with the toolkit and the X11 back end on it.
struct X11Desktop : ApplicationDesktop<> {
    explicit X11Desktop(const VirtualDesktopOptions& options = {}) : ApplicationDesktop(options) {
        auto made = platform::X11BackEnd::create();
        if (!made)
            throw std::runtime_error(made.error().description);
        backEnd = std::move(*made);
    }

    std::unique_ptr<platform::X11BackEnd> backEnd;
};

class X11Session : public SessionTest<X11Desktop> {
protected:
    static platform::X11BackEnd& backEnd() { return *session().backEnd; }

    static void useLayout(const std::string& layouts) {
        ASSERT_EQ(runChild({"setxkbmap", layouts}, std::chrono::seconds(5)).exitCode, 0);
    }

    /// A terminal that stands in for the application in front.
    static ChildProcess frontTerminal(const std::string& title, const std::string& command = "sleep 60") {
        ChildProcess terminal(
            {"xterm", "-T", title, "-geometry", "60x20+100+100", "-e", "sh", "-c", command});
        EXPECT_TRUE(holdsWithin(std::chrono::seconds(5), [&] {
            const auto window = desktop().windows().windowTitled(title);
            return window && desktop().windows().activeWindow() == *window;
        })) << terminal.output();
        return terminal;
    }
};

} // namespace quillmoth::test
