#include "Platform/Posix/FileWriter.h"

#include "Foundation/BlockedSignals.h"
#include "Platform/Posix/Files.h"
#include "Platform/Posix/ReplaceFile.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <utility>

#include <unistd.h>

namespace quillmoth::platform {

namespace {

Result<void> withoutPath(const Result<std::string>& written) {
    return written ? Result<void>() : written.error();
}

Result<void> removeFile(const std::string& path) {
    if (unlink(path.c_str()) != 0)
        return errno == ENOENT ? Result<void>() : fileError("remove", path, errno);
    const int error = syncFolderOf(path);
    return error == 0 ? Result<void>() : fileError("bring to the disk that there is no", path, error);
}

} // namespace

FileWriter::~FileWriter() {
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
    }
    changed_.notify_all();
    if (thread_.joinable())
        thread_.join();
}

void FileWriter::replace(const std::string& path, std::string bytes, Done done) {
    add({.kind = Kind::replace, .path = path, .bytes = std::move(bytes), .done = {std::move(done)}});
}

void FileWriter::append(const std::string& path, std::string bytes, Done done) {
    add({.kind = Kind::append, .path = path, .bytes = std::move(bytes), .done = {std::move(done)}});
}

void FileWriter::remove(const std::string& path, Done done) {
    add({.kind = Kind::remove, .path = path, .done = {std::move(done)}});
}

void FileWriter::run(std::function<void()> work) {
    add({.kind = Kind::run, .work = std::move(work)});
}

void FileWriter::flush() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return waiting_.empty() && !working_; });
}

void FileWriter::add(Task task) {
    const std::lock_guard lock(mutex_);
    mergeOrQueue(std::move(task));
    if (!thread_.joinable()) {
        const BlockedSignals blocked;
        thread_ = std::thread([this] { serve(); });
    }
    changed_.notify_all();
}

void FileWriter::mergeOrQueue(Task task) {
    const auto last = std::find_if(waiting_.rbegin(), waiting_.rend(),
                                   [&](const Task& each) { return each.path == task.path; });
    if (last == waiting_.rend() || last->kind != task.kind || task.kind == Kind::run) {
        waiting_.push_back(std::move(task));
        return;
    }
    if (task.kind == Kind::append)
        last->bytes += task.bytes;
    else
        last->bytes = std::move(task.bytes);
    std::move(task.done.begin(), task.done.end(), std::back_inserter(last->done));
}

void FileWriter::carryOut(const Task& task) {
    if (task.kind == Kind::run) {
        task.work();
        return;
    }
    const Result<void> result = task.kind == Kind::replace  ? withoutPath(replaceFile(task.path, task.bytes))
                                : task.kind == Kind::append ? appendToFile(task.path, task.bytes)
                                                            : removeFile(task.path);
    for (const Done& done : task.done) {
        if (done)
            done(result);
    }
}

void FileWriter::serve() {
    std::unique_lock lock(mutex_);
    while (true) {
        changed_.wait(lock, [this] { return ending_ || !waiting_.empty(); });
        if (waiting_.empty())
            return;
        // Destroyed before the lock is taken again: what it holds may be the last of an object.
        {
            const Task task = std::move(waiting_.front());
            waiting_.pop_front();
            working_ = true;
            lock.unlock();
            carryOut(task);
        }
        lock.lock();
        working_ = false;
        changed_.notify_all();
    }
}

} // namespace quillmoth::platform
