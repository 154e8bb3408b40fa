#pragma once

#include "Foundation/FatalError.h"
#include "Foundation/Log.h"
#include "Platform/Fake/FakePlatform.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace quillmoth {

using Texts = std::vector<std::string>;

/// What a fatal fault becomes in a test.
struct FatalFault : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The fake platform, without settings in the environment; what is logged is kept, and a fatal fault is
/// thrown.
class PlatformFixture : public testing::Test {
protected:
    PlatformFixture() {
        for (const char* name : {"QUILLMOTH_OPENAI_BASE_URL", "QUILLMOTH_GATEWAY_BASE_URL", "QUILLMOTH_LOG"})
            unsetenv(name); // NOLINT(concurrency-mt-unsafe): tests are set up on one thread
    }

    /// Whether a line of the log contains the words.
    [[nodiscard]] bool logged(std::string_view words) const {
        return std::any_of(lines.begin(), lines.end(),
                           [&](const std::string& line) { return line.find(words) != std::string::npos; });
    }

    platform::FakePlatform platform;
    Texts lines;

private:
    ScopedFatalErrorHandler fatal_{[](const std::string& text) { throw FatalFault(text); }};
    ScopedLogCapture log_{[this](std::string line) { lines.push_back(std::move(line)); }};
};

} // namespace quillmoth
