#pragma once

#include "MarkdownUI/Layout/DocumentLayout.h"
#include "MarkdownUI/Qt/DisplayListPainter.h"
#include "MarkdownUI/Qt/HoverFade.h"
#include "MarkdownUI/Qt/MarkdownHost.h"

#include <QRectF>

#include <cstddef>
#include <map>
#include <memory>
#include <optional>

namespace quillmoth::markdown {

/// The copy buttons of one document's code blocks, named by the blocks, and the scroll bars of these and of
/// wide tables, named by their groups. The document is the same in all calls, and goes when the controls go.
/// Points are the document's.
class CodeControls {
public:
    explicit CodeControls(MarkdownHost& host); ///< outlives the controls

    /// The content has changed: nothing is hovered or pressed any more.
    void forget();

    /// The pointer is at `point`, no button down. True where a control is under it.
    bool hover(DocumentLayout& document, Point point);
    void leave();

    /// Whether a control is at `point`.
    [[nodiscard]] static bool isAt(DocumentLayout& document, Point point);

    /// True where a control takes the press; `drag` and `release` follow.
    bool press(DocumentLayout& document, Point point);
    void drag(DocumentLayout& document, Point point);
    void release(DocumentLayout& document, Point point);

    [[nodiscard]] bool isPressed() const { return pressedButton_ || draggedBar_; }

    /// Copies the code of a block, and says so on its button for two seconds.
    void copy(DocumentLayout& document, std::size_t codeBlock);

    /// Scrolls sideways. False where there is nowhere to go.
    bool scroll(DocumentLayout& document, std::size_t group, double distance);

    void setFocusedButton(std::optional<std::size_t> codeBlock);

    [[nodiscard]] std::optional<std::size_t> focusedButton() const { return focusedButton_; }

    /// The looks of those that are not at rest.
    [[nodiscard]] std::map<std::size_t, CopyButtonLook> buttonLooks() const;
    [[nodiscard]] std::map<std::size_t, ScrollBarLook> barLooks() const;

private:
    struct BarDrag {
        std::size_t group = 0;
        double grabbedAt = 0; ///< pixels from the left end of the thumb
    };

    void setJustCopy(DocumentLayout& document, std::size_t codeBlock, bool justCopy);
    void setHovered(std::optional<std::size_t> button, std::optional<std::size_t> bar);
    bool pressBar(DocumentLayout& document, const ScrollRegionItem& region, Point point);
    /// The region whose bar is at `point`.
    [[nodiscard]] static std::optional<ScrollRegionItem> barAt(DocumentLayout& document, Point point);

    void changed() { host_.itemChanged({}); }

    MarkdownHost& host_;
    HoverFade buttonFade_;
    HoverFade barFade_;
    std::optional<std::size_t> hoveredButton_;
    std::optional<std::size_t> hoveredBar_;
    std::optional<std::size_t> pressedButton_;
    bool isPressedInside_ = false;
    std::optional<BarDrag> draggedBar_;
    std::optional<std::size_t> focusedButton_;
    std::shared_ptr<void> alive_ = std::make_shared<int>(0); ///< a late reset finds it gone with the controls
};

} // namespace quillmoth::markdown
