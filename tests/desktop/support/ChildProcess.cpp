#include "tests/desktop/support/ChildProcess.h"

#include "tests/desktop/support/WaitFor.h"

#include <csignal>
#include <fcntl.h>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillmoth::test {

namespace {

/// By way of `env`, which becomes the program.
std::vector<std::string> commandWith(const std::vector<std::pair<std::string, std::string>>& environment,
                                     const std::vector<std::string>& command) {
    std::vector<std::string> all{"env"};
    for (const auto& [name, value] : environment)
        all.push_back(name + '=' + value);
    all.insert(all.end(), command.begin(), command.end());
    return all;
}

std::vector<char*> pointersTo(const std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (const auto& text : texts)
        pointers.push_back(const_cast<char*>(text.c_str()));
    pointers.push_back(nullptr);
    return pointers;
}

int fileHolding(const std::string& text) {
    const int file = memfd_create("input", MFD_CLOEXEC);
    if (file < 0 || write(file, text.data(), text.size()) != static_cast<ssize_t>(text.size()))
        throw std::runtime_error("cannot store the input of a child");
    lseek(file, 0, SEEK_SET);
    return file;
}

/// Between fork and exec: only calls that are safe after a fork of a process with threads.
[[noreturn]] void becomeChild(int input, int output, char** arguments) {
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    dup2(input, STDIN_FILENO);
    dup2(output, STDOUT_FILENO);
    dup2(output, STDERR_FILENO);
    execvp(arguments[0], arguments);
    _exit(127);
}

} // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& command, const ChildOptions& options) {
    const auto texts = commandWith(options.environment, command);
    auto arguments = pointersTo(texts);
    const int input = fileHolding(options.input);
    outputFile_ = memfd_create("output", MFD_CLOEXEC);
    fcntl(outputFile_, F_SETFL, O_APPEND);
    processIdentifier_ = fork();
    if (processIdentifier_ == 0)
        becomeChild(input, outputFile_, arguments.data());
    close(input);
    if (processIdentifier_ < 0)
        throw std::runtime_error("cannot start " + command.front());
    // In both processes: whichever comes first.
    setpgid(processIdentifier_, processIdentifier_);
}

ChildProcess::~ChildProcess() {
    terminate();
    if (outputFile_ >= 0)
        close(outputFile_);
}

ChildProcess::ChildProcess(ChildProcess&& other) noexcept {
    *this = std::move(other);
}

ChildProcess& ChildProcess::operator=(ChildProcess&& other) noexcept {
    std::swap(processIdentifier_, other.processIdentifier_);
    std::swap(outputFile_, other.outputFile_);
    std::swap(exitCode_, other.exitCode_);
    return *this;
}

void ChildProcess::reap(int options) {
    int status = 0;
    if (exitCode_ || processIdentifier_ < 0 || waitpid(processIdentifier_, &status, options) <= 0)
        return;
    exitCode_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

bool ChildProcess::isRunning() {
    reap(WNOHANG);
    return processIdentifier_ > 0 && !exitCode_;
}

std::optional<int> ChildProcess::waitForExit(std::chrono::milliseconds deadline) {
    waitFor([&] { return !isRunning(); }, deadline);
    return exitCode_;
}

std::string ChildProcess::output() const {
    std::string text;
    char buffer[4096];
    ssize_t count = 0;
    while ((count = pread(outputFile_, buffer, sizeof buffer, static_cast<off_t>(text.size()))) > 0)
        text.append(buffer, static_cast<std::size_t>(count));
    return text;
}

void ChildProcess::terminate() {
    if (processIdentifier_ < 0)
        return;
    if (isRunning()) {
        kill(-processIdentifier_, SIGTERM);
        waitFor([&] { return !isRunning(); }, std::chrono::seconds(1));
    }
    // Whatever the child itself has started and left behind.
    kill(-processIdentifier_, SIGKILL);
    reap(0);
    processIdentifier_ = -1;
}

ChildResult runChild(const std::vector<std::string>& command, std::chrono::milliseconds deadline,
                     const ChildOptions& options) {
    ChildProcess child(command, options);
    const auto exitCode = child.waitForExit(deadline);
    return {exitCode, child.output()};
}

} // namespace quillmoth::test
