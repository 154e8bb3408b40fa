#include "Quillmoth/Shell/Panel/TextColumn.h"
#include "Quillmoth/Shell/Looks/Fonts.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace quillmoth {

namespace {

TextColumn makeColumn(double width) {
    TextColumn column;
    column.setStyle({.font = textFont(16), .lineHeight = 22, .alignment = Qt::AlignLeft});
    column.setWidth(width);
    return column;
}

TEST(TextColumnTest, AnAppendedTextIsSetLikeOneThatCameAtOnce) {
    const std::vector<QString> texts{
        QStringLiteral("A moth finds its way.\n\nWith a lamp it fails, and it turns and turns around it.\n")
            .repeated(20),
        QStringLiteral("word ").repeated(900),
        QStringLiteral("unbroken").repeated(300),
        QStringLiteral("مرحبا بالعالم كيف حالك ").repeated(120),
        QStringLiteral("🦋👩‍🚀🇫🇷 ").repeated(100),
        QString(),
        QStringLiteral("\n\n\n"),
    };
    for (const QString& text : texts) {
        TextColumn whole = makeColumn(300);
        whole.setText(text);
        TextColumn grown = makeColumn(300);
        grown.setText(QString());
        for (qsizetype start = 0; start < text.size(); start += 7)
            grown.append(text.mid(start, 7));
        EXPECT_EQ(grown.text(), whole.text());
        EXPECT_EQ(grown.height(), whole.height()) << text.left(20).toStdString();
        for (const int position : {0, 3, 40, static_cast<int>(text.size())}) {
            const int inText = std::min(position, static_cast<int>(text.size()));
            EXPECT_EQ(grown.lineRectAt(inText), whole.lineRectAt(inText)) << inText;
        }
    }
}

TEST(TextColumnTest, PointsAndPositionsAgree) {
    TextColumn column = makeColumn(300);
    column.setText(QStringLiteral("some words to be broken into lines, and more of them\nlast").repeated(30));
    for (int position = 1; position < column.text().size(); position += 37) {
        const QRectF line = column.lineRectAt(position);
        const int start = column.positionAt({-5, line.center().y()});
        const int end = column.positionAt({10000, line.center().y()});
        EXPECT_LE(start, position);
        EXPECT_GE(end + 1, position);
    }
}

TEST(TextColumnTest, OnlyLayoutsNearTheViewAreKept) {
    TextColumn column = makeColumn(300);
    column.setText(QStringLiteral("A line of text.\n").repeated(5000));
    EXPECT_FALSE(column.isComplete()) << "a long text is not set at once";
    EXPECT_NEAR(column.height(), 5001 * 22, 22);
    column.ensureLaidOut(50400);
    QImage image(300, 400, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    column.paint(painter, QRectF(0, 50000, 300, 400), Qt::white, 0, 0);
    EXPECT_GT(column.heldLayouts(), 10);
    EXPECT_LT(column.heldLayouts(), 120);
}

} // namespace

} // namespace quillmoth
