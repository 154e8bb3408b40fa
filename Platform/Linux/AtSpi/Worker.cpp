#include "Platform/Linux/AtSpi/Worker.h"

#include <utility>

namespace quillmoth::platform {

namespace {

constexpr Operation::Milliseconds kWaitLimit{1000};
// A job gives up a little earlier than the one who waits for it.
constexpr Operation::Milliseconds kJobLimit{950};

} // namespace

struct Worker::Job {
    Work work;
    GLibPointer<GCancellable> cancellable{g_cancellable_new()};
    Operation::Clock::time_point deadline = Operation::Clock::now() + kJobLimit;
    bool isDone = false;
};

Worker::~Worker() {
    if (!thread_.joinable())
        return;
    {
        const std::lock_guard lock(mutex_);
        isStopping_ = true;
        jobs_.clear();
        if (running_)
            g_cancellable_cancel(running_->cancellable.get());
    }
    g_main_context_wakeup(context_.get());
    thread_.join();
}

void Worker::start() {
    if (!thread_.joinable())
        post([](Session& session, const Request& request) { session.prepare(request); });
}

bool Worker::run(Work work) {
    const auto job = post(std::move(work));
    std::unique_lock lock(mutex_);
    const bool isDone = changed_.wait_for(lock, kWaitLimit, [&job] { return job->isDone; });
    if (!isDone)
        g_cancellable_cancel(job->cancellable.get());
    return isDone;
}

std::shared_ptr<Worker::Job> Worker::post(Work work) {
    if (!thread_.joinable()) {
        context_.reset(g_main_context_new());
        thread_ = std::thread([this] { loop(); });
    }
    auto job = std::make_shared<Job>();
    job->work = std::move(work);
    {
        const std::lock_guard lock(mutex_);
        jobs_.push_back(job);
    }
    g_main_context_wakeup(context_.get());
    return job;
}

std::shared_ptr<Worker::Job> Worker::takeJob() {
    const std::lock_guard lock(mutex_);
    if (jobs_.empty())
        return nullptr;
    running_ = std::move(jobs_.front());
    jobs_.pop_front();
    return running_;
}

void Worker::loop() {
    GMainContext* context = context_.get();
    g_main_context_push_thread_default(context);
    {
        Session session;
        const auto isStopping = [this] {
            const std::lock_guard lock(mutex_);
            return isStopping_;
        };
        while (!isStopping()) {
            const auto job = takeJob();
            // Events first, so that a job knows of the latest focus.
            while (g_main_context_iteration(context, job == nullptr ? TRUE : FALSE) != FALSE &&
                   job != nullptr) {
            }
            if (job == nullptr)
                continue;
            if (g_cancellable_is_cancelled(job->cancellable.get()) == FALSE)
                job->work(session, {.cancellable = job->cancellable.get(), .deadline = job->deadline});
            const std::lock_guard lock(mutex_);
            job->isDone = true;
            running_.reset();
            changed_.notify_all();
        }
    }
    while (g_main_context_iteration(context, FALSE) != FALSE) {
    }
    g_main_context_pop_thread_default(context);
}

} // namespace quillmoth::platform
