#include "Picture.h"

#include "MarkdownUI/Qt/MarkdownItem.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QImage>
#include <QPainter>

#include <cmath>
#include <cstdio>

namespace quillmoth::markdownview {

namespace {

constexpr double kPicturePadding = 30;
constexpr int kImageWait = 10000;         // milliseconds
constexpr double kHighestPicture = 30000; // pixels

/// A host for an item that nobody looks at.
class NoHost : public markdown::MarkdownHost {
public:
    void itemChanged(const QRectF& /*area*/) override {}

    void itemResized() override {}

    void openLink(const QString& /*url*/) override {}

    void copyText(const QString& /*text*/) override {}

    void copyButtonRenamed(std::size_t /*codeBlock*/) override {}

    void callAfter(std::chrono::milliseconds /*delay*/, std::function<void()> /*work*/) override {}
};

void layOutAll(markdown::MarkdownItem& item) {
    while (!item.isHeightExact())
        (void)item.ensureLaidOut(0, item.height() + 1);
}

void waitForImages(markdown::MarkdownServices& services, markdown::MarkdownItem& item) {
    layOutAll(item);
    const QDeadlineTimer deadline(kImageWait);
    while (services.images.loadingCount() > 0 && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    layOutAll(item);
}

/// The whole document, as far as a picture may reach.
QImage pictureOf(markdown::MarkdownServices& services, markdown::MarkdownItem& item, double width,
                 double scale) {
    const QRectF area(0, 0, width, item.height());
    const QSizeF size(width + 2 * kPicturePadding,
                      std::min(std::ceil(area.height()) + 2 * kPicturePadding, kHighestPicture / scale));
    QImage picture((size * scale).toSize(), QImage::Format_RGB32);
    picture.setDevicePixelRatio(scale);
    picture.fill(services.palette.base);
    QPainter painter(&picture);
    item.paint(painter, area, {kPicturePadding, kPicturePadding});
    return picture;
}

bool save(const QImage& picture, const QString& file) {
    constexpr int kQuickly = 80; // larger files, in a third of the time
    if (picture.save(file, "PNG", kQuickly))
        return true;
    std::fprintf(stderr, "markdownview: cannot write %s\n", qPrintable(file));
    return false;
}

} // namespace

bool writeDocument(markdown::MarkdownServices& services, const std::string& text, const Options& options) {
    NoHost host;
    markdown::MarkdownItem item(services, host);
    item.setWidth(options.width);
    item.setFontSize(options.fontSize);
    item.setForm(markdown::TextForm::markdown);
    item.setText(text);
    waitForImages(services, item);
    if (options.dumps) {
        const QRectF area(0, 0, options.width, item.height());
        std::fputs(markdown::describe(item.displayList(area)).c_str(), stdout);
    }
    return options.pictureFile.isEmpty() ||
           save(pictureOf(services, item, options.width, options.scale), options.pictureFile);
}

QStringList writeGallery(markdown::MarkdownServices& services, const std::string& text,
                         const QString& folder) {
    const QString colors = services.palette.isDark ? QStringLiteral("dark") : QStringLiteral("light");
    NoHost host;
    markdown::MarkdownItem item(services, host);
    item.setForm(markdown::TextForm::markdown);
    item.setText(text);
    QStringList names;
    for (const int size : {12, 16, 40}) {
        item.setFontSize(size);
        for (const int width : {360, 592, 1200}) {
            item.setWidth(width);
            waitForImages(services, item);
            for (const int scale : {1, 2}) {
                names += QStringLiteral("%1-%2-%3-%4x.png").arg(colors).arg(size).arg(width).arg(scale);
                if (!save(pictureOf(services, item, width, scale), folder + '/' + names.back()))
                    return {};
            }
        }
    }
    return names;
}

} // namespace quillmoth::markdownview
