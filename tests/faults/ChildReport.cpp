#include "tests/faults/ChildReport.h"

#include <array>
#include <cstdlib>
#include <sstream>
#include <system_error>

#include <sys/wait.h>
#include <unistd.h>

namespace quillmoth::test {

namespace {

void runProgram(const ChildStart& start, int output) {
    dup2(output, STDOUT_FILENO);
    for (const std::string& each : start.environment)
        setenv(each.substr(0, each.find('=')).c_str(), each.substr(each.find('=') + 1).c_str(), 1);
    std::vector<char*> arguments{const_cast<char*>(start.program.c_str())};
    for (const std::string& each : start.arguments)
        arguments.push_back(const_cast<char*>(each.c_str()));
    arguments.push_back(nullptr);
    execv(start.program.c_str(), arguments.data());
    _exit(127);
}

ChildReport parsed(const std::string& output) {
    ChildReport report;
    std::istringstream lines(output.substr(0, output.rfind('\n') + 1));
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string what;
        std::string name;
        std::size_t number = 0;
        words >> what;
        if (what == "ask")
            words >> report.asked;
        else if (what == "all")
            words >> report.all;
        else if (what == "done" && words >> name >> number)
            report.done[name] = number;
        else if (what == "fail" && words >> name >> number)
            std::getline(words, report.failed[name]);
    }
    return report;
}

} // namespace

ChildReport runChild(const ChildStart& start, const std::function<void(int process)>& started) {
    int ends[2];
    if (pipe(ends) != 0)
        throw std::system_error(errno, std::generic_category(), "pipe");
    const pid_t process = fork();
    if (process == 0) {
        close(ends[0]);
        runProgram(start, ends[1]);
    }
    close(ends[1]);
    std::string output;
    std::array<char, 65536> buffer;
    for (ssize_t count = 0; (count = read(ends[0], buffer.data(), buffer.size())) > 0;) {
        if (output.empty() && started)
            started(process);
        output.append(buffer.data(), static_cast<std::size_t>(count));
    }
    close(ends[0]);
    int status = 0;
    waitpid(process, &status, 0);
    const bool isKilled = WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    if (output.empty() || (!isKilled && status != 0))
        throw std::runtime_error(start.program + " did not run: status " + std::to_string(status));
    return parsed(output);
}

} // namespace quillmoth::test
