#pragma once

#include "Options.h"

#include "MarkdownUI/Qt/MarkdownServices.h"

#include <string>

namespace quillmoth::markdownview {

/// Lays the whole document out, waits for its images, and prints its display list or writes a picture of it,
/// as the options say. False, with a message on standard error, where the picture cannot be written.
[[nodiscard]] bool writeDocument(markdown::MarkdownServices& services, const std::string& text,
                                 const Options& options);

} // namespace quillmoth::markdownview
