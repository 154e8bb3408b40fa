#include "MarkdownUI/Qt/AccessibleDocument.h"

#include "ItemTest.h"

#include <QAccessible>
#include <QWidget>

namespace quillmoth::markdown {

using AccessibleMarkdown = ItemTest;

TEST_F(AccessibleMarkdown, AnItemIsOneDocumentWithHeadingsLinksAndButtons) {
    show("# T\u00EDtle\n\nSee [guide](https://example.org).\n\n```\ncode\n```\n");
    QWidget widget;
    AccessibleDocument document(widget, item, [] { return QPoint(); });
    QAccessibleInterface* const accessible = &document;
    EXPECT_EQ(accessible->role(), QAccessible::Document);
    QAccessibleTextInterface* text = accessible->textInterface();
    ASSERT_NE(text, nullptr);
    const QString all = text->text(0, text->characterCount());
    EXPECT_EQ(all, QString::fromStdString(item.content().documentText()));
    EXPECT_TRUE(all.startsWith("T\u00EDtle\n"));

    const int link = static_cast<int>(all.indexOf("guide"));
    int begin = 0;
    int end = 0;
    EXPECT_EQ(text->attributes(0, &begin, &end), "level:1;");
    EXPECT_EQ(text->attributes(link + 1, &begin, &end), "href:https://example.org;");
    EXPECT_EQ(all.mid(begin, end - begin), "guide");
    EXPECT_EQ(text->offsetAtPoint(text->characterRect(link).center()), link);
    text->setSelection(0, link, link + 5);
    EXPECT_EQ(item.selectedText(), "guide");

    ASSERT_EQ(accessible->childCount(), 3);
    EXPECT_EQ(accessible->child(0)->role(), QAccessible::Heading);
    EXPECT_EQ(accessible->child(0)->text(QAccessible::Name), "T\u00EDtle");
    EXPECT_EQ(accessible->child(1)->role(), QAccessible::Link);
    accessible->child(1)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(host.opened, QStringList("https://example.org"));
    EXPECT_EQ(accessible->child(2)->role(), QAccessible::PushButton);
    EXPECT_EQ(accessible->child(2)->text(QAccessible::Name), "Copy code");
    accessible->child(2)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(host.copied, QStringList("code"));
    EXPECT_EQ(accessible->child(2)->text(QAccessible::Name), "Copied") << "as the button shows";

    item.setText("plain");
    EXPECT_EQ(accessible->childCount(), 0);
}

} // namespace quillmoth::markdown
