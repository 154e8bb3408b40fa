#pragma once

#include <functional>
#include <string>

namespace quillmoth {

/// Ends the process on a programming fault: writes "Fatal error: " and `text` to standard error, then aborts.
/// Any thread. Never returns.
[[noreturn]] void fatalError(const std::string& text);

/// Called by fatalError in place of ending the process. It must not return: a test's handler throws.
using FatalErrorHandler = std::function<void(const std::string& text)>;

/// Installs `handler` for the lifetime of the object and puts the former one back afterwards. Tests only;
/// not for use while other threads may fail.
class ScopedFatalErrorHandler {
public:
    explicit ScopedFatalErrorHandler(FatalErrorHandler handler);
    ~ScopedFatalErrorHandler();
    ScopedFatalErrorHandler(const ScopedFatalErrorHandler&) = delete;
    ScopedFatalErrorHandler& operator=(const ScopedFatalErrorHandler&) = delete;

private:
    FatalErrorHandler former_;
};

} // namespace quillmoth
