#pragma once

#include "Foundation/FatalError.h"
#include "Foundation/Log.h"
#include "Platform/Fake/FakePlatform.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace quillmoth {

using Texts = std::vector<std::string>;

/// What a fatal fault becomes in a test.
struct FatalFault : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The fake platform; what is logged is kept, and a fatal fault is thrown.
class PlatformFixture : public testing::Test {
protected:
    platform::FakePlatform platform;
    Texts lines;

private:
    ScopedFatalErrorHandler fatal_{[](const std::string& text) { throw FatalFault(text); }};
    ScopedLogCapture log_{[this](std::string line) { lines.push_back(std::move(line)); }};
};

} // namespace quillmoth
