#include "Platform/Posix/DiskSync.h"

#include "Foundation/Log.h"
#include "Platform/Posix/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <system_error>

namespace quillmoth::platform {

namespace {

void syncOne(const std::string& path) {
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    // EINVAL: a file system, or a kind of file, that has nothing to sync.
    if (file && fsync(file.get()) != 0 && errno != EINVAL)
        logLine("Could not bring \"" + path + "\" to the disk: " + std::generic_category().message(errno));
}

} // namespace

DiskSync::~DiskSync() {
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
    }
    changed_.notify_all();
    if (thread_.joinable())
        thread_.join();
}

void DiskSync::request(const std::string& path) {
    const std::lock_guard lock(mutex_);
    if (std::find(waiting_.begin(), waiting_.end(), path) != waiting_.end())
        return;
    waiting_.push_back(path);
    if (!thread_.joinable())
        thread_ = std::thread([this] { run(); });
    changed_.notify_all();
}

void DiskSync::flush() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return waiting_.empty() && !working_; });
}

void DiskSync::run() {
    std::unique_lock lock(mutex_);
    while (true) {
        changed_.wait(lock, [this] { return ending_ || !waiting_.empty(); });
        if (waiting_.empty())
            return;
        const auto paths = std::exchange(waiting_, {});
        working_ = true;
        lock.unlock();
        for (const auto& path : paths) {
            syncOne(path);
            syncOne(std::filesystem::path(path).parent_path().string());
        }
        lock.lock();
        working_ = false;
        changed_.notify_all();
    }
}

} // namespace quillmoth::platform
