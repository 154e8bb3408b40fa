#include "RemoteImages.h"

#include <QAccessible>
#include <QMenu>
#include <QPainter>
#include <QWidget>

namespace quillmoth::markdown {

namespace {

using namespace std::chrono_literals;

class HeldImagesTest : public RemoteImages {
protected:
    QImage paint() {
        QImage image(static_cast<int>(kImageSide), static_cast<int>(kImageSide), QImage::Format_RGB32);
        image.fill(Qt::black);
        QPainter painter(&image);
        item.paint(painter, QRectF(0, 0, kImageSide, kImageSide), {});
        return image;
    }
};

/// A PNG that says it has that size, without any pixels.
QByteArray hollowPNG(std::uint32_t width, std::uint32_t height) {
    QByteArray data = pictureData(Qt::red, 1, 1);
    for (int byte = 0; byte < 4; ++byte) {
        data[16 + byte] = static_cast<char>(width >> (24 - 8 * byte));
        data[20 + byte] = static_cast<char>(height >> (24 - 8 * byte));
    }
    // The checksum of the header holds the size too.
    std::uint32_t sum = ~0U;
    for (int at = 12; at < 29; ++at) {
        sum ^= static_cast<unsigned char>(data[at]);
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum >> 1) ^ (0xEDB88320U & (0U - (sum & 1)));
    }
    for (int byte = 0; byte < 4; ++byte)
        data[29 + byte] = static_cast<char>(~sum >> (24 - 8 * byte));
    return data;
}

} // namespace

TEST_F(HeldImagesTest, WaitForAClickOrAKeyAndLoadOneByOne) {
    show("![a](https://x.org/a)\n\nSee ![b](https://y.org/b) and more\n\n"
         "[![d](https://x.org/d)](https://link.org)\n");
    EXPECT_TRUE(asked.empty());
    EXPECT_EQ(noteOf("https://x.org/a"), "Click to load");
    EXPECT_EQ(item.content().textOfBlock(0), "See \uFFFC and more") << "it stands in the text";
    click(image());
    ASSERT_EQ(asked.size(), 1U);
    EXPECT_EQ(asked[0].first.url, "https://x.org/a");
    EXPECT_EQ(asked[0].first.reach, ImageReach::asked);
    EXPECT_EQ(noteOf("https://x.org/a"), "Loading…");
    item.activate(image());
    EXPECT_EQ(asked.size(), 1U) << "a second click while it loads";
    answer({pictureData(Qt::red, 40, 30)});
    EXPECT_EQ(noteOf("https://x.org/a"), "none");
    EXPECT_EQ(item.content().document()->rectanglesOf(image()).front().width, 40);

    const Rect linked = item.content().document()->rectanglesOf(item.parts().back()).front();
    EXPECT_EQ(item.linkAt({linked.x + 1, linked.y + 1}), "");
    EXPECT_EQ(item.targetAt({linked.x + 1, linked.y + 1}), "https://x.org/d") << "told before the press";
    const QString text = QString::fromStdString(item.content().textOfBlock(0));
    for (const auto key : {Qt::Key_Space, Qt::Key_Return}) {
        ASSERT_TRUE(item.focusNextControl(true));
        EXPECT_TRUE(press(key));
    }
    ASSERT_EQ(asked.size(), 2U);
    EXPECT_EQ(asked[0].first.url, "https://y.org/b");
    EXPECT_EQ(asked[1].first.url, "https://x.org/d");
    EXPECT_TRUE(host.opened.isEmpty()) << "a placeholder is no link";
    answer({pictureData(Qt::red, 40, 30)});
    answer({pictureData(Qt::red, 40, 30)});
    EXPECT_EQ(QString::fromStdString(item.content().textOfBlock(0)), text);
    click(item.parts().back());
    EXPECT_EQ(host.opened, QStringList("https://link.org")) << "an image is";
}

