#include "Foundation/Log.h"
#include "Platform/Qt/QtPasteboard.h"
#include "Platform/Linux/Tray/QtStatusItems.h"
#include "tests/desktop/support/VirtualDesktop.h"

#include <QApplication>
#include <QWidget>
#include <algorithm>
#include <gtest/gtest.h>

namespace quillmoth::platform {

namespace {

using namespace std::chrono_literals;
using test::ChildProcess;
using test::holdsWithin;

/// One desktop and one application for the whole program: Qt connects to the X server once.
struct Session {
    test::VirtualDesktop desktop;
    int count = 1;
    char name[5] = "test";
    char* arguments[2] = {name, nullptr};
    QApplication application{count, arguments};
};

class TrayAndClipboard : public testing::Test {
protected:
    static void SetUpTestSuite() { session_ = std::make_unique<Session>(); }

    static void TearDownTestSuite() { session_.reset(); }

    /// What another application would paste.
    static std::string pasted() {
        ChildProcess reader({"xclip", "-selection", "clipboard", "-o"});
        EXPECT_TRUE(holdsWithin(5s, [&] { return !reader.isRunning(); }));
        return reader.output();
    }

    static inline std::unique_ptr<Session> session_;
};

} // namespace

TEST_F(TrayAndClipboard, TextTravelsBothWaysAndClearingTakesItAway) {
    QtPasteboard pasteboard;
    pasteboard.setString("Gr\u00fc\u00dfe \U0001F600\n");
    EXPECT_EQ(pasteboard.string(), "Gr\u00fc\u00dfe \U0001F600\n");
    EXPECT_EQ(pasted(), "Gr\u00fc\u00dfe \U0001F600\n");
    const std::string file = session_->desktop.temporaryDirectory() + "/copied";
    const std::string copy = "printf other > " + file + "; exec xclip -selection clipboard -i -quiet " + file;
    ChildProcess other({"sh", "-c", copy + " >/dev/null 2>&1"});
    EXPECT_TRUE(holdsWithin(5s, [&] { return pasteboard.string() == "other"; }));
    // No input has reached this program: only the notice of the new owner tells it the server's time.
    pasteboard.clearContents();
    EXPECT_EQ(pasteboard.string(), std::nullopt);
    EXPECT_TRUE(holdsWithin(5s, [&] { return !other.isRunning(); }))
        << "the other one still owns the clipboard";
    pasteboard.setString("mine");
    EXPECT_EQ(pasted(), "mine");
}

TEST_F(TrayAndClipboard, SaysHowToReachTheProgramWithoutATrayAndTakesTheOneThatAppears) {
    std::string logged;
    const ScopedLogCapture capture([&](const std::string& line) { logged += line; });
    QtStatusItems items;
    items.show("wand.and.stars", "Quillmoth", {{"Quit", "q", [] {}}});
    EXPECT_TRUE(holdsWithin(5s, [&] { return logged.find("quillmoth --toggle") != std::string::npos; }));
    const auto embedded = [] {
        const auto widgets = QApplication::topLevelWidgets();
        return std::any_of(widgets.begin(), widgets.end(), [](const QWidget* widget) {
            return widget->inherits("QSystemTrayIconSys") && widget->isVisible();
        });
    };
    EXPECT_FALSE(embedded());
    ChildProcess tray({"trayer", "--edge", "bottom", "--align", "right"});
    EXPECT_TRUE(holdsWithin(10s, embedded)) << tray.output();
}

} // namespace quillmoth::platform
