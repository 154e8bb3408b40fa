#pragma once

#include "MarkdownUI/Layout/DisplayList.h"
#include "MarkdownUI/Layout/TextPosition.h"
#include "MarkdownUI/Qt/DefaultImageLoader.h"
#include "MarkdownUI/Qt/FontCache.h"
#include "MarkdownUI/Qt/MarkdownPalette.h"

#include <QColor>

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

class QPainter;
class QRectF;
class QString;

namespace quillmoth::markdown {

/// How the copy button of a code block looks just now.
struct CopyButtonLook {
    double hover = 0; ///< 0 at rest to 1 under the pointer
    bool isPressed = false;
    bool isFocused = false;

    bool operator==(const CopyButtonLook&) const = default;
};

/// Likewise, of what scrolls sideways.
struct ScrollBarLook {
    double hover = 0;
    bool isDragged = false;

    bool operator==(const ScrollBarLook&) const = default;
};

/// What the eye sees beyond the display list.
struct PaintState {
    QColor textColor; ///< of text without a colour; the palette's where invalid
    std::optional<TextRange> selection;
    std::vector<Rect> selectionRectangles; ///< of the selection, in the coordinates of the document
    std::vector<Rect> underlines;          ///< the rectangles of the link under the pointer
    std::vector<Rect> selectedImages;      ///< frames of images
    std::vector<Rect> focusRings;          ///< around what has the keyboard's focus, if it is no button
    std::map<std::size_t, CopyButtonLook> buttons; ///< those that are not at rest, by code block
    std::map<std::size_t, ScrollBarLook> bars;     ///< likewise, by group
};

/// Paints display lists. All referenced services outlive it.
class DisplayListPainter {
public:
    DisplayListPainter(const MarkdownPalette& palette, FontCache& fonts, DefaultImageLoader& images);

    /// The document's top left corner is at the painter's origin.
    void paint(QPainter& painter, const DisplayList& list, const PaintState& state);

private:
    void paintRectangles(QPainter& painter, const DisplayList& list);
    void paintRange(QPainter& painter, const DisplayList& list, std::size_t begin, std::size_t end,
                    const PaintState& state, bool isCode);
    void paintSelection(QPainter& painter, const PaintState& state, const QRectF& area, bool isCode);
    void paintText(QPainter& painter, const TextLineItem& item, const PaintState& state, bool isCode);
    void paintAttachments(QPainter& painter, const TextLineItem& item, const PaintState& state);
    void paintImage(QPainter& painter, const std::string& source, const std::string& alt,
                    const QRectF& frame);
    void paintRectangle(QPainter& painter, const RectangleItem& item);
    void paintButton(QPainter& painter, const ButtonItem& item, const CopyButtonLook& look);
    void paintFocusRing(QPainter& painter, const Rect& rect);
    void paintScrollBar(QPainter& painter, const ScrollRegionItem& item, const ScrollBarLook& look);

    const MarkdownPalette& palette_;
    FontCache& fonts_;
    DefaultImageLoader& images_;
};

/// The thumb of the scroll bar of a region; nothing where its content fits.
[[nodiscard]] std::optional<Rect> scrollThumbOf(const ScrollRegionItem& region, double hover);

} // namespace quillmoth::markdown
