#pragma once

#include "MarkdownUI/Layout/ImageSource.h"
#include "MarkdownUI/Qt/ImageDecoder.h"
#include "MarkdownUI/Qt/ImageDownload.h"
#include "MarkdownUI/Qt/ImagePlaceholder.h"

#include <QImage>
#include <QPixmap>
#include <QThreadPool>

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

class QPainter;
class QRectF;

namespace quillmoth::markdown {

/// The images of all documents of a window, by URL. "data:" URLs are read in place. Those on the web wait
/// behind a placeholder until the user asks for them, or load by themselves where that is permitted, never
/// from a private address, some at a time; no other URL is opened. Decoding happens on a thread of its own,
/// one at a time. What fails by itself stays a clear area; who asks for it `kRetryPause` or more after the
/// failure has it loaded again. Of more than kMostImagesKept what was not drawn for longest is dropped, the
/// pictures first, and comes back when it is drawn. Main thread.
class DefaultImageLoader : public ImageSource {
public:
    static constexpr std::chrono::seconds kRetryPause{3};

    explicit DefaultImageLoader(ImageServices services = {});
    ~DefaultImageLoader() override;
    DefaultImageLoader(const DefaultImageLoader&) = delete;
    DefaultImageLoader& operator=(const DefaultImageLoader&) = delete;

    [[nodiscard]] DefaultImageViewModel requestImage(const std::string& url) override;

    /// The user asks for what a placeholder stands for.
    void load(const std::string& url);

    /// The same for all images of its host, now and later.
    void alwaysLoad(const std::string& url);

    /// What stands for the image; nothing where no placeholder does.
    [[nodiscard]] std::optional<ImagePlaceholder> placeholder(const std::string& url) const;

    /// Nothing where the image is not there.
    void draw(QPainter& painter, const std::string& url, const QRectF& frame);

    /// What is permitted may be something else now.
    void permissionsChanged() { notify(); }

    /// Called on the main thread when an image has arrived or a placeholder has changed, until the token is
    /// gone. One that fails by itself looks as it did before.
    [[nodiscard]] std::shared_ptr<void> onChange(std::function<void()> changed);

    /// How many are still being loaded.
    [[nodiscard]] int loadingCount() const { return loadingCount_; }

    /// Bytes of files and pixels.
    [[nodiscard]] std::int64_t keptBytes() const;

private:
    struct Entry {
        DefaultImageViewModel status;
        bool isLoading = false;
        ImageReach reach = ImageReach::sameHost; ///< of the last load
        ImageProblem problem = ImageProblem::none;
        std::optional<std::chrono::steady_clock::time_point> failedAt;
        QByteArray data; ///< the file; none of a "data:" URL, which holds it
        QImage image;
        QPixmap scaled; ///< for the last size that it was drawn at
        std::chrono::steady_clock::time_point drawnAt;
        std::optional<std::chrono::steady_clock::time_point> broughtBackAt;

        [[nodiscard]] std::int64_t pixelBytes() const;
    };

    class Inbox; ///< outlives the store where a load does

    [[nodiscard]] std::optional<ImageReach> reachOf(const std::string& url) const;
    [[nodiscard]] bool hasPaused(const Entry& entry) const;
    void start(const std::string& url, Entry& entry, ImageReach reach);
    void startDownloads();
    void downloadEnded();
    void bringBack(const std::string& url, Entry& entry);
    void arrived(const std::string& url, QByteArray data, DecodedImage decoded);
    void failed(const std::string& url, Entry& entry, ImageProblem problem);
    void trim();
    void notify();

    ImageServices services_;
    std::shared_ptr<Inbox> inbox_;
    std::unordered_map<std::string, Entry> entries_;
    std::vector<std::weak_ptr<std::function<void()>>> listeners_;
    std::deque<ImageRequest> waiting_; ///< for others to end
    int downloads_ = 0;
    int loadingCount_ = 0;
    QThreadPool decoding_; ///< last: it ends its work before the rest goes
};

} // namespace quillmoth::markdown
