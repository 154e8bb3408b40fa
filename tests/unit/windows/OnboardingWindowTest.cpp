#include "Quillmoth/Shell/Looks/Motion.h"
#include "Quillmoth/Shell/Looks/ThinScrollBar.h"
#include "tests/unit/windows/WindowFixture.h"

#include <QApplication>
#include <QTest>

#include <gtest/gtest.h>

namespace quillmoth {
namespace {

TEST(ThinBar, IsDraggedByItsThumbAndTurnsAPageBesideItButNotFromThePanelsEdge) {
    const int edge = ThinScrollBar::kWidth - 2;
    for (const auto place : {ThinScrollBar::Place::window, ThinScrollBar::Place::panel}) {
        ThinScrollBar bar(place);
        bar.resize(ThinScrollBar::kWidth, 212);
        bar.setExtent(800, 200);
        QTest::mouseClick(&bar, Qt::LeftButton, {}, {5, 190});
        EXPECT_EQ(bar.value(), 200);
        const QPoint thumb = bar.thumb().center().toPoint();
        QTest::mousePress(&bar, Qt::LeftButton, {}, thumb);
        QTest::mouseMove(&bar, thumb + QPoint(0, 50));
        QTest::mouseRelease(&bar, Qt::LeftButton, {}, thumb + QPoint(0, 50));
        EXPECT_EQ(bar.value(), 400) << "50 of the 150 pixels that the thumb can move";
        QTest::mouseClick(&bar, Qt::LeftButton, {}, {edge, 10});
        EXPECT_EQ(bar.value(), place == ThinScrollBar::Place::panel ? 400 : 200);
    }
}

TEST(HoverFade, FollowsThePointer) {
    QWidget control;
    fadeOnHover(control);
    QEvent leave(QEvent::Leave);
    QEnterEvent enter({}, {}, {});
    EXPECT_EQ(hoverShare(control), 0);
    QApplication::sendEvent(&control, &enter);
    EXPECT_EQ(hoverShare(control), 1) << "at once, since it is hidden";
    QApplication::sendEvent(&control, &leave);
    EXPECT_EQ(hoverShare(control), 0);
}

TEST(OnboardingWindowTest, FollowsTheDesktopBetweenLightAndDark) {
    const QPalette former = QApplication::palette();
    ColorScheme desktop;
    OnboardingWindow onboarding(desktop, [] {});
    onboarding.present();
    const bool before = desktop.isDark();
    QApplication::setPalette(QPalette(before ? Qt::white : Qt::black));
    QApplication::processEvents();
    EXPECT_EQ(desktop.isDark(), !before);
    EXPECT_EQ(onboarding.palette().color(QPalette::Window).lightness() < 128, !before);
    EXPECT_EQ(onboarding.view().palette().color(QPalette::Window).lightness() < 128, !before);
    QApplication::setPalette(former);
}

TEST(OnboardingWindowTest, GoesThroughItsPagesAndThenCloses) {
    int finished = 0;
    ColorScheme scheme(false);
    OnboardingWindow onboarding(scheme, [&] { ++finished; });
    onboarding.present();
    onboarding.view().continuePressed();
    EXPECT_EQ(onboarding.view().page(), 2);
    EXPECT_EQ(finished, 0);
    onboarding.view().continuePressed();
    EXPECT_EQ(finished, 1);
    EXPECT_FALSE(onboarding.isVisible());
    onboarding.present();
    EXPECT_EQ(onboarding.view().page(), 1);
}

TEST(OnboardingWindowTest, AsksForAccessibilityBetweenItsPagesAndReturnGivesNothingAway) {
    std::vector<bool> answers;
    bool isOpen = true;
    ColorScheme scheme(false);
    OnboardingWindow onboarding(scheme, [] {},
                                {.isOpen = [&] { return isOpen; },
                                 .programsToRestart = [] { return std::vector<std::string>(); },
                                 .answer = [&](bool agreed) { answers.push_back(agreed); }});
    const auto button = [&](const char* title) { return buttonOf(onboarding, title); };
    onboarding.present();
    onboarding.activateWindow();
    QApplication::processEvents();
    EXPECT_EQ(button("Switch On"), nullptr) << "the welcome comes first, alone";
    QTest::keyClick(&onboarding, Qt::Key_Return);
    ASSERT_NE(button("Switch On"), nullptr);
    EXPECT_EQ(button("Continue"), nullptr);
    EXPECT_EQ(onboarding.focusWidget(), button("Not Now"));
    QTest::keyClick(onboarding.focusWidget(), Qt::Key_Return);
    EXPECT_EQ(answers, std::vector{false});
    EXPECT_EQ(onboarding.view().page(), 2);
    EXPECT_EQ(button("Switch On"), nullptr);
    EXPECT_NE(button("Continue"), nullptr);
    QTest::keyClick(&onboarding, Qt::Key_Return);
    EXPECT_FALSE(onboarding.isVisible()) << "Return goes on again";
    onboarding.present();
    onboarding.view().continuePressed();
    button("Switch On")->click();
    EXPECT_EQ(answers, (std::vector{false, true}));
    onboarding.close();
    isOpen = false;
    onboarding.present();
    onboarding.view().continuePressed();
    EXPECT_EQ(button("Switch On"), nullptr) << "once answered it is not asked again";
}

} // namespace
} // namespace quillmoth
