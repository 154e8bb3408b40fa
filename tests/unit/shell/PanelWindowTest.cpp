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

    /// Of the window, without the release of the button.
    void beginDrag(QPoint from, QPoint by) {
        QWindow* window = panel.surface().windowHandle();
        QTest::mousePress(window, Qt::LeftButton, {}, from);
        QMouseEvent move(QEvent::MouseMove, from + by, panel.surface().pos() + from + by, Qt::NoButton,
                         Qt::LeftButton, {});
        QApplication::sendEvent(window, &move);
    }

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
    const auto drag = [&](QPoint from, QPoint by) {
        beginDrag(from, by);
        QTest::mouseRelease(panel.surface().windowHandle(), Qt::LeftButton, {}, from);
    };
    drag(QPoint(611, 200), QPoint(50, 0));
    EXPECT_EQ(panel.surface().size(), QSize(662, 410));
    drag(QPoint(300, 409), QPoint(0, -400));
    EXPECT_EQ(panel.surface().height(), 290);
    drag(QPoint(60, 45), QPoint(0, 0));
    EXPECT_EQ(panel.surface().pos(), QPoint(20, 20));
}

TEST_F(PanelWindowTest, ItKeepsToTheScreensThereAreAndTheUsersFrameToItself) {
    const QList<QRect> both{QRect(0, 0, 1280, 800), QRect(1280, 0, 1920, 1080)};
    const QRect chosen(2000, 670, 640, 420);
    panel.screens = both;
    panel.surface().setFrame(chosen);
    EXPECT_EQ(panel.surface().geometry(), chosen.translated(0, -10));
    panel.screens = {QRect(0, 0, 400, 250)};
    panel.surface().followScreens();
    EXPECT_EQ(panel.surface().geometry(), panel.screens.front());
    panel.panel().saveFrameUsingName("savedFrame");
    EXPECT_EQ(panel.platform.userDefaults.string("panelFrame savedFrame"), "2000 670 640 420");
    panel.screens = both;
    panel.surface().followScreens();
    EXPECT_EQ(panel.surface().geometry(), chosen.translated(0, -10)) << "the screen is back";

    panel.model->_command = std::string(40, '\n');
    panel.settle();
    EXPECT_EQ(panel.surface().geometry(), QRect(2000, 1080 - 556, 640, 556)) << "grown";
}

TEST_F(PanelWindowTest, OnASmallScreenItsPartsShareTheRoomThereIs) {
    panel.screens = {QRect(0, 0, 427, 267)};
    panel.surface().followScreens();
    panel.model->_command = std::string(40, '\n');
    panel.model->_responseValue = std::string("openChat");
    panel.settle();
    const QRect all = panel.view->rect();
    EXPECT_EQ(all.size(), QSize(427, 267));
    QRect before = panel.view->commandArea().geometry();
    for (const QWidget* part :
         {static_cast<QWidget*>(&panel.view->listArea()), static_cast<QWidget*>(&panel.view->bottomBar())}) {
        EXPECT_GT(part->y(), before.bottom());
        EXPECT_GE(part->height(), 20);
        before = part->geometry();
    }
    EXPECT_LE(before.bottom(), all.bottom() - 10);
    int items = 0;
    for (const auto* button : panel.view->bottomBar().findChildren<QAbstractButton*>())
        if (button->isVisible()) {
            EXPECT_GE(button->x(), 20) << button->text().toStdString();
            ++items;
        }
    EXPECT_GE(items, 5);

    beginDrag({426, 130}, {-10, 0});
    EXPECT_EQ(panel.surface().size(), all.size()) << "the edge does not jump to the least size";
    QTest::mouseRelease(panel.surface().windowHandle(), Qt::LeftButton, {}, QPoint(416, 130));
}

// Where the toolkit scales, a screen begins at its place in pixels and is as large as its pixels by the
// factor: there is nothing between one and the next.
const QList<QRect> kBeside{QRect(0, 0, 1280, 800), QRect(1280, 0, 1920, 1080)};
const QList<QRect> kBesideTwice{QRect(0, 0, 960, 540), QRect(1920, 0, 960, 540)};
const QList<QRect> kStackedBeforeOrigin{QRect(0, 0, 1280, 720), QRect(-300, -1080, 1280, 720)};
const QList<QRect> kSmallThrice{QRect(0, 0, 427, 267), QRect(1280, -100, 640, 360)};

