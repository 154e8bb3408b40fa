#pragma once

#include "MarkdownUI/Style/Geometry.h"

#include <cstdint>
#include <string>

namespace quillmoth::markdown {

/// What is known of an image.
struct DefaultImageViewModel {
    enum class State : std::uint8_t { notRequested, loading, success, failure };

    State state = State::notRequested;
    Size naturalSize; ///< zero unless `success`

    bool operator==(const DefaultImageViewModel&) const = default;
};

/// Knows the images of a document. Main thread; loading itself happens elsewhere.
class ImageSource {
public:
    virtual ~ImageSource() = default;

    /// Starts to load the image with that absolute URL where it is new, or failed a while ago, and gives what
    /// is known of it; never waits. When an image arrives, the owner of the layout calls
    /// DocumentLayout::imagesChanged; what has arrived does not go again.
    [[nodiscard]] virtual DefaultImageViewModel requestImage(const std::string& url) = 0;
};

} // namespace quillmoth::markdown
