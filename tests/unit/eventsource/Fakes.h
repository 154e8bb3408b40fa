#pragma once

#include "Platform/MainQueue.h"
#include "Platform/OperationQueue.h"
#include "Platform/URLSession.h"

#include <deque>
#include <memory>
#include <utility>
#include <vector>

namespace quillmoth::test {

/// Runs its work when the test says so.
class StepQueue final : public platform::MainQueue, public platform::OperationQueues {
public:
    void async(std::function<void()> work) override { work_.push_back(std::move(work)); }

    void asyncAfter(Seconds /*delay*/, std::function<void()> work) override { async(std::move(work)); }

    std::shared_ptr<platform::OperationQueue> makeSerialQueue() override {
        struct Inert final : platform::OperationQueue {
            void addOperation(std::function<void()> operation) override { operation(); }
        };

        return std::make_shared<Inert>();
    }

    void runAll() {
        while (!work_.empty()) {
            const auto work = std::move(work_.front());
            work_.pop_front();
            work();
        }
    }

private:
    std::deque<std::function<void()>> work_;
};

/// A connection that the test plays the network of.
struct FakeTask final : platform::URLSessionDataTask {
    void resume() override { resumed = true; }

    void cancel() override { cancelled = true; }

    [[nodiscard]] std::optional<platform::URLResponse> response() const override { return head; }

    platform::URLRequest request;
    std::optional<platform::URLResponse> head;
    bool resumed = false;
    bool cancelled = false;
};

struct FakeSession final : platform::URLSession {
    std::shared_ptr<platform::URLSessionDataTask> dataTask(const platform::URLRequest& request) override {
        task->request = request;
        return task;
    }

    std::shared_ptr<platform::URLSessionDataTask> dataTask(const platform::URLRequest& request,
                                                           CompletionHandler /*completionHandler*/) override {
        return dataTask(request);
    }

    void invalidateAndCancel() override {
        task->cancel();
        delegate = nullptr;
    }

    void respond(int statusCode) {
        task->head = platform::URLResponse{.url = task->request.url, .statusCode = statusCode, .headers = {}};
        delegate->didReceiveResponse(*task, *task->head, [&](Disposition answer) { disposition = answer; });
    }

    void receive(std::string_view data) { delegate->didReceiveData(*task, data); }

    void complete(std::optional<platform::URLError> error = std::nullopt) {
        delegate->didCompleteWithError(*task, error);
    }

    using Disposition = platform::URLSessionDelegate::ResponseDisposition;
    platform::URLSessionConfiguration configuration;
    std::shared_ptr<platform::URLSessionDelegate> delegate;
    std::shared_ptr<FakeTask> task = std::make_shared<FakeTask>();
    Disposition disposition = Disposition::cancel;
};

struct FakeSessions final : platform::URLSessions {
    std::shared_ptr<platform::URLSession> sharedSession() override { return nullptr; }

    std::shared_ptr<platform::URLSession>
    makeSession(const platform::URLSessionConfiguration& configuration,
                std::shared_ptr<platform::URLSessionDelegate> delegate,
                std::shared_ptr<platform::OperationQueue> /*delegateQueue*/) override {
        made.push_back(std::make_shared<FakeSession>());
        made.back()->configuration = configuration;
        made.back()->delegate = std::move(delegate);
        return made.back();
    }

    std::vector<std::shared_ptr<FakeSession>> made;
};

} // namespace quillmoth::test
