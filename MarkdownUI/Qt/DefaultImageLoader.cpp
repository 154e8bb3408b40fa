#include "MarkdownUI/Qt/DefaultImageLoader.h"

#include "Foundation/ASCII.h"
#include "Foundation/PrivateNetwork.h"
#include "Foundation/URL.h"
#include "MarkdownUI/Qt/ImageLimits.h"

#include <QCoreApplication>
#include <QObject>
#include <QPainter>
#include <QRectF>

#include <algorithm>
#include <utility>

namespace quillmoth::markdown {

namespace {

bool isDataURL(const std::string& url) {
    return equalIgnoringASCIICase(std::string_view(url).substr(0, 5), "data:");
}

/// The bytes in a URL of RFC 2397; none where it is malformed.
QByteArray dataOf(const std::string& url) {
    const auto bytes = QByteArray::fromRawData(url.data(), static_cast<qsizetype>(url.size()));
    const qsizetype comma = bytes.indexOf(',');
    if (comma < 0)
        return {};
    const QByteArray body = QByteArray::fromPercentEncoding(bytes.mid(comma + 1));
    return bytes.left(comma).endsWith(";base64") ? QByteArray::fromBase64(body) : body;
}

/// In lower case; empty for what is not on the web.
std::string hostOf(const std::string& url) {
    const auto parsed = isDataURL(url) ? std::nullopt : URL::parse(url);
    return parsed && parsed->isWeb() ? lowercasedASCII(*parsed->host) : std::string();
}

/// Whether it may be another time.
bool isWorthATry(ImageProblem problem) {
    return problem == ImageProblem::none || problem == ImageProblem::unreachable ||
           problem == ImageProblem::privateNetwork || problem == ImageProblem::elsewhere;
}

} // namespace

/// Carries images from other threads to the main thread. The store is taken out when it goes.
class DefaultImageLoader::Inbox : public std::enable_shared_from_this<Inbox> {
public:
    explicit Inbox(DefaultImageLoader* store) : store_(store) {}

    void detach() { store_ = nullptr; }

    /// Any thread.
    void take(std::string url, ImageAnswer answer) {
        onMainThread([url = std::move(url), answer = std::move(answer)](Inbox& inbox) mutable {
            if (inbox.store_ != nullptr)
                inbox.store_->downloadEnded();
            inbox.decode(std::move(url), std::move(answer));
        });
    }

    /// Main thread.
    void decode(std::string url, ImageAnswer answer) {
        if (store_ == nullptr)
            return;
        store_->decoding_.start(
            [inbox = shared_from_this(), url = std::move(url), answer = std::move(answer)]() mutable {
                DecodedImage decoded = decodeImage(answer);
                inbox->onMainThread([url = std::move(url), data = std::move(answer.data),
                                     decoded = std::move(decoded)](Inbox& self) mutable {
                    if (self.store_ != nullptr)
                        self.store_->arrived(url, std::move(data), std::move(decoded));
                });
            });
    }

private:
    template<class Work>
    void onMainThread(Work work) {
        QObject* const receiver = QCoreApplication::instance();
        if (receiver == nullptr)
            return;
        QMetaObject::invokeMethod(
            receiver, [inbox = shared_from_this(), work = std::move(work)]() mutable { work(*inbox); },
            Qt::QueuedConnection);
    }

