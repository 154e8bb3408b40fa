#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace quillmoth {

/// Writes `line` and a line feed to standard output, without level or time stamp. Any thread.
void logLine(std::string_view line);

/// The same for a line that holds the user's words: it is written only where the environment has
/// QUILLMOTH_LOG=debug. A session's log is kept, and others may read it.
void logUserText(std::string_view line);

/// Collects what logLine writes, in place of standard output, for the lifetime of the object. Tests only.
class ScopedLogCapture {
public:
    explicit ScopedLogCapture(std::function<void(std::string line)> sink);
    ~ScopedLogCapture();
    ScopedLogCapture(const ScopedLogCapture&) = delete;
    ScopedLogCapture& operator=(const ScopedLogCapture&) = delete;

private:
    std::function<void(std::string)> former_;
};

} // namespace quillmoth
