#include "Foundation/Log.h"
#include "Platform/Linux/Tray/QtStatusItems.h"
#include "tests/desktop/support/SessionTest.h"

#include <QApplication>
#include <QWidget>
#include <algorithm>

namespace quillmoth::platform {

using namespace std::chrono_literals;
using test::ChildProcess;
using test::holdsWithin;

using TrayTest = test::SessionTest<test::ApplicationDesktop<QApplication>>;

TEST_F(TrayTest, SaysHowToReachTheProgramWithoutATrayAndTakesTheOneThatAppears) {
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
