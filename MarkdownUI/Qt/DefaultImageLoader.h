#pragma once

#include "MarkdownUI/Layout/ImageSource.h"

#include <QByteArray>
#include <QImage>
#include <QPixmap>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

class QPainter;
class QRectF;

namespace quillmoth::markdown {

/// Starts loading the data of the absolute URL `url`; later calls `finished` once, on any thread, with no
/// data where that failed.
using ImageDownload = std::function<void(const QString& url, std::function<void(QByteArray)> finished)>;

using ImageClock = std::function<std::chrono::steady_clock::time_point()>;

/// The images of all documents of a window, by URL. "data:" URLs are read in place, all others through the
/// download. Decoding happens on a pool thread. What fails stays a clear area; who asks for it
/// `kRetryPause` or more after the failure has it loaded again. Main thread.
class DefaultImageLoader : public ImageSource {
public:
    static constexpr std::chrono::seconds kRetryPause{3};

    /// Without a download only "data:" URLs give images.
    explicit DefaultImageLoader(ImageDownload download = {},
                                ImageClock clock = std::chrono::steady_clock::now);
    ~DefaultImageLoader() override;
    DefaultImageLoader(const DefaultImageLoader&) = delete;
    DefaultImageLoader& operator=(const DefaultImageLoader&) = delete;

    [[nodiscard]] DefaultImageViewModel requestImage(const std::string& url) override;

    /// Nothing where the image is not there.
    void draw(QPainter& painter, const std::string& url, const QRectF& frame);

    /// Called on the main thread when an image has arrived, until the token is gone. One that fails looks as
    /// it did before.
    [[nodiscard]] std::shared_ptr<void> onChange(std::function<void()> changed);

    /// How many are still being loaded.
    [[nodiscard]] int loadingCount() const { return loadingCount_; }

private:
    struct Entry {
        DefaultImageViewModel status;
        std::chrono::steady_clock::time_point failedAt;
        QImage image;
        QPixmap scaled; ///< for the last size that it was drawn at
    };

    class Inbox; ///< outlives the store where a load does

    [[nodiscard]] bool isToLoad(const std::string& url, const Entry& entry) const;
    void load(const std::string& url);
    void arrived(const std::string& url, QImage image);
    void notify();

    ImageDownload download_;
    ImageClock clock_;
    std::shared_ptr<Inbox> inbox_;
    std::unordered_map<std::string, Entry> entries_;
    std::vector<std::weak_ptr<std::function<void()>>> listeners_;
    int loadingCount_ = 0;
};

} // namespace quillmoth::markdown
