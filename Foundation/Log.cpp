#include "Foundation/Log.h"

#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <utility>

namespace quillmoth {

namespace {

struct Sink {
    std::mutex mutex;
    std::function<void(std::string)> function;
};

Sink& installedSink() {
    static Sink sink;
    return sink;
}

} // namespace

void logLine(std::string_view line) {
    Sink& sink = installedSink();
    const std::lock_guard lock(sink.mutex);
    if (sink.function) {
        sink.function(std::string(line));
        return;
    }
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

void logUserText(std::string_view line) {
    // Nothing in this process changes its environment.
    const char* asked = std::getenv("QUILLMOTH_LOG"); // NOLINT(concurrency-mt-unsafe)
    if (asked != nullptr && std::string_view(asked) == "debug")
        logLine(line);
}

ScopedLogCapture::ScopedLogCapture(std::function<void(std::string)> function) {
    Sink& sink = installedSink();
    const std::lock_guard lock(sink.mutex);
    former_ = std::exchange(sink.function, std::move(function));
}

ScopedLogCapture::~ScopedLogCapture() {
    Sink& sink = installedSink();
    const std::lock_guard lock(sink.mutex);
    sink.function = std::move(former_);
}

} // namespace quillmoth