TEST_F(HeldImagesTest, OfAHostThatIsAllowedLoadByThemselves) {
    show("![a](https://X.org/a)\n\n![b](https://x.org/b)\n\n![c](https://y.org/c)\n");
    QMenu menu;
    const Rect frame = item.content().document()->rectanglesOf(image()).front();
    item.addActions(menu, {frame.x + 1, frame.y + 1});
    EXPECT_EQ(menu.actions().at(0)->text(), "Load Image");
    ASSERT_EQ(menu.actions().at(1)->text(), "Always Load Images from x.org");
    menu.actions().at(1)->trigger();
    EXPECT_EQ(hosts, std::set<std::string>{"x.org"});
    (void)item.displayList({0, 0, kImageSide, kImageSide});
    ASSERT_EQ(asked.size(), 2U);
    EXPECT_EQ(asked[1].first.url, "https://x.org/b");
    EXPECT_EQ(asked[1].first.reach, ImageReach::sameHost);
    answer({{}, ImageProblem::elsewhere});
    EXPECT_EQ(noteOf("https://X.org/a"), "Leads to another host. Click to load");
    answer({{}, ImageProblem::privateNetwork});
    services.images.permissionsChanged();
    (void)item.displayList({0, 0, kImageSide, kImageSide});
    EXPECT_TRUE(asked.empty()) << "such a one takes a click from then on";

    loadsAll = true;
    services.images.permissionsChanged();
    (void)item.displayList({0, 0, kImageSide, kImageSide});
    ASSERT_EQ(asked.size(), 1U);
    EXPECT_EQ(asked[0].first.url, "https://y.org/c");
    EXPECT_EQ(asked[0].first.reach, ImageReach::publicNetwork);
    answer({});
}

TEST_F(HeldImagesTest, OfPrivateAddressesNeverLoadByThemselvesAndFilesNotAtAll) {
    loadsAll = true;
    hosts = {"127.0.0.1", "localhost", "192.168.1.1", "[::1]"};
    show(
        "![a](http://127.0.0.1:8080/a)\n\n![b](http://localhost/b)\n\n![c](http://192.168.1.1/c)\n\n"
        "![d](http://[::1]/d)\n\n![e](http://0x7f.1/e)\n\n![f](file:///etc/passwd)\n\n![g](ftp://x.org/g)\n\n"
        "![h](h.png)\n");
    EXPECT_TRUE(asked.empty());
    QMenu menu;
    const Rect frame = item.content().document()->rectanglesOf(image()).front();
    item.addActions(menu, {frame.x + 1, frame.y + 1});
    EXPECT_EQ(menu.actions().at(0)->text(), "Load Image");
    EXPECT_TRUE(menu.actions().at(1)->isSeparator()) << "and not always from there";
    for (std::size_t index = 0; index < 8; ++index) {
        EXPECT_EQ(image(index).isPressable, index < 5) << index;
        services.images.load(image(index).source);
        services.images.alwaysLoad(image(index).source);
    }
    EXPECT_EQ(asked.size(), 5U) << "a click loads what is on the web";
    EXPECT_FALSE(services.images.placeholder("http://[::1]/d")->canAlwaysLoad);
    while (!asked.empty())
        answer({});
    EXPECT_EQ(noteOf("http://localhost/b"), "Could not be loaded. Click to try again");
}