    DefaultImageLoader* store_; ///< main thread only
};

std::int64_t DefaultImageLoader::Entry::pixelBytes() const {
    return image.sizeInBytes() + std::int64_t{scaled.width()} * scaled.height() * scaled.depth() / 8;
}

DefaultImageLoader::DefaultImageLoader(ImageServices services)
    : services_(std::move(services)), inbox_(std::make_shared<Inbox>(this)) {
    allowImagesOfFullSize();
    decoding_.setMaxThreadCount(1);
}

DefaultImageLoader::~DefaultImageLoader() {
    inbox_->detach();
    decoding_.clear();
}

/// How far an image may be loaded from by itself; nothing where it may not.
std::optional<ImageReach> DefaultImageLoader::reachOf(const std::string& url) const {
    const ImagePermissions& permissions = services_.permissions;
    if (permissions.isUnrestricted)
        return ImageReach::asked;
    const std::string host = hostOf(url);
    if (host.empty() || isPrivateHost(host))
        return std::nullopt;
    if (permissions.loadsAll && permissions.loadsAll())
        return ImageReach::publicNetwork;
    return permissions.loadsFrom && permissions.loadsFrom(host) ? std::optional(ImageReach::sameHost)
                                                                : std::nullopt;
}

/// Since its last failure, if there was one.
bool DefaultImageLoader::hasPaused(const Entry& entry) const {
    return !entry.failedAt || services_.clock() - *entry.failedAt >= kRetryPause;
}

DefaultImageViewModel DefaultImageLoader::requestImage(const std::string& url) {
    using State = DefaultImageViewModel::State;
    Entry& entry = entries_[url];
    const State state = entry.status.state;
    const bool isRetry =
        state == State::failure && hasPaused(entry) && !isDataURL(url); // such a one cannot become better
    const bool isHeld = state == State::placeholder && entry.problem == ImageProblem::none;
    if (entry.isLoading || !(state == State::notRequested || isRetry || isHeld))
        return entry.status;
    if (isDataURL(url)) {
        start(url, entry, ImageReach::asked);
    } else if (const auto reach = reachOf(url)) {
        start(url, entry, *reach);
    } else if (!hostOf(url).empty()) {
        entry.status = {.state = State::placeholder, .isPressable = true};
    } else {
        entry.status.state = State::failure;
    }
    return entry.status;
}

void DefaultImageLoader::load(const std::string& url) {
    const auto known = entries_.find(url);
    if (known == entries_.end() || known->second.isLoading || !known->second.status.isPressable)
        return;
    start(url, known->second, ImageReach::asked);
    notify();
}

void DefaultImageLoader::alwaysLoad(const std::string& url) {
    const auto shown = placeholder(url);
    if (!shown || !shown->canAlwaysLoad)
        return;
    services_.permissions.allow(hostOf(url));
    // What has failed before does not load by itself.
    if (entries_[url].problem != ImageProblem::none)
        return load(url);
    permissionsChanged();
}

std::optional<ImagePlaceholder> DefaultImageLoader::placeholder(const std::string& url) const {
    const auto known = entries_.find(url);
    if (known == entries_.end() || known->second.status.state != DefaultImageViewModel::State::placeholder)
        return std::nullopt;
    const Entry& entry = known->second;
    const std::string host = hostOf(url);
    const bool isPressable = entry.status.isPressable && !entry.isLoading;
    return ImagePlaceholder{.host = QString::fromStdString(host),
                            .problem = entry.problem,
                            .isLoading = entry.isLoading,
                            .isPressable = isPressable,
                            .canAlwaysLoad =
                                isPressable && services_.permissions.allow && !isPrivateHost(host)};
}

void DefaultImageLoader::start(const std::string& url, Entry& entry, ImageReach reach) {
    entry.isLoading = true;
    entry.reach = reach;
    entry.problem = ImageProblem::none;
    if (!entry.status.isShown())
        entry.status.state = DefaultImageViewModel::State::loading;
    ++loadingCount_;
    if (isDataURL(url))
        inbox_->decode(url, {dataOf(url)});
    else if (!services_.download)
        inbox_->decode(url, {});
    else
        waiting_.push_back({QString::fromStdString(url), reach});
    startDownloads();
}

void DefaultImageLoader::startDownloads() {
    while (!waiting_.empty() && downloads_ < kMostImageDownloads) {
        const ImageRequest request = std::move(waiting_.front());
        waiting_.pop_front();
        ++downloads_;
        services_.download(request, [inbox = inbox_, url = request.url.toStdString()](ImageAnswer answer) {
            inbox->take(url, std::move(answer));
        });
    }
}

void DefaultImageLoader::downloadEnded() {
    --downloads_;
    startDownloads();
}

/// Decodes again what was dropped, from the file where that is kept.
void DefaultImageLoader::bringBack(const std::string& url, Entry& entry) {
    // One that is drawn at two sizes must not be dropped and decoded without end.
    const auto now = services_.clock();
    const bool isRecent = entry.broughtBackAt && now - *entry.broughtBackAt < kImageStays;
    if (entry.isLoading || isRecent || !hasPaused(entry))
        return;
    entry.broughtBackAt = now;
    if (entry.data.isEmpty())
        return start(url, entry, entry.reach);
    entry.isLoading = true;
    ++loadingCount_;
    inbox_->decode(url, {entry.data});
}

void DefaultImageLoader::arrived(const std::string& url, QByteArray data, DecodedImage decoded) {
    Entry& entry = entries_[url];
    entry.isLoading = false;
    --loadingCount_;
    if (decoded.problem != ImageProblem::none)
        return failed(url, entry, decoded.problem);
    const bool isKnown = entry.status.state == DefaultImageViewModel::State::success;
    if (!isKnown) {
        const QSizeF size = decoded.image.deviceIndependentSize();
        entry.status = {.state = DefaultImageViewModel::State::success,
                        .naturalSize = {size.width(), size.height()}};
    }
    entry.image = std::move(decoded.image);
    entry.scaled = QPixmap();
    if (!isDataURL(url))
        entry.data = std::move(data);
    entry.drawnAt = services_.clock(); // or it would be dropped before it is drawn
    trim();
    notify();
}

void DefaultImageLoader::failed(const std::string& url, Entry& entry, ImageProblem problem) {
    using State = DefaultImageViewModel::State;
    entry.failedAt = services_.clock();
    if (entry.status.state == State::success) // its size is known; it is tried again when it is drawn
        return;
    const bool isQuiet = problem == ImageProblem::unreachable || problem == ImageProblem::unknownFormat;
    if (entry.status.state != State::placeholder && isQuiet) {
        entry.status.state = State::failure;
        return;
    }
    entry.problem = problem;
    entry.status = {.state = State::placeholder, .isPressable = !isDataURL(url) && isWorthATry(problem)};
    notify();
}

void DefaultImageLoader::draw(QPainter& painter, const std::string& url, const QRectF& frame) {
    const auto known = entries_.find(url);
    if (known == entries_.end() || known->second.status.state != DefaultImageViewModel::State::success)
        return;
    Entry& entry = known->second;
    entry.drawnAt = services_.clock();
    const double scale = painter.device()->devicePixelRatioF();
    const QSize pixels = (frame.size() * scale).toSize();
    if (entry.scaled.size() != pixels) {
        if (entry.image.isNull())
            bringBack(url, entry);
        else
            entry.scaled = QPixmap::fromImage(
                entry.image.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    }
    if (!entry.scaled.isNull())
        painter.drawPixmap(frame, entry.scaled, QRectF(entry.scaled.rect()));
    trim();
}

std::int64_t DefaultImageLoader::keptBytes() const {
    std::int64_t bytes = 0;
    for (const auto& [url, entry] : entries_)
        bytes += entry.pixelBytes() + entry.data.size();
    return bytes;
}

void DefaultImageLoader::trim() {
    std::int64_t excess = keptBytes() - kMostImagesKept;
    if (excess <= 0)
        return;
    const auto now = services_.clock();
    std::vector<Entry*> unseen;
    for (auto& [url, entry] : entries_) {
        if (now - entry.drawnAt > kImageStays)
            unseen.push_back(&entry);
    }
    std::ranges::sort(unseen, {}, &Entry::drawnAt);
    for (auto entry = unseen.begin(); entry != unseen.end() && excess > 0; ++entry) {
        excess -= (*entry)->pixelBytes();
        (*entry)->image = QImage();
        (*entry)->scaled = QPixmap();
    }
    for (auto& [url, entry] : entries_) {
        if (excess > 0 && !entry.scaled.isNull()) // looks the same until its size changes
            excess -= std::exchange(entry.image, QImage()).sizeInBytes();
    }
    for (auto entry = unseen.begin(); entry != unseen.end() && excess > 0; ++entry) {
        excess -= (*entry)->data.size();
        (*entry)->data.clear();
    }
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
