#include "Quillmoth/Shell/Panel/MarkdownMessage.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

#include <memory>

namespace quillmoth {

namespace {

TEST(MarkdownMessage, asks_again_for_a_failed_image_when_the_panel_is_shown_again) {
    std::chrono::steady_clock::time_point now;
    int asked = 0;
    markdown::MarkdownServices services(
        markdown::MarkdownPalette::panel(), nullptr,
        [&asked](const QString&, const auto& finished) {
            ++asked;
            finished({});
        },
        markdown::FontCache(), [&now] { return now; });
    QWidget panel;
    MessageContent* const message = markdownMessages(services, {})(&panel);
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
    now += markdown::ImageStore::kRetryPause;
    panel.grab();
    EXPECT_EQ(asked, 1) << "no paint asks";
    panel.hide();
    open();
    EXPECT_EQ(asked, 2);
}

TEST(MarkdownMessage, tells_that_what_was_laid_out_is_not_as_high_as_it_was_estimated) {
    markdown::MarkdownServices services(markdown::MarkdownPalette::panel());
    QWidget panel;
    MessageContent* const message = markdownMessages(services, {})(&panel);
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
