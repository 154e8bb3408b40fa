#include "Platform/Curl/Transfer.h"

#include "Foundation/Limits.h"
#include "Foundation/URL.h"
#include "Platform/Curl/Redirect.h"
#include "Platform/Curl/URLErrors.h"

#include <algorithm>
#include <utility>

namespace quillmoth::platform {

namespace {

// Reading a redirect's body beyond this costs more than a new connection.
constexpr std::chrono::milliseconds kLongestDrain(250);
// Limits above this many seconds, 31 years, are no limits, and would overflow the clock.
constexpr double kNoLimit = 1e9;

std::optional<Transfer::Clock::time_point> after(Transfer::Clock::time_point start, double seconds) {
    if (!(seconds < kNoLimit))
        return std::nullopt;
    return start + std::chrono::duration_cast<Transfer::Clock::duration>(
                       std::chrono::duration<double>(std::max(seconds, 0.0)));
}

template<class Time>
std::optional<Time> earlier(std::optional<Time> first, std::optional<Time> second) {
    if (!first || !second)
        return first ? first : second;
    return std::min(*first, *second);
}

} // namespace

Transfer::Transfer(const CurlLibrary& curl, CURLM* multi, std::shared_ptr<DataTask> task)
    : curl_(curl), multi_(multi), task_(std::move(task)) {}

Transfer::~Transfer() {
    detach();
}

void Transfer::start() {
    begin(task_->request());
}

void Transfer::unpause() {
    if (!easy_ || !std::exchange(paused_, false))
        return;
    lastHeard_ = Clock::now();
    easy_->unpause();
}

void Transfer::answerRedirect(std::optional<URLRequest> request) {
    if (phase_ != Phase::asking)
        return;
    if (request) {
        next_ = std::move(request);
        phase_ = Phase::leaving;
        leaveBy_ = Clock::now() + kLongestDrain;
    } else {
        phase_ = Phase::body;
        task_->receiveHead(head_.response(request_.url));
    }
    if (ended_)
        exchangeEnded(CURLE_OK);
    else
        unpause();
}

void Transfer::exchangeEnded(CURLcode code) {
    if (failure_)
        finish(std::exchange(failure_, std::nullopt));
    else if (phase_ == Phase::asking)
        ended_ = true;
    else if (phase_ == Phase::leaving)
        follow();
    else if (code == CURLE_PEER_FAILED_VERIFICATION)
        finish(certificateError(server_, easy_->certificateFault()));
    else if (code != CURLE_OK && easy_->hasRefusedAddress())
        finish(privateAddressError(server_));
    else if (code != CURLE_OK)
        finish(transferError(code, server_, easy_->errorDetail()));
    else if (phase_ == Phase::head)
        finish(transferError(CURLE_GOT_NOTHING, server_, {}));
    else
        finish(std::nullopt);
}

void Transfer::checkDeadline(Clock::time_point now) {
    const auto limit = deadline();
    if (!limit || now < *limit)
        return;
    if (phase_ == Phase::leaving && now >= leaveBy_)
        follow();
    else
        finish(timeoutError(server_));
}

std::optional<Transfer::Clock::time_point> Transfer::deadline() const {
    auto limit = after(started_, task_->configuration().timeoutIntervalForResource);
    if (phase_ == Phase::leaving)
        limit = earlier(limit, std::optional(leaveBy_));
    else if (phase_ != Phase::asking && !paused_)
        limit = earlier(limit, after(lastHeard_, task_->configuration().timeoutIntervalForRequest));
    return limit;
}

std::size_t Transfer::headerCallback(char* data, std::size_t size, std::size_t count, void* context) {
    auto& self = *static_cast<Transfer*>(context);
    return self.receiveHeaderLine({data, size * count}) ? size * count : 0;
}

std::size_t Transfer::bodyCallback(char* data, std::size_t size, std::size_t count, void* context) {
    return static_cast<Transfer*>(context)->receiveBody({data, size * count});
}

void Transfer::begin(URLRequest request) {
    detach();
    request_ = std::move(request);
    const auto server = serverOf(request_.url);
    if (!server) {
        finish(redirects_ > 0 ? badRedirectError(server_) : badAddressError());
        return;
    }
    server_ = *server;
    head_ = ResponseHead();
    phase_ = Phase::head;
    paused_ = false;
    ended_ = false;
    drained_ = 0;
    headLines_ = 0;
    headBytes_ = 0;
    lastHeard_ = Clock::now();
    easy_.emplace(curl_, request_, task_->configuration());
    easy_->setCallbacks(headerCallback, bodyCallback, this);
    // Found again by this when libcurl reports the end.
    curl_.easySetOption(easy_->get(), CURLOPT_PRIVATE, this);
    curl_.multiAddHandle(multi_, easy_->get());
}

/// Takes the exchange off the network; a connection in the middle of an answer is closed.
void Transfer::detach() {
    if (easy_)
        curl_.multiRemoveHandle(multi_, easy_->get());
    easy_.reset();
}

/// False to break the exchange off.
bool Transfer::receiveHeaderLine(std::string_view line) {
    lastHeard_ = Clock::now();
    headBytes_ += line.size();
    if (++headLines_ > limits::kHeaderLines || headBytes_ > limits::kHeaders) {
        failure_ = tooManyHeadersError(server_);
        return false;
    }
    if (!head_.addLine(line))
        return true;
    const auto location = head_.header("Location");
    if (location && isRedirect(head_.statusCode()))
        return receiveRedirect(*location);
    phase_ = Phase::body;
    task_->receiveHead(head_.response(request_.url));
    return true;
}

bool Transfer::receiveRedirect(const std::string& location) {
    const auto url = resolveURL(location, request_.url, URL::kAnything);
    const auto target = url ? serverOf(*url) : std::nullopt;
    if (!target || redirects_ >= limits::kRedirects) {
        failure_ = target ? tooManyRedirectsError(server_) : badRedirectError(server_);
        return false;
    }
    const auto& added = task_->configuration().httpAdditionalHeaders;
    if (server_.scheme == "https" && target->scheme != "https")
        failure_ = unencryptedRedirectError(server_, *target);
    else if (*target != server_ && isConfidential(request_, added))
        failure_ = foreignRedirectError(server_, *target);
    if (failure_)
        return false;
    phase_ = Phase::asking;
    task_->receiveRedirect(head_.response(request_.url),
                           redirectedRequest(request_, head_.statusCode(), *url));
    return true;
}

std::size_t Transfer::receiveBody(std::string_view data) {
    lastHeard_ = Clock::now();
    if (phase_ == Phase::leaving) {
        drained_ += data.size();
        return drained_ <= limits::kRedirectBody ? data.size() : 0;
    }
    if (phase_ == Phase::asking || !task_->receiveData(data)) {
        paused_ = true;
        return CURL_WRITEFUNC_PAUSE;
    }
    return data.size();
}

void Transfer::follow() {
    ++redirects_;
    begin(*std::exchange(next_, std::nullopt));
}

void Transfer::finish(std::optional<URLError> error) {
    detach();
    phase_ = Phase::over;
    task_->finish(std::move(error));
}

} // namespace quillmoth::platform
