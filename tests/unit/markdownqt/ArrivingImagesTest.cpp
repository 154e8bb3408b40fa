#include "RemoteImages.h"

namespace quillmoth::markdown {

namespace {

using namespace std::chrono_literals;

class ArrivingImagesTest : public RemoteImages {
protected:
    ArrivingImagesTest() { loadsAll = true; }

    /// Answers all that were asked for. Gives how many they were.
    std::size_t answerAll(const QByteArray& data) {
        std::size_t count = 0;
        for (; !asked.empty(); ++count)
            answer({data});
        return count;
    }
};

} // namespace

TEST_F(ArrivingImagesTest, KeepTheSelectionAndTheFocus) {
    for (const std::string tabs : {"1", "2"}) { // the link, then the button
        show("![a](http://x/" + tabs + ") “é” ![b](http://x/b" + tabs +
             ") [one](http://one) and more\n\n```\ncode\n```\n");
        const std::size_t focused = 1 + std::stoul(tabs); // behind the images
        for (std::size_t tab = 0; tab < std::stoul(tabs); ++tab) {
            ASSERT_TRUE(item.focusNextControl(true));
        }
        const std::string text = item.content().textOfBlock(0);
        item.select({{0, text.find("“")}, {0, text.find(" and")}});
        const QString selected = item.selectedText();
        const std::size_t version = item.version();
        EXPECT_EQ(answerAll(pictureData(Qt::red, 30, 20)), 2U);
        EXPECT_EQ(item.selectedText(), selected);
        EXPECT_EQ(item.selection().end, (TextPosition{0, item.content().textOfBlock(0).find(" and")}));
        press(Qt::Key_Right, Qt::ShiftModifier);
        EXPECT_EQ(item.selectedText(), selected + ' ') << "the end is still the one that moves";
        EXPECT_EQ(item.focusedPart(), focused);
        EXPECT_EQ(item.version(), version) << "or assistive technology loses its place";
        press(Qt::Key_Return);
    }
    EXPECT_EQ(host.opened, QStringList{"http://one"});
    EXPECT_EQ(host.copied, QStringList{"code"});
}

TEST_F(ArrivingImagesTest, StandInAWholeSelectionAndBehindACaret) {
    show("![a](http://x/a)text![b](http://x/b)");
    item.selectAll();
    answerAll(pictureData(Qt::red, 30, 20));
    EXPECT_EQ(item.selection(), item.content().wholeRange());
    EXPECT_EQ(item.content().textOfBlock(0).size(), 10U);

    show("text![c](http://x/c)");
    item.select({{0, 4}, {0, 4}});
    answerAll(pictureData(Qt::red, 30, 20));
    EXPECT_EQ(item.selection(), (TextRange{{0, 4}, {0, 4}}));
}

TEST_F(ArrivingImagesTest, AreAskedForAgainByALaterUseButNotByEachPaint) {
    const std::string text = "![a](http://x/a)\n\nin ![b](http://x/b) text ![bad](data:image/png,zzz)";
    show(text);
    EXPECT_EQ(answerAll({}), 2U);
    now += DefaultImageLoader::kRetryPause - 1ms;
    show(text);
    EXPECT_EQ(answerAll({}), 0U);
    now += 1ms;
    show(text);
    EXPECT_EQ(answerAll({}), 2U) << "for another answer";
    show(text);
    EXPECT_EQ(answerAll({}), 0U) << "the pause is that after the last failure";
    now += DefaultImageLoader::kRetryPause;
    settle();
    EXPECT_EQ(answerAll({}), 0U) << "for a paint";
    item.retryImages();
    item.retryImages();
    settle();
    EXPECT_EQ(answerAll({}), 2U) << "where it is shown again";
    now += DefaultImageLoader::kRetryPause;
    item.setWidth(kImageSide + 1);
    settle();
    const int resizes = host.resizes;
    EXPECT_EQ(answerAll(pictureData(Qt::red, 30, 20)), 2U) << "for another layout";
    EXPECT_GT(host.resizes, resizes);
    EXPECT_EQ(item.content().textOfBlock(0), "in \uFFFC text ");
}

} // namespace quillmoth::markdown
