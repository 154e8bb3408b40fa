#pragma once

#include <chrono>
#include <cstdint>

/// How much an image of an answer may cost.
namespace quillmoth::markdown {

constexpr std::int64_t kMostImageBytes = std::int64_t{16} << 20;          ///< of its file
constexpr std::int64_t kMostImagePixels = std::int64_t{64} * 1000 * 1000; ///< that it says it has
constexpr int kLargestImageSide = 4096; ///< in pixels; a larger one is decoded smaller
constexpr int kMostImageDownloads = 6;  ///< at a time; the others wait
constexpr std::int64_t kMostImagesKept = std::int64_t{64} << 20; ///< bytes, files and pixels of all together

/// What was drawn no longer ago than this is taken to be on the screen.
constexpr std::chrono::seconds kImageStays{1};

} // namespace quillmoth::markdown
