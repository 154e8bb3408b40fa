#include "MarkdownUI/Qt/AccessibleDocument.h"

#include "ItemTest.h"
#include "Pictures.h"

#include <QAccessible>
#include <QAction>
#include <QMenu>
#include <QWidget>

#include <string>

namespace quillmoth::markdown {

namespace {

std::vector<QRgb> redsOf(const QImage& image) {
    std::vector<QRgb> reds;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qRed(image.pixel(x, y)) > 100 && qGreen(image.pixel(x, y)) < 90)
                reds.push_back(image.pixel(x, y));
        }
    }
    return reds;
}

class MarkdownControlsTest : public ItemTest {
protected:
    /// What has the focus: the text of a link, what an image shows, "button", or nothing.
    std::string focused() {
        if (!item.focusedPart())
            return {};
        const PartInfo& part = item.parts()[*item.focusedPart()];
        return part.kind == PartInfo::Kind::copyButton ? "button" : part.text;
    }
};

const std::string kControls =
    "# [Title](https://t.org)\n\nSee [one](https://one.org) and *[two](https://two.org)*.\n\n"
    "```\ncode\n```\n\n[![picture](x.png)](https://p.org)\n\n![no link](y.png)\n\n"
    "| [cell](https://c.org) |\n|---|\n| [bad](<a b>) [relative](page.html) [![nor this](x.png)](#top) |\n";

} // namespace

TEST_F(MarkdownControlsTest, TheTabKeyLeadsOverLinksAndButtonsInReadingOrderAndOut) {
    show(kControls);
    std::vector<std::string> order;
    while (item.focusNextControl(true)) {
        order.push_back(focused());
        EXPECT_TRUE(item.focusedFrame()->isValid()) << focused();
    }
    EXPECT_EQ(order, (std::vector<std::string>{"Title", "one", "two", "button", "picture", "cell"}));
    EXPECT_TRUE(item.focusNextControl(false));
    EXPECT_EQ(focused(), "cell") << "backwards from behind the last";
    item.clearFocus();
    show("nothing to press");
    EXPECT_FALSE(item.focusNextControl(true));
    EXPECT_FALSE(item.focusNextControl(false));
}

TEST_F(MarkdownControlsTest, ReturnDoesWhatAPressDoes) {
    show(kControls);
    EXPECT_FALSE(press(Qt::Key_Return)) << "nothing has the focus";
    while (item.focusNextControl(true)) {
        EXPECT_TRUE(press(Qt::Key_Return));
        EXPECT_EQ(press(Qt::Key_Space), focused() == "button") << "elsewhere the space bar scrolls";
    }
    EXPECT_EQ(host.opened, (QStringList{"https://t.org", "https://one.org", "https://two.org",
                                        "https://p.org", "https://c.org"}));
    EXPECT_EQ(host.copied, (QStringList{"code", "code"}));
}

TEST_F(MarkdownControlsTest, ARingShowsTheFocusUntilAPress) {
    show("See [one](https://one.org).");
    const QImage before = picture();
    ASSERT_TRUE(item.focusNextControl(true));
    const QImage ringed = picture();
    EXPECT_NE(ringed, before);
    const QRect frame = item.focusedFrame()->toRect();
    EXPECT_EQ(ringed.pixelColor(frame.left() - 2, frame.center().y()), services.palette.accent);
    item.mousePress({1, 1}, 1, Qt::NoModifier);
    item.mouseRelease({1, 1});
    EXPECT_EQ(picture(), before);
}

TEST_F(MarkdownControlsTest, TheMenuCopiesTheSelectionOrALinkAndSelectsAll) {
    show("See [one](https://one.org).");
    ASSERT_TRUE(item.focusNextControl(true));
    const QPointF link = item.focusedFrame()->center();
    const auto choose = [this](const QPointF& point, const QString& text) {
        QMenu menu;
        item.addActions(menu, point);
        for (QAction* action : menu.actions()) {
            if (action->text() == text && action->isEnabled()) {
                action->trigger();
                return true;
            }
        }
        return false;
    };
    EXPECT_FALSE(choose(link, "Copy")) << "nothing is selected";
    EXPECT_FALSE(choose({1, 1}, "Copy Link"));
    EXPECT_TRUE(choose(link, "Copy Link"));
    EXPECT_TRUE(choose(link, "Select All"));
    EXPECT_TRUE(choose(link, "Copy"));
    EXPECT_EQ(host.copied, (QStringList{"https://one.org", "See one."}));
}

