#include "Quillmoth/Shell/Panel/MessageContent.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTest>

#include <memory>

namespace quillmoth {
namespace {

TEST(MessageContent, asks_again_for_a_failed_image_when_the_panel_is_shown_again) {
    std::chrono::steady_clock::time_point now;
    int asked = 0;
    markdown::MarkdownServices services(markdown::MarkdownPalette::panel(), nullptr,
                                        {.download =
                                             [&asked](const markdown::ImageRequest&, const auto& finished) {
                                                 ++asked;
                                                 finished({});
                                             },
                                         .permissions = {.loadsAll = [] { return true; }},
                                         .clock = [&now] { return now; }});
    QWidget panel;
    auto* const message = new MessageContent({.markdown = &services, .openLink = {}}, &panel);
    message->setForm(markdown::TextForm::markdown);
    message->setText("![a](http://example.org/a.png)");
    const auto open = [&] {
        panel.show();
        panel.grab();
        while (services.images.loadingCount() > 0)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    };
    open();
    panel.grab();
    EXPECT_EQ(asked, 1);
    now += markdown::DefaultImageLoader::kRetryPause;
    panel.grab();
    EXPECT_EQ(asked, 1) << "no paint asks";
    panel.hide();
    open();
    EXPECT_EQ(asked, 2);
}

TEST(MessageContent, loads_an_image_by_keys_and_tells_where_it_is_before) {
    QStringList asked;
    markdown::MarkdownServices services(
        markdown::MarkdownPalette::panel(), nullptr,
        {.download = [&asked](const markdown::ImageRequest& request, const auto&) { asked << request.url; }});
    QString told;
    QWidget panel;
    auto* const message = new MessageContent(
        {.markdown = &services, .openLink = {}, .tell = [&told](const QString& text, bool) { told = text; }},
        &panel);
    message->setForm(markdown::TextForm::markdown);
    message->setText("Words and ![a](https://x.org/a?words)");
    message->resize(400, 100);
    panel.show();
    panel.activateWindow();
    QCoreApplication::processEvents();
    message->clearFocus();
    panel.grab();
    EXPECT_TRUE(asked.isEmpty());
    message->setFocus(Qt::TabFocusReason);
    EXPECT_EQ(told, "https://x.org/a?words");
    QTest::keyClick(message, Qt::Key_Space);
    EXPECT_EQ(asked, QStringList("https://x.org/a?words"));
}

TEST(MessageContent, shrinks_to_its_widest_line) {
    markdown::MarkdownServices services(markdown::MarkdownPalette::panel());
    MessageContent message({.markdown = &services, .openLink = {}}, nullptr);
    message.setShrinking(true);
    const auto widthOf = [&](const char* text) {
        message.setText(text);
        const int height = message.heightForWidth(400);
        EXPECT_EQ(message.heightForWidth(400), height);
        return message.takenWidth();
    };
    const int line = widthOf("A question");
    EXPECT_LT(line, 150);
    EXPECT_EQ(widthOf("A question\nin lines"), line);
    EXPECT_GT(widthOf("A question that is far too long for the width of four hundred pixels"), 300);
}

TEST(MessageContent, tells_that_what_was_laid_out_is_not_as_high_as_it_was_estimated) {
    markdown::MarkdownServices services(markdown::MarkdownPalette::panel());
    QWidget panel;
    auto* const message = new MessageContent({.markdown = &services, .openLink = {}}, &panel);
    message->setForm(markdown::TextForm::markdown);
    message->setText(std::string(1500, 'm'));
    int told = 0;
    message->onHeightChanged = [&] {
        message->resize(300, message->heightForWidth(300));
        ++told;
    };
    message->onHeightChanged();
    QCoreApplication::processEvents();
    const int estimated = message->height();
    panel.show();
    for (int turn = 0; turn < 5; ++turn) {
        panel.grab();
        QCoreApplication::processEvents();
    }
    EXPECT_GT(message->height(), estimated + 20);
    EXPECT_LE(told, 4) << "once it is known nothing is told";
}

} // namespace
} // namespace quillmoth
