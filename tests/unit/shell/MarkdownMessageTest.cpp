#include "Quillmoth/Shell/Panel/MarkdownMessage.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

#include <memory>

namespace quillmoth {

namespace {

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
