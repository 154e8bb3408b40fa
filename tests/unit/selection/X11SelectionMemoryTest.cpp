#include "Platform/Linux/X11/Selection/X11SelectionMemory.h"

#include <gtest/gtest.h>

namespace quillmoth::platform {
namespace {

using namespace std::chrono_literals;
using Kind = X11SelectionMemory::Decision::Kind;

SelectionContentRef contentOf(std::optional<std::string> text) {
    SelectionContent content{.text = std::move(text), .others = {}, .isComplete = true};
    content.others.push_back({.target = 1, .type = 1, .itemBits = 8, .bytes = "a picture"});
    return std::make_shared<const SelectionContent>(std::move(content));
}

/// A clipboard and the program that uses it, with a clock that stands still between the steps.
class SelectionMemory : public testing::Test {
protected:
    std::optional<std::string> read() {
        if (const auto known = memory_.known(now_))
            return *known;
        memory_.hasRead(standing_);
        return standing_->text;
    }

    void clear() { memory_.clear(now_); }

    void copy(const std::string& text) {
        standing_ = contentOf(text);
        if (memory_.hasBeenReplaced())
            memory_.hasReadCopy(text);
    }

    void write(const std::string& text) {
        auto decision = memory_.write(text, now_);
        isLeft_ = decision.kind == Kind::leave;
        if (decision.kind == Kind::restore)
            standing_ = decision.content;
        if (decision.kind == Kind::write)
            standing_ = std::make_shared<const SelectionContent>(
                SelectionContent{.text = text, .others = {}, .isComplete = true});
    }

    X11SelectionMemory memory_;
    SelectionContentRef first_ = contentOf("first");
    SelectionContentRef standing_ = first_;
    X11SelectionMemory::Clock::time_point now_{};
    /// Whether the latest write has left the clipboard to its owner.
    bool isLeft_ = false;
};

} // namespace

TEST_F(SelectionMemory, AContentThatNobodyReplacesStays) {
    EXPECT_EQ(read(), "first");
    clear();
    EXPECT_EQ(read(), std::nullopt);
    now_ += 200ms;
    EXPECT_EQ(read(), std::nullopt);
    clear();
    write("first");
    EXPECT_TRUE(isLeft_);
    EXPECT_EQ(standing_, first_);
    EXPECT_EQ(read(), "first");
}

TEST_F(SelectionMemory, AReplacedContentComesBackWholeHoweverLate) {
    for (const auto& [content, delay] : {std::pair{first_, 200ms}, {first_, 3000ms}, {contentOf({}), 0ms}}) {
        standing_ = content;
        const auto text = read();
        EXPECT_EQ(text, content->text);
        clear();
        copy("selected");
        now_ += delay;
        EXPECT_EQ(read(), "selected");
        clear();
        write(text.value_or(""));
        EXPECT_EQ(standing_, content);
    }
}

TEST_F(SelectionMemory, CopiesThatOverlapBringBackTheFirstContent) {
    for (const bool isSlow : {false, true}) {
        standing_ = first_;
        now_ += 20s;
        const auto one = read();
        clear();
        if (!isSlow)
            copy("selected");
        now_ += 100ms;
        const auto two = read();
        EXPECT_EQ(two, isSlow ? std::nullopt : std::optional<std::string>("selected"));
        clear();
        copy("selected");
        now_ += 100ms;
        EXPECT_EQ(read(), "selected");
        clear();
        write(*one);
        EXPECT_EQ(standing_, first_);
        now_ += 100ms;
        EXPECT_EQ(read(), "selected") << "what the second copy brought";
        if (isSlow) {
            clear();
            write("");
        }
        EXPECT_EQ(standing_, first_);
        now_ += 600ms;
        EXPECT_EQ(read(), "first");
    }
}

TEST_F(SelectionMemory, ASecondCopyOfSomethingElseBringsBackTheFirstContentToo) {
    read();
    clear();
    copy("selected");
    now_ += 100ms;
    EXPECT_EQ(read(), "selected");
    clear();
    copy("other");
    now_ += 100ms;
    clear();
    write("selected");
    EXPECT_EQ(standing_, first_);
}

TEST_F(SelectionMemory, WhatTheUserCopiesInBetweenIsNotOverwrittenByAnOlderContent) {
    read();
    clear();
    copy("first");
    now_ += 200ms;
    EXPECT_EQ(read(), "first") << "the same text: the program writes nothing back";
    now_ += 1s;
    copy("second");
    const auto second = standing_;
    EXPECT_EQ(read(), "second");
    clear();
    copy("selected");
    clear();
    write("second");
    EXPECT_EQ(standing_, second);
}

TEST_F(SelectionMemory, ATextOfItsOwnIsWrittenAlone) {
    clear();
    write("answer");
    EXPECT_EQ(standing_->text, "answer");
    EXPECT_TRUE(standing_->others.empty());
    read();
    copy("other");
    clear();
    write("first");
    EXPECT_TRUE(standing_->others.empty()) << "what was read before somebody else copied is gone";
}

} // namespace quillmoth::platform