TEST_F(MarkdownControlsTest, AnImageStandsAloneOrInTheTextAndIsTintedWhereItIsSelected) {
    const std::string red = pictureURL(Qt::red, 30, 20);
    show("first\n\n![alone](" + red + ")\n\nin ![a](" + red + ")![a](" + red + ") line");
    const auto plain = redsOf(picture());
    item.selectAll();
    const auto tinted = redsOf(picture());
    EXPECT_EQ(plain.size(), 3U * 30 * 20) << "alone and in a line";
    EXPECT_EQ(std::count(tinted.begin(), tinted.end(), qRgb(255, 0, 0)), 0);
    item.select({{0, 0}, {0, 3}});
    EXPECT_EQ(redsOf(picture()), plain) << "outside the selection";
}

TEST_F(MarkdownControlsTest, SelectedCodeLosesItsColors) {
    show("```\nlet let let\n```");
    const QImage colored = picture();
    item.selectAll();
    const QImage selected = picture();
    document().setCodeSyntaxHighlighter(nullptr);
    EXPECT_EQ(picture(), selected);
    item.clearSelection();
    EXPECT_NE(picture(), colored);
}

TEST_F(MarkdownControlsTest, ABlankBehindStruckTextIsNotStruck) {
    show("~~mmm~~ mmm");
    const Rect blank = document().selectionRectangles({{0, 3}, {0, 4}}, {0, 0, 400, 100}).at(0);
    const QImage image = picture();
    for (int y = 0; y < 20; ++y) {
        const int x = static_cast<int>(blank.x + blank.width / 2);
        EXPECT_EQ(image.pixelColor(x, y), services.palette.base) << y;
    }
}

TEST_F(MarkdownControlsTest, AMegabyteLineOfCodeIsSelectedAndScrolled) {
    show("```\n" + std::string(1'000'000, 'x') + "\n```\n");
    document().setScrollOffset(0, document().scrollRegion(0).contentWidth / 2);
    const Rect region = document().scrollRegion(0).frame;
    const QPointF left(region.x + 40, region.y + 45);
    item.mousePress(left, 1, Qt::NoModifier);
    item.mouseMove(left + QPointF(100, 0), true);
    item.mouseRelease(left + QPointF(100, 0));
    EXPECT_GT(item.selectedText().size(), 5);
    EXPECT_LT(item.selectedText().size(), 40);
    EXPECT_NEAR(static_cast<double>(item.selection().begin.offset), 500'000, 1000);
    const QImage before = picture();
    item.clearSelection();
    EXPECT_NE(picture(), before) << "the fill stands where the text does";
    for (double y = region.y + 1; y < region.bottom() - 1; ++y) {
        EXPECT_EQ(before.pixelColor(QPointF(region.x + 2, y).toPoint()), services.palette.gray)
            << "code passes below the side bar";
    }
}

TEST_F(MarkdownControlsTest, AnItemIsOneDocumentWithHeadingsLinksAndButtons) {
    show("# T\u00EDtle\n\nSee [guide](https://example.org).\n\n```\ncode\n```\n");
    QWidget widget;
    AccessibleDocument document(widget, item, [] { return QPoint(); });
    QAccessibleInterface* const accessible = &document;
    EXPECT_EQ(accessible->role(), QAccessible::Document);
    QAccessibleTextInterface* text = accessible->textInterface();
    ASSERT_NE(text, nullptr);
    const QString all = text->text(0, text->characterCount());
    EXPECT_EQ(all, QString::fromStdString(item.content().documentText()));
    EXPECT_TRUE(all.startsWith("T\u00EDtle\n"));

    const int link = static_cast<int>(all.indexOf("guide"));
    int begin = 0;
    int end = 0;
    EXPECT_EQ(text->attributes(0, &begin, &end), "level:1;");
    EXPECT_EQ(text->attributes(link + 1, &begin, &end), "href:https://example.org;");
    EXPECT_EQ(all.mid(begin, end - begin), "guide");
    EXPECT_EQ(text->offsetAtPoint(text->characterRect(link).center()), link);
    text->setSelection(0, link, link + 5);
    EXPECT_EQ(item.selectedText(), "guide");

    ASSERT_EQ(accessible->childCount(), 3);
    EXPECT_EQ(accessible->child(0)->role(), QAccessible::Heading);
    EXPECT_EQ(accessible->child(0)->text(QAccessible::Name), "T\u00EDtle");
    EXPECT_EQ(accessible->child(1)->role(), QAccessible::Link);
    accessible->child(1)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(host.opened, QStringList("https://example.org"));
    EXPECT_EQ(accessible->child(2)->role(), QAccessible::PushButton);
    EXPECT_EQ(accessible->child(2)->text(QAccessible::Name), "Copy code");
    accessible->child(2)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(host.copied, QStringList("code"));
    EXPECT_EQ(accessible->child(2)->text(QAccessible::Name), "Copied") << "as the button shows";

    item.setText("plain");
    EXPECT_EQ(accessible->childCount(), 0);
}

} // namespace quillmoth::markdown
