#pragma once

#include "MarkdownUI/Qt/DefaultImageLoader.h"

#include <QString>

namespace quillmoth::markdownview {

/// Loads all images, from the network and from files; relative paths are seen from `folder`.
[[nodiscard]] markdown::ImageServices makeImageLoader(const QString& folder);

} // namespace quillmoth::markdownview
