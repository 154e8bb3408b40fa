#pragma once

#include "MarkdownUI/Layout/TextPosition.h"
#include "MarkdownUI/Qt/ItemContent.h"

#include <array>
#include <cstdint>
#include <optional>

namespace quillmoth::markdown {

/// What a press selects by, and a drag extends by.
enum class SelectionUnit : std::uint8_t { character, word, block };

/// Where a key moves the caret.
enum class CaretMove : std::uint8_t {
    previousCharacter,
    nextCharacter,
    previousWord,
    nextWord,
    lineAbove,
    lineBelow,
    lineStart,
    lineEnd,
    documentStart,
    documentEnd,
};

/// The selected range of a content: from an anchor, which stays, to a caret, which moves.
class ItemSelection {
public:
    [[nodiscard]] const TextRange& range() const { return range_; }

    [[nodiscard]] const TextPosition& caret() const { return caret_; }

    [[nodiscard]] bool isEmpty() const { return range_.empty(); }

    void clear();
    void selectAll(const ItemContent& content);

    /// Puts the anchor at `position`, with the unit around it selected.
    void begin(const ItemContent& content, TextPosition position, SelectionUnit unit);
    /// Moves the caret, by whole units.
    void extendTo(const ItemContent& content, TextPosition position);
    /// The same, by a key. The caret keeps its column over several moves up or down.
    void extend(ItemContent& content, CaretMove move);

    /// The ranges that hold it, for a change of the text that moves them, and back again.
    [[nodiscard]] std::array<TextRange, 2> ranges() const { return {range_, anchor_}; }

    void setRanges(const std::array<TextRange, 2>& ranges);

private:
    [[nodiscard]] TextPosition moved(ItemContent& content, CaretMove move);
    [[nodiscard]] TextPosition movedByLine(ItemContent& content, bool isDown);

    TextRange range_;
    TextRange anchor_; ///< the unit that was pressed
    TextPosition caret_;
    SelectionUnit unit_ = SelectionUnit::character;
    std::optional<double> column_;
};

} // namespace quillmoth::markdown
