#include "tests/unit/shell/PanelViewFixture.h"

#include <QEvent>
#include <QMouseEvent>

namespace quillmoth {
namespace {

/// An answer of one link, and beside it the field.
class LinkNoteTest : public PanelViewFixture {
protected:
    LinkNoteTest()
        : PanelViewFixture({.messages = {.markdown = nullptr, .openLink = [this](const QString& url) {
                                             opened << url;
                                             return refusal;
                                         }}}) {
        converse("[the link](https://where.example/it/leads)");
        answer = list.conversation().contentAt(2);
        answer->grab();
    }

    void moveTo(QPoint point) {
        QMouseEvent move(QEvent::MouseMove, QPointF(point), answer->mapToGlobal(QPointF(point)), Qt::NoButton,
                         Qt::NoButton, {});
        QApplication::sendEvent(answer, &move);
    }

    QString note() {
        return panel.view->linkNote().isVisible() ? panel.view->linkNote().wholeText() : QString();
    }

    const QString target = QStringLiteral("https://where.example/it/leads");
    QStringList opened;
    QString refusal;
    MessageContent* answer = nullptr;
};

TEST_F(LinkNoteTest, TheTargetOfALinkIsShownUnderThePointerAndWithTheFocus) {
    EXPECT_EQ(note(), QString());
    const QPoint onLink(10, static_cast<int>(answer->item().firstLineCenter()));
    moveTo(onLink);
    EXPECT_EQ(note(), target);
    EXPECT_TRUE(panel.view->rect().contains(panel.view->linkNote().geometry()));
    moveTo(QPoint(answer->width() - 1, onLink.y()));
    EXPECT_EQ(note(), QString());
    answer->setFocus(Qt::TabFocusReason);
    EXPECT_EQ(note(), target);
    field.setFocus();
    EXPECT_EQ(note(), QString());
    moveTo(onLink);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(answer, &leave);
    EXPECT_EQ(note(), QString());
    moveTo(onLink);
    EXPECT_EQ(note(), target);
    model._messages = std::vector<ChatMessage>();
    model._responseValue = std::string();
    panel.settle();
    EXPECT_EQ(note(), QString()) << "the answer has gone from under the pointer";
}

TEST_F(LinkNoteTest, ALinkThatIsNotOpenedSaysSo) {
    answer->setFocus(Qt::TabFocusReason);
    press(*answer, Qt::Key_Return);
    EXPECT_EQ(opened, QStringList(target));
    EXPECT_EQ(note(), target);
    refusal = QStringLiteral("Not opened.");
    press(*answer, Qt::Key_Return);
    EXPECT_EQ(note(), refusal);
    field.setFocus();
    EXPECT_EQ(note(), QString());
}

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
