#pragma once

#include "Platform/Linux/X11/X11BackEnd.h"
#include "tests/desktop/support/FailureScreenshots.h"
#include "tests/desktop/support/VirtualDesktop.h"

#include <QGuiApplication>
#include <gtest/gtest.h>
#include <memory>

namespace quillmoth::test {

/// A desktop with the toolkit and the X11 back end on it, one for all tests of a suite.
class X11Session : public testing::Test {
protected:
    static void SetUpTestSuite() {
        static int argumentCount = 1;
        static char name[] = "test";
        static char* arguments[] = {name, nullptr};
        desktop_ = std::make_unique<VirtualDesktop>();
        keepScreenshotsOnFailure(desktop_.get());
        application_ = std::make_unique<QGuiApplication>(argumentCount, arguments);
        auto backEnd = platform::X11BackEnd::create();
        ASSERT_TRUE(backEnd) << backEnd.error().description;
        backEnd_ = std::move(*backEnd);
    }

    static void TearDownTestSuite() {
        keepScreenshotsOnFailure(nullptr);
        backEnd_.reset();
        application_.reset();
        desktop_.reset();
    }

    static VirtualDesktop& desktop() { return *desktop_; }

    static DesktopInput& input() { return desktop_->input(); }

    static platform::X11BackEnd& backEnd() { return *backEnd_; }

    /// A terminal that stands in for the application in front.
    static std::unique_ptr<ChildProcess> frontTerminal(const std::string& title,
                                                       const std::string& shellCommand = "sleep 60",
                                                       const std::string& geometry = "60x20+100+100") {
        auto terminal = std::make_unique<ChildProcess>(std::vector<std::string>{
            "xterm", "-T", title, "-geometry", geometry, "-e", "sh", "-c", shellCommand});
        EXPECT_TRUE(holdsWithin(std::chrono::seconds(5), [&] {
            const auto window = desktop().windows().windowTitled(title);
            return window && desktop().windows().activeWindow() == *window;
        })) << terminal->output();
        return terminal;
    }

private:
    static inline std::unique_ptr<VirtualDesktop> desktop_;
    static inline std::unique_ptr<QGuiApplication> application_;
    static inline std::unique_ptr<platform::X11BackEnd> backEnd_;
};

} // namespace quillmoth::test
