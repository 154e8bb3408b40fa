#include "Quillmoth/Shell/Panel/PanelGeometry.h"
#include "tests/unit/shell/PanelFixture.h"

#include <QTest>

#include <gtest/gtest.h>

namespace quillmoth {
namespace {

using Turn = platform::PanelFocus::Turn;

class PanelWindowTest : public testing::Test {
protected:
    PanelWindowTest() : panel({makePreset("💡", "Ideas", "p", "nonContext")}) { panel.open(); }

    const std::vector<std::string>& focusCalls() { return panel.platform.panelFocus.calls; }

    PanelUnderTest panel;
};

TEST_F(PanelWindowTest, ShowingTakesTheKeyboardAndClosingGivesItBackFirst) {
    EXPECT_TRUE(panel.surface().isVisible());
    EXPECT_TRUE(panel.platform.panelFocus.isHeldNow);
    panel.panel().close();
    EXPECT_EQ(focusCalls().back(), "release");
    EXPECT_FALSE(panel.surface().isVisible());
    const std::size_t calls = focusCalls().size();
    panel.panel().close();
    EXPECT_EQ(focusCalls().size(), calls);
}

TEST_F(PanelWindowTest, TurningElsewhereClosesUnlessPinned) {
    const auto dims = [&] { return panel.view->commandArea().graphicsEffect() != nullptr; };
    EXPECT_FALSE(dims());
    for (const Turn turn : {Turn::idle, Turn::pressedElsewhere}) {
        panel.panel().isOntop = turn != Turn::idle;
        panel.platform.panelFocus.turn(turn);
        EXPECT_TRUE(panel.surface().isVisible());
        EXPECT_FALSE(panel.surface().isActive());
        EXPECT_TRUE(dims());
    }
    QTest::mouseClick(panel.surface().windowHandle(), Qt::LeftButton, {}, QPoint(300, 300));
    EXPECT_TRUE(panel.surface().isActive() && !dims());
    EXPECT_TRUE(panel.platform.panelFocus.isHeldNow);

    panel.panel().isOntop = false;
    panel.platform.panelFocus.turn(Turn::activatedElsewhere);
    EXPECT_FALSE(panel.surface().isVisible());
    EXPECT_FALSE(panel.panel().isOpen);
}

TEST_F(PanelWindowTest, TheFrameIsKeptUnderItsName) {
    auto& defaults = panel.platform.userDefaults;
    EXPECT_EQ(panel.surface().size(), QSize(612, 410));
    defaults.set("NSWindow Frame savedFrame", std::string("30 40 620 415"));
    panel.panel().setFrameUsingName("savedFrame");
    EXPECT_EQ(panel.surface().geometry(), QRect(30, 40, 620, 415)) << "an earlier version's";
    panel.surface().setFrame(QRect(40, 50, 640, 420));
    panel.panel().saveFrameUsingName("savedFrame");
    EXPECT_EQ(defaults.string("panelFrame savedFrame"), "40 50 640 420");
    EXPECT_EQ(defaults.object("NSWindow Frame savedFrame"), std::nullopt);
    panel.surface().setFrame(QRect(0, 0, 612, 410));
    panel.panel().setFrameUsingName("savedFrame");
    EXPECT_EQ(panel.surface().geometry(), QRect(40, 50, 640, 420));
}

TEST_F(PanelWindowTest, DraggingAnEmptyPartMovesAndAnEdgeResizes) {
    panel.surface().setFrame(QRect(20, 20, 612, 410));
    QWindow* window = panel.surface().windowHandle();
    const auto drag = [&](QPoint from, QPoint by) {
        QTest::mousePress(window, Qt::LeftButton, {}, from);
        QMouseEvent move(QEvent::MouseMove, from + by, panel.surface().pos() + from + by, Qt::NoButton,
                         Qt::LeftButton, {});
        QApplication::sendEvent(window, &move);
        QTest::mouseRelease(window, Qt::LeftButton, {}, from);
    };
    drag(QPoint(611, 200), QPoint(50, 0));
    EXPECT_EQ(panel.surface().size(), QSize(662, 410));
    drag(QPoint(300, 409), QPoint(0, -400));
    EXPECT_EQ(panel.surface().height(), 290);
    drag(QPoint(60, 45), QPoint(0, 0));
    EXPECT_EQ(panel.surface().pos(), QPoint(20, 20));
}

TEST(PanelGeometryTest, AFrameOnNoScreenIsBroughtBack) {
    struct Case {
        QRect frame;
        QRect expected;
    };

    const QList<QRect> screens{QRect(0, 0, 1280, 800), QRect(1280, 0, 1920, 1080)};
    const std::vector<Case> cases{
        {QRect(100, 100, 612, 410), QRect(100, 100, 612, 410)},
        {QRect(5000, 100, 612, 410), QRect(668, 100, 612, 410)},
        {QRect(-300, -50, 612, 410), QRect(0, 0, 612, 410)},
        {QRect(1200, 600, 612, 410), QRect(1280, 600, 612, 410)},
        {QRect(0, 0, 4000, 3000), QRect(1280, 0, 1920, 1080)},
    };
    for (const Case& each : cases)
        EXPECT_EQ(broughtBack(each.frame, screens), each.expected) << writeFrame(each.frame);
}

TEST(PanelGeometryTest, WhatIsNoFrameIsNotRead) {
    for (const char* text : {"", "1 2 3", "a b c d", "0 0 0 100", "0 0 -5 100"})
        EXPECT_FALSE(readFrame(text)) << text;
    EXPECT_EQ(readFrame("-10 20 612 410"), QRect(-10, 20, 612, 410));
}

TEST(PanelGeometryTest, EdgesAreThreePixelsAndCornersTwelve) {
    const QSize size(600, 400);
    EXPECT_EQ(edgesAt({300, 200}, size), Qt::Edges());
    EXPECT_EQ(edgesAt({2, 200}, size), Qt::Edges(Qt::LeftEdge));
    EXPECT_EQ(edgesAt({3, 200}, size), Qt::Edges());
    EXPECT_EQ(edgesAt({11, 11}, size), Qt::LeftEdge | Qt::TopEdge);
    EXPECT_EQ(edgesAt({590, 398}, size), Qt::RightEdge | Qt::BottomEdge);
    const QRect frame(0, 0, 600, 400);
    EXPECT_EQ(resized(frame, Qt::LeftEdge, {500, 0}, {520, 290}), QRect(80, 0, 520, 400));
    EXPECT_EQ(resized(frame, Qt::TopEdge | Qt::RightEdge, {-500, 500}, {520, 290}), QRect(0, 110, 520, 290));
    EXPECT_EQ(resized(frame, Qt::BottomEdge | Qt::LeftEdge, {-7, 9}, {520, 290}), QRect(-7, 0, 607, 409));
    EXPECT_EQ(resized(frame, Qt::TopEdge | Qt::BottomEdge, {9, 0}, {520, 290}), frame);
}

TEST(PanelGeometryTest, TheMaskFollowsTheCircle) {
    EXPECT_EQ(cornerSteps(10), QList<int>({7, 5, 3, 2, 2, 1, 1, 0, 0, 0}));
    const QRegion mask = panelMask({100, 60}, 10);
    EXPECT_FALSE(mask.contains(QPoint(6, 0)));
    EXPECT_TRUE(mask.contains(QPoint(7, 0)));
    EXPECT_TRUE(mask.contains(QPoint(92, 59)));
    EXPECT_FALSE(mask.contains(QPoint(93, 59)));
}

} // namespace
} // namespace quillmoth
