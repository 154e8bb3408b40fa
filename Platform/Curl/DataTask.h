#pragma once

#include "Platform/URLSession.h"

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace quillmoth::platform {

class NetworkThread;

/// One task of a session: the mailbox between the network thread, which fills it, and the delegate's queue,
/// which empties it. Any thread. The first completion counts, but for a cancellation, which overtakes one
/// that the delegate has not heard of; nothing comes behind it.
class DataTask final : public URLSessionDataTask, public std::enable_shared_from_this<DataTask> {
public:
    DataTask(std::shared_ptr<NetworkThread> network, URLRequest request,
             std::shared_ptr<const URLSessionConfiguration> configuration,
             std::shared_ptr<URLSessionDelegate> delegate, std::shared_ptr<OperationQueue> delegateQueue);

    void resume() override;
    void cancel() override;
    [[nodiscard]] std::optional<URLResponse> response() const override;

    [[nodiscard]] const URLRequest& request() const { return request_; }

    [[nodiscard]] const URLSessionConfiguration& configuration() const { return *configuration_; }

    [[nodiscard]] bool isFinished() const;

    /// From the network thread. The delegate's answer comes back by NetworkThread::answerRedirect.
    void receiveRedirect(URLResponse response, URLRequest newRequest);
    void receiveHead(URLResponse response);
    /// False, and nothing is taken, where the delegate is far behind; NetworkThread::unpause is called later.
    [[nodiscard]] bool receiveData(std::string_view data);
    void finish(std::optional<URLError> error);

private:
    struct Redirect {
        URLResponse response;
        URLRequest newRequest;
    };

    /// What waits for the delegate, in the order in which it is delivered.
    struct Mail {
        std::optional<Redirect> redirect;
        std::optional<URLResponse> head;
        std::string data;
        bool complete = false;
        std::optional<URLError> error;
    };

    enum class Question { none, redirect, head };

    void scheduleDelivery();
    void deliver();
    [[nodiscard]] bool deliverNext();
    void deliverRedirect(URLSessionDelegate& delegate, const Redirect& redirect);
    void deliverHead(URLSessionDelegate& delegate, const URLResponse& head);
    void answerRedirect(std::optional<URLRequest> request);
    void answerHead(URLSessionDelegate::ResponseDisposition disposition);
    [[nodiscard]] bool takeAnswer(Question question);

    const std::shared_ptr<NetworkThread> network_;
    const URLRequest request_;
    const std::shared_ptr<const URLSessionConfiguration> configuration_;

    mutable std::mutex mutex_;
    // These three are given up with the completion: until then a task that has begun keeps itself alive.
    std::shared_ptr<DataTask> self_;
    std::shared_ptr<URLSessionDelegate> delegate_;
    std::shared_ptr<OperationQueue> delegateQueue_;
    Mail mail_;
    std::optional<URLResponse> response_;
    // Asked of the delegate and not answered: nothing but a cancellation is delivered meanwhile.
    Question open_ = Question::none;
    bool resumed_ = false;
    bool finished_ = false;
    bool scheduled_ = false;
    bool networkWaits_ = false;
    // The delegate queue's alone: trades places with the data of the mail, so that neither is allocated anew.
    std::string delivering_;
};

} // namespace quillmoth::platform
