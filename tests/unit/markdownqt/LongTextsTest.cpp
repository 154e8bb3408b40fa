#include "Foundation/Limits.h"
#include "Foundation/Log.h"
#include "ItemTest.h"

#include <deque>
#include <memory>
#include <string>

namespace quillmoth::markdown {
namespace {

/// The thread that parses is a queue, which the test runs by hand.
class LongTextsTest : public ItemTest {
protected:
    struct Job {
        std::function<void()> work;
        std::function<void()> finished;
    };

    LongTextsTest() {
        services.background = [this](std::function<void()> work, std::function<void()> finished) {
            jobs.push_back({std::move(work), std::move(finished)});
        };
        item.setWidth(kWidth);
        item.setForm(TextForm::markdown);
    }

    /// More than is parsed at once; its first words are "<name> is *long*".
    static std::string longText(const std::string& name) {
        std::string text = name + " is *long*.\n\n";
        while (text.size() <= limits::kParsedAtOnce)
            text += "A paragraph.\n\n";
        return text;
    }

    void runJob() {
        ASSERT_FALSE(jobs.empty());
        const Job job = jobs.front();
        jobs.pop_front();
        job.work();
        job.finished();
    }

    /// Its first words as they are shown.
    std::string shown(const MarkdownItem& of) { return of.content().documentText().substr(0, 12); }

    std::string shown() { return shown(item); }

    std::deque<Job> jobs;
};

TEST_F(LongTextsTest, ALongTextIsShownPlainUntilItIsParsedElsewhere) {
    item.setText("Short is *short*.");
    EXPECT_EQ(shown(), "Short is sho");
    EXPECT_TRUE(jobs.empty());
    item.setText(longText("One"));
    EXPECT_EQ(shown(), "One is *long");
    const int resizes = host.resizes;
    runJob();
    EXPECT_EQ(shown(), "One is long.");
    EXPECT_GT(host.resizes, resizes);
    item.setForm(TextForm::plain);
    item.setForm(TextForm::markdown);
    EXPECT_EQ(shown(), "One is long.");
    EXPECT_TRUE(jobs.empty()) << "what was parsed is kept";
}

TEST_F(LongTextsTest, AnOutdatedResultIsDroppedAndNoMoreParsed) {
    item.setText(longText("One"));
    const Job begun = jobs.front();
    begun.work();
    item.setText(longText("Two"));
    begun.finished();
    EXPECT_EQ(shown(), "Two is *long");
    jobs.pop_front();
    runJob();
    EXPECT_EQ(shown(), "Two is long.");
    item.setForm(TextForm::plain);
    item.setText(longText("Three"));
    item.setForm(TextForm::markdown);
    item.setForm(TextForm::plain);
    runJob();
    EXPECT_EQ(shown(), "Three is *lo") << "plain is what is asked for";
    item.setForm(TextForm::markdown);
    EXPECT_EQ(shown(), "Three is lon");
    item.setForm(TextForm::plain);
    item.append("more");
    item.setForm(TextForm::markdown);
    EXPECT_EQ(shown(), "Three is *lo") << "parsed without what has come";
    EXPECT_EQ(jobs.size(), 1U);
}

TEST_F(LongTextsTest, TheItemMayGoMeanwhile) {
    auto other = std::make_unique<MarkdownItem>(services, host);
    other->setForm(TextForm::markdown);
    other->setText(longText("One"));
    const Job begun = jobs.front();
    begun.work();
    other.reset();
    const int resizes = host.resizes;
    begun.finished();
    begun.work();
    EXPECT_EQ(host.resizes, resizes);
}

TEST_F(LongTextsTest, WhatIsSelectedStaysSelectedAndTheParsedFormWaits) {
    item.setText(longText("One"));
    item.select({{0, 0}, {0, 6}});
    runJob();
    EXPECT_EQ(item.selectedText(), "One is");
    EXPECT_EQ(shown(), "One is *long");
    item.clearSelection();
    EXPECT_EQ(shown(), "One is long.");
    item.setText(longText("Two"));
    item.mousePress({5, 5}, 1, Qt::NoModifier);
    runJob();
    EXPECT_EQ(shown(), "Two is *long") << "a selection may be begun";
    item.mouseRelease({5, 5});
    EXPECT_EQ(shown(), "Two is long.");
}

TEST_F(LongTextsTest, WhatWouldTakeTooLongStaysPlainAndTheLogSaysSoWithoutItsWords) {
    std::vector<std::string> lines;
    const ScopedLogCapture capture([&](std::string line) { lines.push_back(std::move(line)); });
    item.setText("One is *long*.\n\n" + std::string(limits::kMarkdown, 'x'));
    EXPECT_EQ(shown(), "One is *long");
    EXPECT_TRUE(jobs.empty());
    EXPECT_EQ(lines, std::vector<std::string>{
                         "an answer stays plain: it would take too long to set it as Markdown"});
    item.setText("Short is *short*.");
    EXPECT_EQ(shown(), "Short is sho");
}

TEST_F(LongTextsTest, WithoutAnotherThreadAllIsParsedAtOnce) {
    services.background = {};
    item.setText(longText("One"));
    EXPECT_EQ(shown(), "One is long.");
}

} // namespace
} // namespace quillmoth::markdown
