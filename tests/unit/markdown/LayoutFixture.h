#pragma once

#include "MarkdownUI/Layout/DocumentLayout.h"

#include "FixedTextEngine.h"

#include <gtest/gtest.h>

namespace quillmoth::markdown {

/// A document on the fixed text engine.
struct LayoutFixture : testing::Test {
    void set(const std::string& text, double width = 400) {
        layout.setOptions({.width = width, .fontSize = 16, .baseURL = "https://example.org/"});
        layout.setContent(MarkdownContent(text));
    }

    /// The same, all of it laid out.
    void layOut(const std::string& text, double width = 400) {
        set(text, width);
        layout.ensureLaidOut(1e9);
    }

    /// All that there is to be painted.
    DisplayList everything() { return layout.displayList({0, 0, 400, 1e9}); }

    FixedTextEngine engine;
    FixedImageSource images;
    DocumentLayout layout{engine, images, Theme::basic()};
};

} // namespace quillmoth::markdown
