#pragma once

#include "MarkdownUI/Qt/ImageDownload.h"

#include <QByteArray>
#include <QImage>

namespace quillmoth::markdown {

struct DecodedImage {
    QImage image; ///< null where there is a problem
    ImageProblem problem = ImageProblem::none;
};

/// Decodes PNG, JPEG, GIF (its first picture) and WebP, told apart by their first bytes, and nothing else.
/// What says that it has more than kMostImagePixels is not decoded. Any thread.
[[nodiscard]] DecodedImage decodeImage(const ImageAnswer& answer);

/// Lets Qt decode as large an image as decodeImage accepts. Main thread, before the first one.
void allowImagesOfFullSize();

} // namespace quillmoth::markdown
