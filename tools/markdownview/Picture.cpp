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

constexpr double kPadding = 30;
constexpr int kImageWait = 10000;         // milliseconds
constexpr double kHighestPicture = 30000; // pixels

/// A host for an item that nobody looks at.
class NoHost : public markdown::MarkdownHost {
public:
    void itemChanged(const QRectF& /*area*/) override {}

    void itemResized() override {}

    void openLink(const QString& /*url*/) override {}

    void copyText(const QString& /*text*/) override {}

    void callAfter(std::chrono::milliseconds /*delay*/, std::function<void()> /*work*/) override {}
};

void layOutAll(markdown::MarkdownItem& item) {
    while (!item.isHeightExact()) {
        (void)item.ensureLaidOut(0, item.height() + 1);
    }
}

void waitForImages(markdown::MarkdownServices& services, markdown::MarkdownItem& item) {
    layOutAll(item);
    const QDeadlineTimer deadline(kImageWait);
    while (services.images.loadingCount() > 0 && !deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    layOutAll(item);
}

} // namespace

bool writeDocument(markdown::MarkdownServices& services, const std::string& text, const Options& options) {
    NoHost host;
    markdown::MarkdownItem item(services, host);
    item.setWidth(options.width);
    item.setFontSize(options.fontSize);
    item.setMarkdown(text);
    waitForImages(services, item);
    const QRectF area(0, 0, options.width, item.height());
    if (options.dumps) {
        std::fputs(markdown::describe(item.displayList(area)).c_str(), stdout);
    }
    if (options.pictureFile.isEmpty()) {
        return true;
    }
    const QSizeF size(options.width + 2 * kPadding,
                      std::min(std::ceil(area.height()) + 2 * kPadding, kHighestPicture / options.scale));
    QImage picture((size * options.scale).toSize(), QImage::Format_RGB32);
    picture.setDevicePixelRatio(options.scale);
    picture.fill(services.palette.base);
    QPainter painter(&picture);
    item.paint(painter, area, {kPadding, kPadding});
    painter.end();
    if (!picture.save(options.pictureFile)) {
        std::fprintf(stderr, "markdownview: cannot write %s\n", qPrintable(options.pictureFile));
        return false;
    }
    return true;
}

} // namespace quillmoth::markdownview
