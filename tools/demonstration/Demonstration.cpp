#include "Demonstration.h"

#include <filesystem>
#include <utility>

namespace quillmoth::test {

Demonstration::Demonstration(std::string output, const std::string& windowManager)
    : output_(std::move(output)), session_(windowManager) {
    std::filesystem::create_directories(output_);
    for (const auto& entry : std::filesystem::directory_iterator(output_)) {
        if (entry.path().extension() == ".png")
            std::filesystem::remove(entry.path());
    }
}

bool Demonstration::check(const std::string& what, const std::function<bool()>& condition,
                          std::chrono::milliseconds deadline) {
    const auto start = std::chrono::steady_clock::now();
    const bool passed = holdsWithin(deadline, condition);
    const auto time =
        std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start);
    std::string details;
    if (!passed)
        details = session_.output() + (session_.isRunning() ? session_.shown().described() : "");
    report_.add({.what = what, .passed = passed, .time = time, .details = details});
    if (!passed)
        takePicture("failed");
    return passed;
}

void Demonstration::takePicture(const std::string& name) {
    const std::string number = std::to_string(++pictureCount_);
    session_.desktop().saveScreenshot(output_ + "/" + (number.size() < 2 ? "0" : "") + number + "-" + name +
                                      ".png");
}

} // namespace quillmoth::test
