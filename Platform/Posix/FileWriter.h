#pragma once

#include "Foundation/Result.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace quillmoth::platform {

/// Writes the user's files on one thread of its own, one after the other, so that nobody else waits for a
/// disk. What concerns one file is done in the order in which it was asked for. The thread starts with the
/// first request; the destructor finishes what was asked for. Any thread.
class FileWriter {
public:
    /// Called on the writer's thread, when what was asked for is on the disk or has failed.
    using Done = std::function<void(const Result<void>&)>;

    FileWriter() = default;
    ~FileWriter();
    FileWriter(const FileWriter&) = delete;
    FileWriter& operator=(const FileWriter&) = delete;

    /// See replaceFile. Where the file waits to be replaced already, the later content alone is written.
    void replace(const std::string& path, std::string bytes, Done done = {});

    /// See appendToFile. What waits to be appended to one file is appended at once.
    void append(const std::string& path, std::string bytes, Done done = {});

    /// A file that is not there is no failure.
    void remove(const std::string& path, Done done = {});

    /// Runs `work`, which writes a file in a way of its own.
    void run(std::function<void()> work);

    /// Returns when all that was asked for before has been done. Not on the writer's thread.
    void flush();

private:
    enum class Kind { replace, append, remove, run };

    struct Task {
        Kind kind;
        std::string path = {};
        std::string bytes = {};
        std::vector<Done> done = {};
        std::function<void()> work = {};
    };

    void add(Task task);
    void mergeOrQueue(Task task);
    static void carryOut(const Task& task);
    void serve();

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Task> waiting_;
    bool working_ = false;
    bool ending_ = false;
    std::thread thread_;
};

} // namespace quillmoth::platform
