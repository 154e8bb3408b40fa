#include "ItemTest.h"

#include <QWheelEvent>

#include <string>

namespace quillmoth::markdown {

namespace {

class MarkdownItemTest : public ItemTest {
protected:
    void click(QPointF point, int clicks = 1) {
        item.mousePress(point, clicks, Qt::NoModifier);
        item.mouseRelease(point);
    }

    bool turnWheel(QPointF point, QPoint angle, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        return item.wheel(
            QWheelEvent(point, point, {}, angle, Qt::NoButton, modifiers, Qt::NoScrollPhase, false), point);
    }

    /// The middle of the character at `offset` of the text block.
    QPointF pointAt(std::size_t block, std::size_t offset) {
        const Rect from = item.content().caretRectangle({block, offset});
        const Rect to = item.content().caretRectangle({block, offset + 1});
        return {(from.x + to.x) / 2, from.y + from.height / 2};
    }

    QPointF middleOf(const Rect& rect) { return {rect.x + rect.width / 2, rect.y + rect.height / 2}; }

    bool isCopied(std::size_t codeBlock) { return document().copyButtonLabel(codeBlock) == "Copied"; }
};

const std::string kWideCode = "```\nlet x = 1\n" + std::string(200, 'w') + "\n```\n";

} // namespace

TEST_F(MarkdownItemTest, DragsASelectionAcrossBlocksAndCopiesItAsPlainText) {
    show("First *paragraph* here.\n\nSecond **one**.");
    item.mousePress(pointAt(0, 6), 1, Qt::NoModifier);
    item.mouseMove(pointAt(1, 6) + QPointF(1, 0), true);
    item.mouseRelease(pointAt(1, 6));
    EXPECT_EQ(item.selectedText().left(9), "paragraph");
    EXPECT_TRUE(item.selectedText().endsWith("Second "));
    EXPECT_TRUE(item.selectedText().contains('\n'));
    EXPECT_TRUE(press(Qt::Key_C, Qt::ControlModifier));
    EXPECT_EQ(host.copied, QStringList{item.selectedText()});
}

TEST_F(MarkdownItemTest, SelectsAWordByTwoClicksAndABlockByThree) {
    show("Some longer words.\n\nMore.");
    click(pointAt(0, 7), 2);
    EXPECT_EQ(item.selectedText(), "longer");
    click(pointAt(0, 7), 3);
    EXPECT_EQ(item.selectedText(), "Some longer words.");
    click(pointAt(0, 7));
    EXPECT_FALSE(item.hasSelection());
}

TEST_F(MarkdownItemTest, ExtendsTheSelectionByKeys) {
    show("One two\nthree.\n\nFour.");
    click(pointAt(0, 0) - QPointF(2, 0));
    press(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(item.selectedText(), "O");
    press(Qt::Key_Right, Qt::ShiftModifier | Qt::ControlModifier);
    EXPECT_TRUE(item.selectedText().startsWith("One")) << qPrintable(item.selectedText());
    press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_TRUE(item.selectedText().endsWith("Fou") || item.selectedText().contains("\n"))
        << qPrintable(item.selectedText());
    press(Qt::Key_Home, Qt::ShiftModifier | Qt::ControlModifier);
    EXPECT_FALSE(item.hasSelection());
    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(item.selectedText().toStdString(), item.content().documentText());
}

TEST_F(MarkdownItemTest, OpensALinkOnAClickButNotAfterADrag) {
    show("See [the guide](https://example.org/a) now.");
    const QPointF link = pointAt(0, 6);
    EXPECT_EQ(item.cursorAt(link), Qt::PointingHandCursor);
    EXPECT_EQ(item.cursorAt(pointAt(0, 1)), Qt::IBeamCursor);
    click(link);
    EXPECT_EQ(host.opened, QStringList{"https://example.org/a"});
    item.mousePress(link, 1, Qt::NoModifier);
    item.mouseMove(pointAt(0, 9), true);
    item.mouseRelease(pointAt(0, 9));
    EXPECT_EQ(host.opened.size(), 1);
}

TEST_F(MarkdownItemTest, SaysCopiedForTwoSecondsAfterEachPress) {
    show("```swift\nlet x = 1\n```\n");
    const QPointF button = middleOf(document().copyButtonFrame(0));
    item.mousePress(button, 1, Qt::NoModifier);
    item.mouseMove({0, 0}, true);
    item.mouseRelease({0, 0});
    EXPECT_TRUE(host.copied.isEmpty()) << "released beside it";
    click(button);
    EXPECT_EQ(host.copied, QStringList{"let x = 1"});
    EXPECT_TRUE(isCopied(0));
    EXPECT_EQ(host.renamed.size(), 1U);
    host.mainQueue.advance(1.5);
    click(button);
    host.mainQueue.advance(0.5);
    EXPECT_EQ(host.renamed.size(), 3U);
    EXPECT_FALSE(isCopied(0)) << "the first reset comes on its own time";
    host.mainQueue.advance(1.5);
    EXPECT_FALSE(isCopied(0));
    EXPECT_EQ(host.copied.size(), 2);
}

TEST_F(MarkdownItemTest, AResetThatComesAfterItsCodeOrItsDocumentDoesNothing) {
    for (const TextForm form : {TextForm::markdown, TextForm::plain}) {
        show("```\na\n```\n");
        click(middleOf(document().copyButtonFrame(0)));
        item.setForm(form);
        item.setText("gone");
        host.renamed.clear();
        host.mainQueue.advance(3);
        EXPECT_TRUE(host.renamed.empty());
    }
}

TEST_F(MarkdownItemTest, ScrollsWideCodeSidewaysByWheelKeysAndBar) {
    show(kWideCode);
    const QPointF inside = middleOf(document().scrollRegion(0).frame);
    const auto offset = [this] { return document().scrollRegion(0).offset; };
    EXPECT_FALSE(turnWheel(inside, {0, -120})) << "up and down is the view's";
    EXPECT_TRUE(turnWheel(inside, {0, -120}, Qt::ShiftModifier));
    const double byShift = offset();
    EXPECT_GT(byShift, 0);
    EXPECT_TRUE(turnWheel(inside, {-120, 0}));
    EXPECT_GT(offset(), byShift);
    document().setScrollOffset(0, 0);
    click(pointAt(0, 1));
    EXPECT_TRUE(press(Qt::Key_Right));
    EXPECT_GT(offset(), 0);
    EXPECT_TRUE(press(Qt::Key_Left));
    EXPECT_FALSE(press(Qt::Key_Left)) << "at the start a key goes on to others";

    const auto thumb = scrollThumbOf(document().scrollRegion(0), 1);
    ASSERT_TRUE(thumb);
    const QPointF grip = middleOf(*thumb);
    item.mousePress(grip, 1, Qt::NoModifier);
    item.mouseMove(grip + QPointF(1000, 0), true);
    item.mouseRelease(grip + QPointF(1000, 0));
    const ScrollRegionItem region = document().scrollRegion(0);
    EXPECT_NEAR(region.offset, region.contentWidth - region.frame.width, 0.5);
}

TEST_F(MarkdownItemTest, LinesOfPlainTextStandAtOneDistance) {
    item.setWidth(kWidth);
    item.setFontSize(24);
    const auto heightOf = [this](const char* text) {
        item.setText(text);
        return item.height();
    };
    const double line = heightOf("a\nb") - heightOf("a");
    EXPECT_EQ(heightOf("a\n\nb"), heightOf("a") + 2 * line) << "an empty one";
    EXPECT_EQ(heightOf(""), heightOf("a"));
    item.setLineHeight(40);
    EXPECT_EQ(heightOf("a\nb") - heightOf("a"), 40);
}

} // namespace quillmoth::markdown
