#pragma once

#include "Options.h"

#include "MarkdownUI/Qt/MarkdownServices.h"

#include <QStringList>

#include <string>

namespace quillmoth::markdownview {

/// Lays the whole document out, waits for its images, and prints its display list or writes a picture of it,
/// as the options say. False, with a message on standard error, where the picture cannot be written.
[[nodiscard]] bool writeDocument(markdown::MarkdownServices& services, const std::string& text,
                                 const Options& options);

/// A picture of the document for each font size, width and scale of the gallery, in the palette's colours.
/// The names of the files, in `folder`, which is there; empty, with a message on standard error, where one
/// cannot be written.
[[nodiscard]] QStringList writeGallery(markdown::MarkdownServices& services, const std::string& text,
                                       const QString& folder);

} // namespace quillmoth::markdownview
