#pragma once

#include "tests/desktop/support/VirtualDesktop.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <iostream>

namespace quillmoth::test {

/// Where the test that runs has failed, keeps a picture of the desktop, named after it, in the folder
/// "screenshots" of the working folder.
inline void keepScreenshotOfFailure(const VirtualDesktop& desktop) {
    const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
    const std::string name = std::string(test.test_suite_name()) + '.' + test.name() + ".png";
    const auto path = std::filesystem::absolute("screenshots") / name;
    if (!test.result()->Failed())
        return;
    std::filesystem::create_directories(path.parent_path());
    if (desktop.saveScreenshot(path))
        std::cerr << "screenshot: " << path.string() << '\n';
}

} // namespace quillmoth::test
