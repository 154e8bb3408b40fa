#pragma once

#include "Foundation/FatalError.h"
#include "Platform/Fake/FakePlatform.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace quillmoth {

using Texts = std::vector<std::string>;

/// An application in front whose element "field" has the focus.
class CaptureFixture : public testing::Test {
protected:
    CaptureFixture() : fatal_([](const std::string& text) { throw std::runtime_error(text); }) {
        platform.workspace.frontmost = 42;
        platform.accessibility.systemWide().set("AXFocusedUIElement", platform::AXUIElementRef(field));
    }

    platform::FakePlatform platform;
    std::shared_ptr<platform::FakeAXUIElement> field = std::make_shared<platform::FakeAXUIElement>("field");
    ScopedFatalErrorHandler fatal_;
};

} // namespace quillmoth
