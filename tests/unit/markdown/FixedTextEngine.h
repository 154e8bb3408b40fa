#pragma once

#include "MarkdownUI/Layout/ImageSource.h"
#include "MarkdownUI/Layout/TextEngine.h"

#include <map>

namespace quillmoth::markdown {

/// A text engine of fixed metrics: every character is 0.5 em wide, an ascent is 0.9 em and a descent 0.3 em.
/// Lines break at blanks, which hang over the end; a longer word is broken. Characters of a right-to-left
/// text run from right to left.
class FixedTextEngine final : public TextEngine {
public:
    [[nodiscard]] std::unique_ptr<ShapedText> shape(const AttributedText& text,
                                                    const TextOptions& options) override;
    [[nodiscard]] FontMetrics metricsOf(const Font& font) override;

    std::size_t bytesShaped = 0;
    std::size_t shapeCalls = 0;
};

/// Images of the sizes that it is told; all others fail.
class FixedImageSource final : public ImageSource {
public:
    [[nodiscard]] DefaultImageViewModel requestImage(const std::string& url) override {
        const auto found = sizes.find(url);
        if (found == sizes.end())
            return {DefaultImageViewModel::State::failure, {}};
        return {DefaultImageViewModel::State::success, found->second};
    }

    std::map<std::string, Size> sizes;
};

} // namespace quillmoth::markdown
