#include "tests/integration/network/TLSServer.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <sstream>

namespace quillmoth::test {

TLSServer::TLSServer() {
    std::array<int, 2> input{};
    std::array<int, 2> output{};
    if (::pipe2(input.data(), O_CLOEXEC) != 0 || ::pipe2(output.data(), O_CLOEXEC) != 0)
        return;
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    // The one that the packages are for; another may come first in the search path.
    std::string python = "/usr/bin/python3";
    std::string script = QUILLMOTH_TLS_SERVER;
    const std::array<char*, 3> arguments{python.data(), script.data(), nullptr};
    if (::posix_spawn(&process_, python.c_str(), &actions, nullptr, arguments.data(), environ) != 0)
        process_ = -1;
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(input[0]);
    ::close(output[1]);
    input_ = input[1];
    std::string line;
    for (char c = 0; ::read(output[0], &c, 1) == 1 && c != '\n';)
        line += c;
    ::close(output[0]);
    std::istringstream(line) >> authority >> http1 >> good >> expired >> selfsigned >> wronghost;
}

TLSServer::~TLSServer() {
    ::close(input_);
    if (process_ > 0)
        ::waitpid(process_, nullptr, 0);
}

} // namespace quillmoth::test
