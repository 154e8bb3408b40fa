#include "Platform/Curl/NetworkThread.h"

#include "Foundation/BlockedSignals.h"
#include "Platform/Curl/Transfer.h"

#include <algorithm>
#include <limits>
#include <map>
#include <utility>

namespace quillmoth::platform {

/// What lives on the thread.
class NetworkThread::Loop {
public:
    explicit Loop(const Result<CurlLibrary>& library) : library_(library) {
        if (library_)
            multi_ = library_->multiInit();
    }

    ~Loop() {
        for (auto& [task, transfer] : std::exchange(transfers_, {})) {
            transfer.reset();
            task->cancel();
        }
        if (multi_ != nullptr)
            library_->multiCleanup(multi_);
    }

    Loop(const Loop&) = delete;
    Loop& operator=(const Loop&) = delete;

    [[nodiscard]] CURLM* multi() const { return multi_; }

    void start(const std::shared_ptr<DataTask>& task) {
        if (task->isFinished())
            return;
        if (multi_ == nullptr) {
            task->finish(URLError{URLError::Code::unknown,
                                  library_ ? "The network cannot be used." : library_.error().description});
            return;
        }
        auto& transfer = transfers_[task];
        transfer = std::make_unique<Transfer>(*library_, multi_, task);
        transfer->start();
        eraseIfOver(task);
    }

    void abandon(const std::shared_ptr<DataTask>& task) { transfers_.erase(task); }

    template<class Action>
    void withTransfer(const std::shared_ptr<DataTask>& task, Action&& action) {
        const auto found = transfers_.find(task);
        if (found == transfers_.end())
            return;
        action(*found->second);
        eraseIfOver(task);
    }

    /// Does what there is to do, then sleeps until there is more or it is woken.
    void turn() {
        int running = 0;
        library_->multiPerform(multi_, &running);
        readEnds();
        checkDeadlines();
        library_->multiPoll(multi_, nullptr, 0, untilNextDeadline(), nullptr);
    }

private:
    void eraseIfOver(const std::shared_ptr<DataTask>& task) {
        const auto found = transfers_.find(task);
        if (found != transfers_.end() && found->second->isOver())
            transfers_.erase(found);
    }

    void readEnds() {
        int left = 0;
        while (const CURLMsg* message = library_->multiReadInfo(multi_, &left)) {
            if (message->msg != CURLMSG_DONE)
                continue;
            const CURLcode code = message->data.result;
            Transfer* transfer = nullptr;
            library_->easyGetInfo(message->easy_handle, CURLINFO_PRIVATE, &transfer);
            transfer->exchangeEnded(code);
        }
        eraseAllOver();
    }

    void checkDeadlines() {
        const auto now = Transfer::Clock::now();
        for (auto& [task, transfer] : transfers_)
            transfer->checkDeadline(now);
        eraseAllOver();
    }

    void eraseAllOver() {
        std::erase_if(transfers_, [](const auto& entry) { return entry.second->isOver(); });
    }

    /// In milliseconds, rounded up.
    [[nodiscard]] int untilNextDeadline() const {
        constexpr auto kForever = std::chrono::milliseconds(std::numeric_limits<int>::max());
        auto wait = kForever;
        const auto now = Transfer::Clock::now();
        for (const auto& [task, transfer] : transfers_) {
            if (const auto deadline = transfer->deadline())
                wait = std::min(wait, std::chrono::ceil<std::chrono::milliseconds>(*deadline - now));
        }
        return static_cast<int>(std::max(wait, std::chrono::milliseconds(0)).count());
    }

    const Result<CurlLibrary>& library_;
    CURLM* multi_ = nullptr;
    std::map<std::shared_ptr<DataTask>, std::unique_ptr<Transfer>> transfers_;
};

NetworkThread::~NetworkThread() {
    shutDown();
}

void NetworkThread::prepare() {
    post([](Loop&) {});
}

bool NetworkThread::start(std::shared_ptr<DataTask> task) {
    return post([task = std::move(task)](Loop& loop) { loop.start(task); });
}

void NetworkThread::abandon(std::shared_ptr<DataTask> task) {
    post([task = std::move(task)](Loop& loop) { loop.abandon(task); });
}

void NetworkThread::unpause(std::shared_ptr<DataTask> task) {
    post([task = std::move(task)](Loop& loop) {
        loop.withTransfer(task, [](Transfer& transfer) { transfer.unpause(); });
    });
}

void NetworkThread::answerRedirect(std::shared_ptr<DataTask> task, std::optional<URLRequest> request) {
    post([task = std::move(task), request = std::move(request)](Loop& loop) mutable {
        loop.withTransfer(task, [&](Transfer& transfer) { transfer.answerRedirect(std::move(request)); });
    });
}

void NetworkThread::shutDown() {
    std::thread thread;
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
        thread.swap(thread_);
        wake();
    }
    if (thread.joinable())
        thread.join();
}

bool NetworkThread::post(Command command) {
    const std::lock_guard lock(mutex_);
    if (stopping_)
        return false;
    commands_.push_back(std::move(command));
    if (!thread_.joinable()) {
        const BlockedSignals blocked;
        thread_ = std::thread([this] { run(); });
    } else {
        wake();
    }
    return true;
}

void NetworkThread::wake() {
    if (multi_ != nullptr)
        curl_->multiWakeUp(multi_);
    else
        wake_.notify_one();
}

void NetworkThread::run() {
    const Result<CurlLibrary>& library = curlLibrary();
    Loop loop(library);
    if (loop.multi() != nullptr) {
        const std::lock_guard lock(mutex_);
        curl_ = &*library;
        multi_ = loop.multi();
    }
    while (runCommands(loop)) {
        if (loop.multi() != nullptr)
            loop.turn();
    }
}

/// Does what the other threads have asked for. False when there will be no more.
bool NetworkThread::runCommands(Loop& loop) {
    std::vector<Command> commands;
    bool stopping = false;
    {
        std::unique_lock lock(mutex_);
        if (multi_ == nullptr)
            wake_.wait(lock, [&] { return stopping_ || !commands_.empty(); });
        commands.swap(commands_);
        stopping = stopping_;
        if (stopping)
            multi_ = nullptr;
    }
    for (const Command& command : commands)
        command(loop);
    return !stopping;
}

} // namespace quillmoth::platform
