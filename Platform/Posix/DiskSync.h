#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace quillmoth::platform {

/// Has the disk take over files that were just written, on a thread of its own, so that they outlive a loss
/// of power. The thread starts with the first request. The destructor finishes what was asked for. Any
/// thread.
class DiskSync {
public:
    DiskSync() = default;
    ~DiskSync();
    DiskSync(const DiskSync&) = delete;
    DiskSync& operator=(const DiskSync&) = delete;

    /// The file at `path` and the entry of its folder. Requests for a path that waits already are one.
    void request(const std::string& path);

    /// Returns when all that was requested before is on the disk, or has failed, which is logged.
    void flush();

private:
    void run();

    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::string> waiting_;
    bool working_ = false;
    bool ending_ = false;
    std::thread thread_;
};

} // namespace quillmoth::platform
