#include "tests/unit/shell/PanelViewFixture.h"

namespace quillmoth {
namespace {

class NoticeLineTest : public PanelViewFixture {
protected:
    void tell(const std::string& words) {
        panel.controller->_notice = words;
        panel.settle();
    }

    [[nodiscard]] const NoticeLine& line() const { return panel.view->notice(); }
};

TEST_F(NoticeLineTest, ANoticeIsShownWholeBelowTheFieldAndSpoken) {
    EXPECT_FALSE(line().isVisible());
    const int listTop = list.y();
    tell("short");
    const int oneLine = line().height();
    EXPECT_TRUE(line().isVisible());
    EXPECT_EQ(list.y(), listTop + oneLine);
    EXPECT_EQ(panel.view->findChildren<SpokenMessage*>().back()->accessibleName(), QStringLiteral("short"));
    std::string words;
    while (words.size() < 300)
        words += "words ";
    tell(words);
    EXPECT_GE(line().height(), 3 * oneLine);
    EXPECT_FALSE(line().geometry().intersects(list.geometry()));
    tell("");
    EXPECT_FALSE(line().isVisible());
    EXPECT_EQ(list.y(), listTop);
}

TEST_F(NoticeLineTest, ItGoesWithTheNextKeyAndWithThePanel) {
    const auto press = [this](int key, bool isRepeat) {
        tell("told");
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, QString(), isRepeat);
        QApplication::sendEvent(&field, &event);
        panel.settle();
        return line().isVisible();
    };
    EXPECT_TRUE(press(Qt::Key_Control, false));
    EXPECT_TRUE(press(Qt::Key_Left, true)) << "of the key that has led here";
    EXPECT_FALSE(press(Qt::Key_Left, false));
    tell("told");
    panel.view->hide();
    panel.view->show();
    panel.settle();
    EXPECT_FALSE(line().isVisible());
}

} // namespace
} // namespace quillmoth
