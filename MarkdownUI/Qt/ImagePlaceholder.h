#pragma once

#include "MarkdownUI/Qt/FontCache.h"
#include "MarkdownUI/Qt/ImageDownload.h"
#include "MarkdownUI/Qt/MarkdownPalette.h"

#include <QString>

class QPainter;
class QRectF;

namespace quillmoth::markdown {

/// What is offered beside a press, with the host.
inline const auto kAlwaysLoad = QStringLiteral("Always Load Images from %1");

/// What stands for an image that is not loaded.
struct ImagePlaceholder {
    QString host; ///< empty for an image that is in the text itself
    ImageProblem problem = ImageProblem::none;
    bool isLoading = false;
    bool isPressable = false;   ///< a press loads it
    bool canAlwaysLoad = false; ///< its host can be remembered

    /// What is the matter, and what a press does; without a final point.
    [[nodiscard]] QString note() const;

    /// All of it for assistive technology.
    [[nodiscard]] QString spokenName(const QString& alt) const;

    bool operator==(const ImagePlaceholder&) const = default;
};

/// Draws it with the alternative text: two lines with a symbol, or one where `frame` is low.
void paintPlaceholder(QPainter& painter, const ImagePlaceholder& placeholder, const QString& alt,
                      const QRectF& frame, const MarkdownPalette& palette, FontCache& fonts);

} // namespace quillmoth::markdown
