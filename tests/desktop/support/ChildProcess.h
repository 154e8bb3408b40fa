#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <sys/types.h>

namespace quillmoth::test {

struct ChildOptions {
    /// Added to this process's environment; these win.
    std::vector<std::pair<std::string, std::string>> environment = {};
    /// What the child reads from standard input.
    std::string input = {};
};

/// A program started by a test, in a process group of its own. It ends with the object, and with the test.
class ChildProcess {
public:
    /// `command` holds the program, looked up in PATH, and its arguments. Throws std::runtime_error where
    /// nothing can be started.
    explicit ChildProcess(const std::vector<std::string>& command, const ChildOptions& options = {});
    ~ChildProcess();
    ChildProcess(ChildProcess&& other) noexcept;
    ChildProcess& operator=(ChildProcess&& other) noexcept;

    [[nodiscard]] pid_t processIdentifier() const { return processIdentifier_; }

    [[nodiscard]] bool isRunning();

    /// The exit code, 128 and the signal's number where a signal ended it, none at the deadline.
    std::optional<int> waitForExit(std::chrono::milliseconds deadline);

    /// What it has written to standard output and standard error so far.
    [[nodiscard]] std::string output() const;

    /// Ends the process and those that it started, by SIGTERM, after a second by SIGKILL.
    void terminate();

private:
    void reap(int options);

    pid_t processIdentifier_ = -1;
    int outputFile_ = -1;
    std::optional<int> exitCode_;
};

struct ChildResult {
    /// None where the deadline came first; the child has been ended then.
    std::optional<int> exitCode;
    std::string output;
};

/// Runs a program to its end.
ChildResult runChild(const std::vector<std::string>& command, std::chrono::milliseconds deadline,
                     const ChildOptions& options = {});

} // namespace quillmoth::test