TEST_F(HeldImagesTest, AreDecodedByWhatTheyAreAndWithinTheLimits) {
    const char* noImage = "Not a PNG, JPEG, GIF or WebP image";
    const std::pair<ImageAnswer, const char*> rows[] = {
        {{"<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>"}, noImage},
        {{"<?xml version='1.0'?><svg xmlns='http://www.w3.org/2000/svg'/>"}, noImage},
        {{"BM some other format that Qt knows"}, noImage},
        {{pictureData(Qt::red, 9, 9).first(40)}, noImage},
        {{"\x89PNG\r\n\x1A\n" + QByteArray(kMostImageBytes, 'x')}, "Larger than 16 MB, not loaded"},
        {{{}, ImageProblem::tooManyBytes}, "Larger than 16 MB, not loaded"},
        {{hollowPNG(8001, 8000)}, "More than 64 megapixels, not shown"},
        {{hollowPNG(0x7FFFFFFF, 0x7FFFFFFF)}, noImage},
        {{hollowPNG(8000, 8000)}, noImage}, // no pixels
        {{pictureData(Qt::red, 9, 9)}, "none"},
        {{pictureData(Qt::red, 9, 9, "JPG")}, "none"},
        {{QByteArray::fromBase64("R0lGODlhAQABAIAAAP8AAAAAACwAAAAAAQABAAACAkQBADs=")}, "none"},
        {{QByteArray::fromBase64("UklGRiIAAABXRUJQVlA4IBYAAAAwAQCdASoBAAEADsD+JaQAA3AAAAAA")},
         "none"}, // WebP
    };

    int number = 0;
    for (const auto& [result, note] : rows) {
        const std::string url = "https://x.org/" + std::to_string(++number) + ".svg";
        show("![a](" + url + ")");
        click(image());
        answer(result);
        EXPECT_EQ(noteOf(url), note) << number;
        EXPECT_FALSE(image().acts()) << number;
    }
    show("![a](" + pictureURL(Qt::red, 9, 9) + ")\n\n![b](data:image/png;base64," +
         hollowPNG(9000, 9000).toBase64().toStdString() + ")");
    EXPECT_EQ(item.content().document()->rectanglesOf(image()).front().width, 9);
    EXPECT_EQ(noteOf(image(1).source), "More than 64 megapixels, not shown");
}

TEST_F(HeldImagesTest, OutOfSightAreDroppedAndComeBackWithoutTheNetwork) {
    loadsAll = true;
    constexpr int kPictures = 30; // of 4 MB each
    std::string text;
    for (int number = 0; number < kPictures; ++number)
        text += "![a](https://x.org/" + std::to_string(number) + ")\n\n";
    item.setWidth(kImageSide);
    item.setForm(TextForm::markdown);
    item.setText(text);
    (void)item.displayList({0, 0, kImageSide, kImageSide * 100});
    int answered = 0;
    for (; !asked.empty(); ++answered) {
        EXPECT_LE(asked.size(), static_cast<std::size_t>(kMostImageDownloads));
        now += 2s;
        answer({pictureData(QColor(255, answered, 0), 1000, 1000)});
    }
    EXPECT_EQ(answered, kPictures);
    EXPECT_LE(services.images.keptBytes(), kMostImagesKept);
    EXPECT_GT(services.images.keptBytes(), kMostImagesKept / 2);
    (void)paint();
    while (services.images.loadingCount() > 0)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_TRUE(asked.empty()) << "the file is kept";
    EXPECT_EQ(paint().pixelColor(5, 5), QColor(255, 0, 0)) << "the oldest, dropped first";
    now += 1h;
    (void)paint();
    EXPECT_LE(services.images.keptBytes(), kMostImagesKept);
    EXPECT_EQ(services.images.loadingCount(), 0) << "what is on the screen stays";
}

TEST_F(HeldImagesTest, AreButtonsForAssistiveTechnology) {
    show("See ![A moth](https://x.org/a)\n");
    QWidget widget;
    AccessibleDocument document(widget, item, [] { return QPoint(); });
    QAccessibleInterface* const accessible = &document;
    ASSERT_EQ(accessible->childCount(), 1);
    QAccessibleInterface* const part = accessible->child(0);
    EXPECT_EQ(part->role(), QAccessible::PushButton);
    EXPECT_EQ(part->text(QAccessible::Name), "Image: A moth, from x.org, press to load it");
    EXPECT_TRUE(part->state().focusable);
    EXPECT_GT(part->rect().width(), 100);
    const auto press = QAccessibleActionInterface::pressAction();
    EXPECT_EQ(part->actionInterface()->actionNames(), QStringList({press, "Always Load Images from x.org"}));
    part->actionInterface()->doAction(press);
    EXPECT_EQ(part->text(QAccessible::Name), "Image: A moth, from x.org, loading");
    answer({pictureData(Qt::red, 40, 30)});
    ASSERT_EQ(accessible->childCount(), 1);
    EXPECT_EQ(accessible->child(0)->role(), QAccessible::Graphic);
    EXPECT_EQ(accessible->child(0)->text(QAccessible::Name), "A moth");
}

} // namespace quillmoth::markdown
