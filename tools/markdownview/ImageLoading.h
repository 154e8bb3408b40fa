#pragma once

#include "MarkdownUI/Qt/DefaultImageLoader.h"

#include <QString>

namespace quillmoth::markdownview {

/// Loads images from the network and from files; relative paths are seen from `folder`.
[[nodiscard]] markdown::ImageDownload makeImageLoader(const QString& folder);

} // namespace quillmoth::markdownview
