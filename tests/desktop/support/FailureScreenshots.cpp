#include "tests/desktop/support/FailureScreenshots.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <iostream>

namespace quillmoth::test {

namespace {

class Photographer : public testing::EmptyTestEventListener {
public:
    VirtualDesktop* desktop = nullptr;

private:
    void OnTestStart(const testing::TestInfo& test) override {
        name_ = std::string(test.test_suite_name()) + '.' + test.name();
    }

    void OnTestPartResult(const testing::TestPartResult& result) override {
        if (!result.failed() || !desktop || name_.empty())
            return;
        std::filesystem::create_directories("screenshots");
        const auto path = std::filesystem::absolute("screenshots") / (name_ + ".png");
        if (desktop->saveScreenshot(path))
            std::cerr << "screenshot: " << path.string() << '\n';
    }

    // Asking the framework for the test while it reports would wait for its own lock.
    std::string name_;
};

} // namespace

void keepScreenshotsOnFailure(VirtualDesktop* desktop) {
    static Photographer* photographer = [] {
        auto made = std::make_unique<Photographer>();
        Photographer* pointer = made.get();
        testing::UnitTest::GetInstance()->listeners().Append(made.release());
        return pointer;
    }();
    photographer->desktop = desktop;
}

} // namespace quillmoth::test
