#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace quillmoth::test {

/// What a writing process has said up to its end.
struct ChildReport {
    std::size_t asked = 0;
    std::size_t all = 0;
    /// By the file's name: the number of the last time it was on the disk.
    std::map<std::string, std::size_t> done = {};
    /// By the file's name: the words of its last failure.
    std::map<std::string, std::string> failed = {};
};

struct ChildStart {
    std::string program;
    std::vector<std::string> arguments;
    /// "NAME=value", beside the environment of this process.
    std::vector<std::string> environment = {};
};

/// Runs the program to its end; `started` is called when it has said its first word, with its process id.
ChildReport runChild(const ChildStart& start, const std::function<void(int process)>& started = {});

} // namespace quillmoth::test
