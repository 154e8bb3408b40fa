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

    /// Painted in strips of that height.
    QImage picture(int height = 300, int strip = 300) {
        QImage image(kWidth, height, QImage::Format_RGB32);
        image.fill(services.palette.base);
        QPainter painter(&image);
        for (int top = 0; top < height; top += strip) {
            const QRect area(0, top, kWidth, strip);
            painter.setClipRect(area);
            item.paint(painter, QRectF(area), {});
        }
        return image;
    }

    highlighting::SplashCodeSyntaxHighlighter highlighter{
        highlighting::Theme::midnight(highlighting::Font(16))};
    MarkdownServices services{MarkdownPalette::panel(), &highlighter};
    FakeHost host;
    MarkdownItem item{services, host};
};

} // namespace quillmoth::markdown
