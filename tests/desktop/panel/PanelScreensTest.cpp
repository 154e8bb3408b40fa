// The panel on a desktop of two monitors, one of which may go, and at the scales that users set.

#include "tests/desktop/support/ProgramTest.h"

#include <linux/input-event-codes.h>

#include <cstdlib>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;

constexpr DesktopRectangle kUpper{0, 0, 1260, 810};
constexpr DesktopRectangle kLower{100, 810, 1080, 720};

/// Of whoever changes monitors: the program is told by the server.
void changeMonitors(const std::vector<std::string>& arguments) {
    std::vector<std::string> command{"xrandr"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    const ChildResult result = runChild(command, 5s);
    EXPECT_EQ(result.exitCode, 0) << result.output;
}

void addMonitor(const std::string& name, const DesktopRectangle& place, const std::string& output) {
    const auto length = [](int pixels) {
        return std::to_string(pixels) + '/' + std::to_string(pixels * 254 / 960);
    };
    changeMonitors({"--setmonitor", name,
                    length(place.width) + 'x' + length(place.height) + '+' + std::to_string(place.x) + '+' +
                        std::to_string(place.y),
                    output});
}

bool isWithin(const DesktopRectangle& inner, const DesktopRectangle& outer) {
    return inner.x >= outer.x && inner.y >= outer.y && inner.x + inner.width <= outer.x + outer.width &&
           inner.y + inner.height <= outer.y + outer.height;
}

bool isCenteredOn(const DesktopRectangle& inner, const DesktopRectangle& outer, int tolerance) {
    return std::abs(2 * inner.x + inner.width - 2 * outer.x - outer.width) <= 2 * tolerance &&
           std::abs(2 * inner.y + inner.height - 2 * outer.y - outer.height) <= 2 * tolerance;
}

class PanelScreens : public ProgramTest {
protected:
    static void SetUpTestSuite() {
        if (!startSession(kLower.y + kLower.height))
            return;
        addMonitor("upper", kUpper, "screen");
        addMonitor("lower", kLower, "none");
    }

    void TearDown() override {
        ProgramTest::TearDown();
        session().beginAnew();
    }

    static DesktopRectangle frame() { return windows().geometry(session().panelWindow()); }

    static std::string seen() {
        const auto [x, y, width, height] = frame();
        return "the panel at " + std::to_string(x) + ", " + std::to_string(y) + ", " + std::to_string(width) +
               " by " + std::to_string(height);
    }

    /// With nothing kept of where it was before. The panel shows first where the pointer is.
    static void startPointingAt(const DesktopRectangle& place,
                                const ProgramSession::Environment& environment) {
        pointAt(place);
        session().start({}, environment);
        awaitHotKey();
        openPanel();
        closeByEscape();
    }

    static void closeByEscape() {
        input().tapKey(KEY_ESC);
        EXPECT_TRUE(closes());
    }

    static void expectToTakeKeys() {
        input().type("k");
        EXPECT_TRUE(soon([] { return command() == "k"; })) << command();
        input().tapKey(KEY_BACKSPACE);
        EXPECT_TRUE(soon([] { return command().empty(); })) << command();
    }
};

TEST_F(PanelScreens, ItIsWhereItWasPutUntilThatMonitorGoesAndAgainWhenItIsBack) {
    startPointingAt(kLower, {});
    pointAt(kUpper);
    openPanel();
    EXPECT_TRUE(isCenteredOn(frame(), kLower, 1)) << seen();

    const DesktopRectangle first = frame();
    // By the padding above the field.
    drag(first.x + 300, first.y + 6, kLower.x + kLower.width - first.x - first.width, 90);
    const auto put = [&] {
        return frame().x + frame().width == kLower.x + kLower.width && frame().y == first.y + 90;
    };
    EXPECT_TRUE(soon(put)) << seen();
    closeByEscape();
    openPanel();
    EXPECT_TRUE(put()) << seen();
    closeByEscape();

    changeMonitors({"--delmonitor", "lower"});
    eventually("hidden, it is brought to the monitor that is left", [] {
        openPanel();
        const bool isBack = isWithin(frame(), kUpper);
        if (!isBack)
            closeByEscape();
        return isBack;
    });
    expectToTakeKeys();

    addMonitor("lower", kLower, "none");
    EXPECT_TRUE(soon(put)) << seen();
    changeMonitors({"--delmonitor", "lower"});
    EXPECT_TRUE(soon([] { return isWithin(frame(), kUpper); })) << seen();
    expectToTakeKeys();
    closeByEscape();
    addMonitor("lower", kLower, "none");
}

struct Scale {
    const char* name;
    double factor;
    double upperFactor;
    ProgramSession::Environment environment;
    /// What the desktop's settings say of the dots on an inch, for all programs.
    int dotsPerInch = 96;
};

class PanelScales : public PanelScreens, public testing::WithParamInterface<Scale> {
protected:
    static void setDotsPerInch(int dots) {
        runChild({"xrdb", "-nocpp", "-merge"}, 5s, {.input = "Xft.dpi: " + std::to_string(dots) + "\n"});
    }

    void TearDown() override {
        PanelScreens::TearDown();
        setDotsPerInch(96);
    }

    /// Without a compositor the window is cut to the panel's outline.
    static bool isShownToItsCorner(double factor) {
        const auto [x, y, width, height] = frame();
        const int inset = static_cast<int>(5 * factor);
        return hasColor({x + width - inset, y + height - inset, 1, 1}, 0x1C1C21);
    }
};

TEST_P(PanelScales, ItFitsTheMonitorAndAnswersThePointer) {
    const auto& [name, factor, upperFactor, environment, dots] = GetParam();
    setDotsPerInch(dots);
    startPointingAt(kLower, environment);
    openPanel();
    const DesktopRectangle first = frame();
    EXPECT_EQ(first.width, std::min<int>(612 * factor, kLower.width));
    EXPECT_TRUE(isWithin(first, kLower)) << seen();
    EXPECT_TRUE(isCenteredOn(first, kLower, static_cast<int>(factor))) << seen();
    EXPECT_TRUE(soon([&] { return isShownToItsCorner(factor); }));

    const int middle = first.x + first.width / 2;
    const int paddingAbove = static_cast<int>(6 * factor);
    input().click(middle, first.y + 4 * paddingAbove);
    expectToTakeKeys();
    input().movePointer(middle, first.y + paddingAbove);
    input().pressButton(1);
    for (int step = 1; step <= 8; ++step)
        input().movePointer(middle - 10 * step, first.y + paddingAbove - 80 * step);
    EXPECT_TRUE(soon([&] {
        const auto [x, y, width, height] = frame();
        return std::abs(x + width / 2 - middle + 80) <= factor + 1 &&
               std::abs(y + 6 * upperFactor - first.y - paddingAbove + 640) <= factor + 1;
    })) << seen();
    EXPECT_TRUE(soon([&] { return isShownToItsCorner(upperFactor); }));
    input().releaseButton(1);

    for (int line = 0; line < 12; ++line)
        input().chord({KEY_LEFTSHIFT, KEY_ENTER});
    EXPECT_TRUE(soon([] { return command().size() == 12; }));
    EXPECT_TRUE(soon([] { return isWithin(frame(), kUpper); })) << seen();
    EXPECT_TRUE(soon([&] { return isShownToItsCorner(upperFactor); }));
    input().click(kLower.x + 5, kLower.y + kLower.height - 5);
    EXPECT_TRUE(closes());
}

INSTANTIATE_TEST_SUITE_P(
    , PanelScales,
    testing::Values(Scale{"Once", 1, 1, {}}, Scale{"OnceAndAHalf", 1.5, 1.5, {}, 144},
                    Scale{"TwiceBelow", 2, 1, {{"QT_SCREEN_SCALE_FACTORS", "upper=1;lower=2"}}},
                    Scale{"TwiceAbove", 1, 2, {{"QT_SCREEN_SCALE_FACTORS", "upper=2;lower=1"}}},
                    Scale{"Thrice", 3, 3, {{"QT_SCALE_FACTOR", "3"}}}),
    [](const auto& info) { return info.param.name; });

} // namespace

} // namespace quillmoth::test
