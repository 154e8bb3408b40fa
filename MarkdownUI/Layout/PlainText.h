#pragma once

#include "MarkdownUI/Document/Inline.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace quillmoth::markdown {

/// Whether an image of the top level, with that source, stands in the text.
using IsImageLoaded = std::function<bool(const std::string& source)>;

/// The text that inlinesToText gives, without its attributes. An empty function: no image is loaded.
[[nodiscard]] std::string plainTextOf(const Inlines& values, const IsImageLoaded& isLoaded);

/// Where an offset in plainTextOf goes when the images of `after` are loaded, and not only those of `before`.
/// `isBehind`: those that come at the offset itself stand before it.
[[nodiscard]] std::size_t movedOffset(const Inlines& values, std::size_t offset, bool isBehind,
                                      const IsImageLoaded& before, const IsImageLoaded& after);

/// Calls visit(begin, end, destination) for each link in plainTextOf, nested ones included.
using VisitLink = std::function<void(std::size_t begin, std::size_t end, const std::string& destination)>;
void forEachLink(const Inlines& values, const IsImageLoaded& isLoaded, const VisitLink& visit);

/// Calls visit(begin, end, image) for each image of the top level, where it stands in plainTextOf or would
/// stand.
using VisitImage = std::function<void(std::size_t begin, std::size_t end, const inlines::Image& image)>;
void forEachImage(const Inlines& values, const IsImageLoaded& isLoaded, const VisitImage& visit);

/// For estimates.
struct TextSize {
    std::size_t bytes = 0;
    std::size_t lineBreaks = 0;
};

[[nodiscard]] TextSize sizeOf(std::string_view text);
/// Images count as one byte.
[[nodiscard]] TextSize sizeOf(const Inlines& values);

} // namespace quillmoth::markdown
