#include "Quillmoth/Shell/Windows/PresetQuestion.h"

#include "Foundation/Limits.h"
#include "tests/unit/windows/WindowFixture.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>

#include <vector>

namespace quillmoth {
namespace {

class PresetQuestionTest : public testing::Test {
protected:
    bool offer(const QString& name) {
        return questions.ask({name, QStringLiteral("system of ") + name, QStringLiteral("prompt of ") + name,
                              [this, name] { added << name; }});
    }

    void press(const QString& title) {
        buttonOf(*window, title)->click();
        settle();
    }

    void key(int key) {
        window->activateWindow();
        settle();
        QTest::keyClick(window->focusWidget() != nullptr ? window->focusWidget() : window,
                        static_cast<Qt::Key>(key));
        settle();
    }

    static void settle() {
        for (int turn = 0; turn < 5; ++turn)
            QApplication::processEvents();
    }

    QString shownName() { return window->isVisible() ? window->findChild<QLineEdit*>()->text() : QString(); }

    ColorScheme colorScheme{false};
    PresetQuestionWindow* window = nullptr;
    QStringList added;
    PresetQuestions questions{[this] {
        auto made = std::make_unique<PresetQuestionWindow>(colorScheme);
        window = made.get();
        return made;
    }};
};

TEST_F(PresetQuestionTest, AllOfThePresetIsShownAndNothingButTheButtonAddsIt) {
    const std::vector<std::function<void()>> refusals = {
        [this] { key(Qt::Key_Return); }, [this] { key(Qt::Key_Escape); }, [this] { window->close(); },
        [this] { press(QStringLiteral("Don’t Add")); }};
    for (const auto& refuse : refusals) {
        ASSERT_TRUE(offer(QStringLiteral("A")));
        settle();
        EXPECT_EQ(shownName(), QStringLiteral("A"));
        QStringList texts;
        for (auto* text : window->findChildren<QPlainTextEdit*>())
            texts << text->toPlainText();
        EXPECT_EQ(texts, QStringList({QStringLiteral("system of A"), QStringLiteral("prompt of A")}));
        refuse();
        EXPECT_FALSE(window->isVisible());
        EXPECT_TRUE(added.isEmpty());
    }
    ASSERT_TRUE(offer(QStringLiteral("A")));
    press(QStringLiteral("Add Preset"));
    EXPECT_EQ(added, QStringList(QStringLiteral("A")));
    EXPECT_FALSE(window->isVisible());
}

TEST_F(PresetQuestionTest, PresetsThatComeAtOnceAreAskedAboutOneByOneUpToABound) {
    for (std::size_t count = 0; count <= limits::kWaitingPresets; ++count)
        EXPECT_TRUE(offer(QString::number(count)));
    EXPECT_FALSE(offer(QStringLiteral("too many")));
    press(QStringLiteral("Add Preset"));
    EXPECT_EQ(shownName(), QStringLiteral("1"));
    press(QStringLiteral("Don’t Add"));
    EXPECT_EQ(shownName(), QStringLiteral("2"));
    press(QStringLiteral("Add Preset"));
    EXPECT_EQ(added, QStringList({QStringLiteral("0"), QStringLiteral("2")}));
}

} // namespace
} // namespace quillmoth