TEST(PanelGeometryTest, AFrameIsBroughtBackOntoOneScreen) {
    const std::vector<std::tuple<QList<QRect>, QRect, QRect>> cases{
        {kBeside, QRect(100, 100, 612, 410), QRect(100, 100, 612, 410)},
        {kBeside, QRect(5000, 100, 612, 410), QRect(668, 100, 612, 410)},
        {kBeside, QRect(-300, -50, 612, 410), QRect(0, 0, 612, 410)},
        {kBeside, QRect(1200, 600, 612, 410), QRect(1280, 600, 612, 410)},
        {kBeside, QRect(0, 0, 4000, 3000), QRect(1280, 0, 1920, 1080)},
        {kBesideTwice, QRect(1400, 100, 612, 410), QRect(1920, 100, 612, 410)},
        {kBesideTwice, QRect(700, 300, 612, 410), QRect(348, 130, 612, 410)},
        {kStackedBeforeOrigin, QRect(-250, -1000, 612, 410), QRect(-250, -1000, 612, 410)},
        {kStackedBeforeOrigin, QRect(100, -100, 612, 410), QRect(100, 0, 612, 410)},
        {kStackedBeforeOrigin, QRect(-2000, -1000, 612, 410), QRect(0, 0, 612, 410)},
        {kSmallThrice, QRect(10, 10, 612, 410), QRect(0, 0, 427, 267)},
        {kSmallThrice, QRect(1300, 200, 400, 200), QRect(1300, -30, 520, 290)},
        {{}, QRect(7, 8, 400, 410), QRect(7, 8, 520, 410)},
    };
    for (const auto& [screens, frame, expected] : cases)
        EXPECT_EQ(broughtBack(frame, {520, 290}, screens), expected) << writeFrame(frame);
    EXPECT_EQ(broughtBack({100, 350, 612, 410}, {520, 556}, kBeside), QRect(100, 244, 612, 556));
}

TEST(PanelGeometryTest, AFirstFrameIsInTheMiddleOfTheScreenWithThePointer) {
    const QSize size(612, 410);
    EXPECT_EQ(centered(size, {1280, 5}, kBeside).center(), kBeside[1].center());
    EXPECT_EQ(centered(size, {2879, 5}, kBesideTwice).center(), kBesideTwice[1].center());
    EXPECT_EQ(centered(size, {1000, 0}, kBesideTwice).center(), kBesideTwice[0].center());
    EXPECT_EQ(centered(size, {-300, -361}, kStackedBeforeOrigin), QRect(34, -924, 612, 410));
}

TEST(PanelGeometryTest, ADraggedPanelStaysUnderThePointerFromScreenToScreen) {
    const QSize size(612, 410);
    const QList<ScaledScreen> equal{{{0, 0, 1024, 800}, 1.25}, {{1280, 0, 1024, 800}, 1.25}};
    const QList<ScaledScreen> mixed{{{0, 0, 1280, 1000}, 1}, {{1280, 0, 640, 500}, 2}};
    EXPECT_EQ(heldAt({61, 8}, {1380, 100}, size, equal), QPoint(1319, 92));
    EXPECT_EQ(heldAt({61, 8}, {1023, 100}, size, equal), QPoint(1218, 92)) << "its middle is on the right";
    EXPECT_EQ(heldAt({551, 8}, {1281, 100}, size, equal), QPoint(474, 92)) << "its middle is on the left";
    EXPECT_EQ(heldAt({61, 8}, {1200, 100}, size, mixed), QPoint(1179, 42));
    EXPECT_EQ(heldAt({551, 8}, {1380, 100}, size, mixed), QPoint(929, 192));
    EXPECT_EQ(heldAt({61, 8}, {-50, 900}, size, mixed), QPoint(-111, 892));
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
