#pragma once

#include "tests/desktop/support/FailureScreenshots.h"
#include "tests/desktop/support/VirtualDesktop.h"

#include <QGuiApplication>
#include <gtest/gtest.h>
#include <memory>

namespace quillmoth::test {

/// A desktop with a Qt application of this process on it. One in the life of a process: Qt connects to the X
/// server once.
template<class Application = QGuiApplication>
struct ApplicationDesktop {
    explicit ApplicationDesktop(const VirtualDesktopOptions& options = {}) : desktop(options) {}

    VirtualDesktop desktop;
    int argumentCount = 1;
    char name[5] = "test";
    char* arguments[2] = {name, nullptr};
    Application application{argumentCount, arguments};
};

/// One Session for all tests of a suite, its `desktop` photographed where a test has failed.
template<class Session>
class SessionTest : public testing::Test {
protected:
    static void SetUpTestSuite() { session_ = std::make_unique<Session>(); }

    static void TearDownTestSuite() { session_.reset(); }

    void TearDown() override { keepScreenshotOfFailure(desktop()); }

    static Session& session() { return *session_; }

    static VirtualDesktop& desktop() { return session_->desktop; }

    static DesktopInput& input() { return desktop().input(); }

private:
    static inline std::unique_ptr<Session> session_;
};

} // namespace quillmoth::test
