#pragma once

#include "Platform/Linux/AtSpi/Session.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace quillmoth::platform {

/// The accessibility thread: owns the Session and a main context of its own, in which events are taken note
/// of between the jobs. Starts with the first use. Called from one thread, which it keeps waiting for a
/// second at most.
class Worker {
public:
    Worker() = default;
    ~Worker();
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    /// Starts the thread and has it connect; does not wait for that.
    void start();

    /// What `job` answers; none where that took too long. The job may outlive the call: it must not refer to
    /// what the caller owns.
    template<class Answer>
    std::optional<Answer> ask(std::function<Answer(Session&, const Request&)> job) {
        auto answer = std::make_shared<std::optional<Answer>>();
        const bool isDone = run([answer, job = std::move(job)](Session& session, const Request& request) {
            answer->emplace(job(session, request));
        });
        return isDone ? std::move(*answer) : std::nullopt;
    }

private:
    using Work = std::function<void(Session&, const Request&)>;
    struct Job;

    bool run(Work work);
    std::shared_ptr<Job> post(Work work);
    void loop();
    [[nodiscard]] std::shared_ptr<Job> takeJob();

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::shared_ptr<Job>> jobs_;
    std::shared_ptr<Job> running_;
    bool isStopping_ = false;
    GLibPointer<GMainContext> context_;
    std::thread thread_;
};

} // namespace quillmoth::platform
