#include "MarkdownUI/Qt/MarkdownItem.h"

#include "FakeHost.h"
#include "Pictures.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QKeyEvent>

#include <chrono>
#include <string>

namespace quillmoth::markdown {

namespace {

using namespace std::chrono_literals;

constexpr double kItemWidth = 400;
constexpr double kItemHeight = 300;

/// An item whose images are answered by hand.
class ArrivingImagesTest : public ::testing::Test {
protected:
    void show(MarkdownItem& shown, const std::string& markdown) {
        shown.setWidth(kItemWidth);
        shown.setForm(TextForm::markdown);
        shown.setText(markdown);
        (void)shown.displayList({0, 0, kItemWidth, kItemHeight});
    }

    /// Answers all that were asked for, and takes in what follows. Gives how many they were.
    std::size_t answer(const QByteArray& data) {
        const auto calls = std::exchange(asked_, {});
        for (const auto& finished : calls)
            finished({data});
        while (services.images.loadingCount() > 0)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return calls.size();
    }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        item.keyPress(QKeyEvent(QEvent::KeyPress, key, modifiers));
    }

    std::chrono::steady_clock::time_point now;
    MarkdownServices services{MarkdownPalette::panel(),
                              nullptr,
                              {.download = [this](const ImageRequest& /*request*/,
                                                  auto finished) { asked_.push_back(std::move(finished)); },
                               .permissions = {.loadsAll = [] { return true; }},
                               .clock = [this] { return now; }}};
    FakeHost host;
    MarkdownItem item{services, host};

private:
    std::vector<std::function<void(ImageAnswer)>> asked_;
};

} // namespace

TEST_F(ArrivingImagesTest, KeepTheSelectionAndTheFocus) {
    for (const std::string tabs : {"1", "2"}) { // the link, then the button
        show(item, "![a](http://x/" + tabs + ") “é” ![b](http://x/b" + tabs +
                       ") [one](http://one) and more\n\n```\ncode\n```\n");
        const std::size_t focused = 1 + std::stoul(tabs); // behind the images
        for (std::size_t tab = 0; tab < std::stoul(tabs); ++tab) {
            ASSERT_TRUE(item.focusNextControl(true));
        }
        const std::string text = item.content().textOfBlock(0);
        item.select({{0, text.find("“")}, {0, text.find(" and")}});
        const QString selected = item.selectedText();
        const std::size_t version = item.version();
        EXPECT_EQ(answer(pictureData(Qt::red, 30, 20)), 2U);
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
    show(item, "![a](http://x/a)text![b](http://x/b)");
    item.selectAll();
    answer(pictureData(Qt::red, 30, 20));
    EXPECT_EQ(item.selection(), item.content().wholeRange());
    EXPECT_EQ(item.content().textOfBlock(0).size(), 10U);

    show(item, "text![c](http://x/c)");
    item.select({{0, 4}, {0, 4}});
    answer(pictureData(Qt::red, 30, 20));
    EXPECT_EQ(item.selection(), (TextRange{{0, 4}, {0, 4}}));
}

TEST_F(ArrivingImagesTest, AreAskedForAgainByALaterUseButNotByEachPaint) {
    const std::string text = "![a](http://x/a)\n\nin ![b](http://x/b) text ![bad](data:image/png,zzz)";
    show(item, text);
    EXPECT_EQ(answer({}), 2U);
    now += DefaultImageLoader::kRetryPause - 1ms;
    show(item, text);
    EXPECT_EQ(answer({}), 0U);
    now += 1ms;
    show(item, text);
    EXPECT_EQ(answer({}), 2U) << "for another answer";
    show(item, text);
    EXPECT_EQ(answer({}), 0U) << "the pause is that after the last failure";
    now += DefaultImageLoader::kRetryPause;
    (void)item.displayList({0, 0, kItemWidth, kItemHeight});
    EXPECT_EQ(answer({}), 0U) << "for a paint";
    item.retryImages();
    item.retryImages();
    (void)item.displayList({0, 0, kItemWidth, kItemHeight});
    EXPECT_EQ(answer({}), 2U) << "where it is shown again";
    now += DefaultImageLoader::kRetryPause;
    item.setWidth(kItemWidth + 1);
    (void)item.displayList({0, 0, kItemWidth, kItemHeight});
    const int resizes = host.resizes;
    EXPECT_EQ(answer(pictureData(Qt::red, 30, 20)), 2U) << "for another layout";
    EXPECT_GT(host.resizes, resizes);
    EXPECT_EQ(item.content().textOfBlock(0), "in \uFFFC text ");
}

} // namespace quillmoth::markdown
