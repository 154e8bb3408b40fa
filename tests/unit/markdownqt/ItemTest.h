#pragma once

#include "FakeHost.h"
#include "MarkdownUI/Qt/MarkdownItem.h"
#include "Quillmoth/Highlighting/SplashCodeSyntaxHighlighter.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QImage>
#include <QKeyEvent>
#include <QPainter>

#include <string_view>

namespace quillmoth::markdown {

/// An item on a fake host.
class ItemTest : public ::testing::Test {
protected:
    explicit ItemTest(ImageServices images = {})
        : services(MarkdownPalette::panel(), &highlighter, std::move(images)) {}

    static constexpr int kWidth = 400;

    /// With the images that are in the text itself.
    void show(std::string_view markdown) {
        item.setWidth(kWidth);
        item.setFontSize(16);
        item.setForm(TextForm::markdown);
        item.setText(markdown);
        (void)item.ensureLaidOut(0, 2000);
        while (services.images.loadingCount() > 0)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        (void)item.ensureLaidOut(0, 2000);
    }

    bool press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        return item.keyPress(QKeyEvent(QEvent::KeyPress, key, modifiers));
    }

    DocumentLayout& document() { return *item.content().document(); }

    QImage picture() {
        QImage image(kWidth, 300, QImage::Format_RGB32);
        image.fill(services.palette.base);
        QPainter painter(&image);
        item.paint(painter, QRectF(image.rect()), {});
        return image;
    }

    highlighting::SplashCodeSyntaxHighlighter highlighter{
        highlighting::Theme::midnight(highlighting::Font(16))};
    MarkdownServices services;
    FakeHost host;
    MarkdownItem item{services, host};
};

} // namespace quillmoth::markdown
