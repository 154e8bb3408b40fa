#pragma once

#include "MarkdownUI/Style/Geometry.h"

#include <cstdint>
#include <string>

namespace quillmoth::markdown {

/// What is known of an image.
struct DefaultImageViewModel {
    /// `placeholder`: something of the layout's choosing stands for it, which may say why.
    enum class State : std::uint8_t { notRequested, loading, success, failure, placeholder };

    State state = State::notRequested;
    Size naturalSize{};       ///< zero unless `success`
    bool isPressable = false; ///< a placeholder that a press makes an image, maybe

    /// It stands in its text, as itself or by a placeholder.
    [[nodiscard]] bool isShown() const { return state == State::success || state == State::placeholder; }

    bool operator==(const DefaultImageViewModel&) const = default;
};

/// Knows the images of a document. Main thread; loading itself happens elsewhere.
class ImageSource {
public:
    virtual ~ImageSource() = default;

    /// Starts to load the image with that absolute URL where it may and is new, or failed a while ago, and
    /// gives what is known of it; never waits. When an image arrives, or its placeholder comes or goes, the
    /// owner of the layout calls DocumentLayout::imagesChanged; what is shown once stays so.
    [[nodiscard]] virtual DefaultImageViewModel requestImage(const std::string& url) = 0;
};

} // namespace quillmoth::markdown
