#include "Quillmoth/Shell/Panel/ImageFetch.h"

#include "Foundation/ASCII.h"
#include "Foundation/URL.h"
#include "MarkdownUI/Qt/ImageLimits.h"
#include "Platform/OperationQueue.h"
#include "Platform/URLSession.h"

#include <charconv>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

namespace quillmoth {

namespace {

using markdown::ImageProblem;
using markdown::ImageReach;

constexpr int kFound = 200;
constexpr double kLongestWait = 30;   // seconds for further bytes
constexpr double kLongestFetch = 120; // for all of it

std::string lowercasedHostOf(const std::string& url) {
    const auto parsed = URL::parse(url, URL::kAnything);
    return parsed && parsed->host ? lowercasedASCII(*parsed->host) : std::string();
}

/// What the server says that the file takes; 0 where it does not.
std::int64_t announcedBytes(const platform::URLResponse& response) {
    std::int64_t bytes = 0;
    for (const auto& [name, value] : response.headers) {
        if (equalIgnoringASCIICase(name, "Content-Length"))
            std::from_chars(value.data(), value.data() + value.size(), bytes);
    }
    return bytes;
}

/// One download. Its calls come on the delegate queue.
class ImageFetch final : public platform::URLSessionDelegate {
public:
    ImageFetch(const markdown::ImageRequest& request, std::function<void(markdown::ImageAnswer)> finished)
        : host_(lowercasedHostOf(request.url.toStdString())), reach_(request.reach),
          finished_(std::move(finished)) {}

    void didReceiveResponse(platform::URLSessionDataTask& /*task*/, const platform::URLResponse& response,
                            const std::function<void(ResponseDisposition)>& completionHandler) override {
        if (announcedBytes(response) > markdown::kMostImageBytes)
            fail(ImageProblem::tooManyBytes);
        else if (response.statusCode != kFound)
            fail(ImageProblem::unreachable);
        completionHandler(problem_ == ImageProblem::none ? ResponseDisposition::allow
                                                         : ResponseDisposition::cancel);
    }

    void didReceiveData(platform::URLSessionDataTask& task, std::string_view data) override {
        if (problem_ != ImageProblem::none)
            return;
        data_.append(data.data(), static_cast<qsizetype>(data.size()));
        if (data_.size() <= markdown::kMostImageBytes)
            return;
        fail(ImageProblem::tooManyBytes);
        task.cancel();
    }

    void didCompleteWithError(platform::URLSessionDataTask& /*task*/,
                              const std::optional<platform::URLError>& error) override {
        using Code = platform::URLError::Code;
        if (error)
            fail(error->code == Code::privateAddress ? ImageProblem::privateNetwork
                                                     : ImageProblem::unreachable);
        finished_({std::move(data_), problem_});
    }

    void willPerformHTTPRedirection(
        platform::URLSessionDataTask& /*task*/, const platform::URLResponse& /*response*/,
        const platform::URLRequest& newRequest,
        const std::function<void(std::optional<platform::URLRequest>)>& completionHandler) override {
        if (lowercasedHostOf(newRequest.url) == host_)
            return completionHandler(newRequest);
        if (reach_ == ImageReach::sameHost) {
            fail(ImageProblem::elsewhere);
            return completionHandler(std::nullopt);
        }
        platform::URLRequest request = newRequest;
        request.publicAddressesOnly = true;
        completionHandler(request);
    }

private:
    /// The first problem counts.
    void fail(ImageProblem problem) {
        if (problem_ == ImageProblem::none)
            problem_ = problem;
        data_ = QByteArray();
    }

    const std::string host_;
    const ImageReach reach_;
    const std::function<void(markdown::ImageAnswer)> finished_;
    QByteArray data_;
    ImageProblem problem_ = ImageProblem::none;
};

} // namespace

markdown::ImageDownload makeImageDownload(platform::URLSessions& sessions,
                                          platform::OperationQueues& queues) {
    // Made with the first image: many answers hold none.
    auto queue = std::make_shared<std::shared_ptr<platform::OperationQueue>>();
    return [&sessions, &queues, queue](const markdown::ImageRequest& image,
                                       std::function<void(markdown::ImageAnswer)> finished) {
        if (!*queue)
            *queue = queues.makeSerialQueue();
        platform::URLRequest request;
        request.url = image.url.toStdString();
        request.timeoutInterval = kLongestWait;
        request.publicAddressesOnly = image.reach != ImageReach::asked;
        request.setValue("image/webp, image/png, image/jpeg, image/gif", "Accept");
        sessions
            .makeSession(
                {.timeoutIntervalForRequest = kLongestWait, .timeoutIntervalForResource = kLongestFetch},
                std::make_shared<ImageFetch>(image, std::move(finished)), *queue)
            ->dataTask(request)
            ->resume();
    };
}

} // namespace quillmoth
