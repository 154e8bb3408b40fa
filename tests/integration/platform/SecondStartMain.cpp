// A start of the program as a process of its own, up to the point at which it would open windows.
#include "Quillmoth/Main/StartUp.h"

#include <iostream>

int main(int argc, char** argv) {
    constexpr int kBecomesTheProgram = 100;
    const std::vector<std::string_view> arguments(argv + 1, argv + argc);
    const auto start = quillmoth::beginStart(arguments, "1.2.3", std::cout, std::cerr);
    if (start.exitCode)
        return *start.exitCode;
    std::cout << "first request " << (start.firstRequest ? static_cast<int>(start.firstRequest->kind) : -1)
              << '\n';
    return kBecomesTheProgram;
}
