#pragma once

#include "MarkdownUI/Qt/ImageStore.h"

#include <QString>

namespace quillmoth::markdownview {

/// Loads images from the network and from files; relative paths are seen from `folder`.
[[nodiscard]] markdown::ImageLoader makeImageLoader(const QString& folder);

} // namespace quillmoth::markdownview
