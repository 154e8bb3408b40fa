#pragma once

#include "Platform/Curl/CurlLibrary.h"
#include "Platform/URLRequest.h"

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace quillmoth::platform {

class DataTask;

/// The one thread that all transfers run on, with the connections, name answers and TLS sessions that they
/// share. Started with the first task; asleep while there is none. Any thread may call.
class NetworkThread {
public:
    NetworkThread() = default;
    ~NetworkThread();
    NetworkThread(const NetworkThread&) = delete;
    NetworkThread& operator=(const NetworkThread&) = delete;

    /// Starts the thread and opens the network library ahead of the first task.
    void prepare();

    /// False after shutDown: the task will not be run.
    bool start(std::shared_ptr<DataTask> task);
    void abandon(std::shared_ptr<DataTask> task);
    void unpause(std::shared_ptr<DataTask> task);
    void answerRedirect(std::shared_ptr<DataTask> task, std::optional<URLRequest> request);

    /// Ends every task as cancelled, and the thread. Waits for it. Not on the network thread.
    void shutDown();

private:
    class Loop;
    using Command = std::function<void(Loop&)>;

    bool post(Command command);
    void run();
    [[nodiscard]] bool runCommands(Loop& loop);
    void wake();

    std::mutex mutex_;
    // Rung while there is no loop to wake.
    std::condition_variable wake_;
    std::vector<Command> commands_;
    std::thread thread_;
    bool stopping_ = false;
    // While the loop can be woken.
    const CurlLibrary* curl_ = nullptr;
    CURLM* multi_ = nullptr;
};

} // namespace quillmoth::platform
