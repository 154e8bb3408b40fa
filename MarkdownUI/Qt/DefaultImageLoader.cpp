#include "MarkdownUI/Qt/DefaultImageLoader.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QImageReader>
#include <QObject>
#include <QPainter>
#include <QRectF>
#include <QThreadPool>
#include <QUrl>

#include <algorithm>
#include <utility>
#include <vector>

namespace quillmoth::markdown {

namespace {

constexpr int kLargestSide = 8192; // device pixels; larger images are decoded smaller

QImage decoded(QByteArray data) {
    QBuffer buffer(&data);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.width() > kLargestSide || size.height() > kLargestSide)
        reader.setScaledSize(size.scaled(kLargestSide, kLargestSide, Qt::KeepAspectRatio));
    return reader.read();
}

bool isDataURL(const std::string& url) {
    return QByteArray::fromRawData(url.data(), static_cast<qsizetype>(url.size()))
               .left(5)
               .compare("data:", Qt::CaseInsensitive) == 0;
}

/// The bytes in a URL of RFC 2397; none where it is malformed.
QByteArray dataOf(const std::string& url) {
    const QByteArray bytes = QByteArray::fromStdString(url);
    const qsizetype comma = bytes.indexOf(',');
    if (comma < 0)
        return {};
    const QByteArray body = QByteArray::fromPercentEncoding(bytes.mid(comma + 1));
    return bytes.left(comma).endsWith(";base64") ? QByteArray::fromBase64(body) : body;
}

} // namespace

/// Carries images from the pool's threads to the main thread. The store is taken out when it goes.
class DefaultImageLoader::Inbox : public QObject, public std::enable_shared_from_this<Inbox> {
public:
    explicit Inbox(DefaultImageLoader* store) : store_(store) {}

    void detach() { store_ = nullptr; }

    /// Any thread.
    void decode(std::string url, QByteArray data) {
        QThreadPool::globalInstance()->start(
            [inbox = shared_from_this(), url = std::move(url), data = std::move(data)]() mutable {
                deliver(std::move(inbox), std::move(url), decoded(std::move(data)));
            });
    }

private:
    static void deliver(std::shared_ptr<Inbox> inbox, std::string url, QImage image) {
        QObject* const receiver = QCoreApplication::instance();
        if (receiver == nullptr)
            return;
        QMetaObject::invokeMethod(
            receiver,
            [inbox = std::move(inbox), url = std::move(url), image = std::move(image)]() mutable {
                if (inbox->store_ != nullptr)
                    inbox->store_->arrived(url, std::move(image));
            },
            Qt::QueuedConnection);
    }

    DefaultImageLoader* store_; ///< main thread only
};

DefaultImageLoader::DefaultImageLoader(ImageDownload download, ImageClock clock)
    : download_(std::move(download)), clock_(std::move(clock)), inbox_(std::make_shared<Inbox>(this)) {}

DefaultImageLoader::~DefaultImageLoader() {
    inbox_->detach();
}

DefaultImageViewModel DefaultImageLoader::requestImage(const std::string& url) {
    Entry& entry = entries_[url];
    if (isToLoad(url, entry)) {
        entry.status.state = DefaultImageViewModel::State::loading;
        ++loadingCount_;
        load(url);
    }
    return entry.status;
}

bool DefaultImageLoader::isToLoad(const std::string& url, const Entry& entry) const {
    if (entry.status.state == DefaultImageViewModel::State::failure)
        return clock_() - entry.failedAt >= kRetryPause && !isDataURL(url); // such a one cannot become better
    return entry.status.state == DefaultImageViewModel::State::notRequested;
}

void DefaultImageLoader::load(const std::string& url) {
    if (isDataURL(url)) {
        inbox_->decode(url, dataOf(url));
    } else if (download_) {
        download_(QString::fromStdString(url),
                  [inbox = inbox_, url](QByteArray data) { inbox->decode(url, std::move(data)); });
    } else {
        inbox_->decode(url, {});
    }
}

void DefaultImageLoader::arrived(const std::string& url, QImage image) {
    Entry& entry = entries_[url];
    if (entry.status.state != DefaultImageViewModel::State::loading)
        return;
    --loadingCount_;
    if (image.isNull()) {
        entry.status = {DefaultImageViewModel::State::failure, {}};
        entry.failedAt = clock_();
        return;
    }
    const QSizeF size = image.deviceIndependentSize();
    entry.status = {DefaultImageViewModel::State::success, {size.width(), size.height()}};
    entry.image = std::move(image);
    notify();
}

void DefaultImageLoader::draw(QPainter& painter, const std::string& url, const QRectF& frame) {
    const auto known = entries_.find(url);
    if (known == entries_.end() || known->second.image.isNull())
        return;
    Entry& entry = known->second;
    const double scale = painter.device()->devicePixelRatioF();
    const QSize pixels = (frame.size() * scale).toSize();
    if (entry.scaled.size() != pixels) {
        entry.scaled =
            QPixmap::fromImage(entry.image.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    }
    painter.drawPixmap(frame, entry.scaled, QRectF(entry.scaled.rect()));
}

std::shared_ptr<void> DefaultImageLoader::onChange(std::function<void()> changed) {
    auto listener = std::make_shared<std::function<void()>>(std::move(changed));
    listeners_.push_back(listener);
    return listener;
}

void DefaultImageLoader::notify() {
    const auto listeners = listeners_; // a listener may add or remove others
    for (const auto& weak : listeners) {
        if (const auto listener = weak.lock())
            (*listener)();
    }
    std::erase_if(listeners_, [](const auto& listener) { return listener.expired(); });
}

} // namespace quillmoth::markdown
