#pragma once

#include "MarkdownUI/Document/Block.h"
#include "MarkdownUI/Layout/MarkerMeasure.h"
#include "MarkdownUI/Layout/TextEngine.h"
#include "MarkdownUI/Style/Theme.h"

#include <cstdint>
#include <string_view>
#include <vector>

/// A document as one sequence of units that stand below each other: containers have become insets, gaps and
/// markers. A unit is what is laid out at one time. Everything points into the blocks that it was made of.
namespace quillmoth::markdown {

/// A marker before a unit's first line.
struct FlowMarker {
    enum class Kind : std::uint8_t { bulleted, numbered, task };

    Kind kind = Kind::bulleted;
    bool isCompleted = false;
    std::uint32_t bag = 0; ///< of its list
    int listLevel = 1;
    std::int64_t number = 0;
    double leading = 0; ///< where its column starts
    double width = 0;   ///< of the column; the marker stands at its end
};

[[nodiscard]] ListMarker makeMarker(const FlowMarker& marker, const Theme& theme);

constexpr std::uint32_t kNoGroup = static_cast<std::uint32_t>(-1);

struct FlowUnit {
    enum class Kind : std::uint8_t { text, code, tableRow, image, imageFlow, rule, nothing };

    Kind kind = Kind::nothing;
    TextDirection direction = TextDirection::leftToRight;
    std::uint8_t headingLevel = 0;    ///< 0 for no heading
    std::uint32_t bag = 0;            ///< index of its attributes
    std::uint32_t group = kNoGroup;   ///< the code, table or long text that it is a part of
    std::uint32_t row = 0;            ///< of a table
    const Inlines* inlines = nullptr; ///< of text, image and image flow; null for raw markup and empty items
    std::string_view verbatim;        ///< of text: raw markup
    float leading = 0;                ///< insets
    float trailing = 0;
    float gap = 0; ///< above
    float lineSpacing = 0;
    std::uint32_t firstTextBlock = 0; ///< the first that it holds, or a part of
    std::uint32_t textBlockCount = 0; ///< 1 also for each part of one
    std::uint32_t firstMarker = 0;
    std::uint32_t markerCount = 0;
    /// Its part of the text block; for a text that is no part of a group only the length is known, about.
    std::uint32_t textBegin = 0;
    std::uint32_t textEnd = 0;
    std::uint32_t lineBreaks = 0; ///< in its text
};

/// Units that are parts of one code block, table, or text too long for one unit: [firstUnit, endUnit).
struct FlowGroup {
    const blocks::CodeBlock* code = nullptr;
    const blocks::Table* table = nullptr;
    std::size_t firstUnit = 0;
    std::size_t endUnit = 0;
    std::size_t longestLine = 0; ///< of code, in bytes
};

struct DocumentFlow {
    std::vector<FlowUnit> units;
    std::vector<FlowMarker> markers;
    std::vector<FlowGroup> groups;
    std::vector<std::uint32_t> codeBlocks; ///< the groups that are code
    std::vector<AttributeContainer> bags;
    std::size_t textBlockCount = 0;

    [[nodiscard]] const FontProperties& fontOf(const FlowUnit& unit) const {
        return *bags[unit.bag].fontProperties;
    }

    [[nodiscard]] bool isFirstOfGroup(const FlowUnit& unit) const {
        return &unit == &units[groups[unit.group].firstUnit];
    }

    [[nodiscard]] bool isLastOfGroup(const FlowUnit& unit) const {
        return &unit == &units[groups[unit.group].endUnit - 1];
    }

    /// The first unit of a text block; units.size() where there is none.
    [[nodiscard]] std::size_t unitOfTextBlock(std::size_t block) const;
};

/// `root` holds the attributes around the document, its font properties among them.
[[nodiscard]] DocumentFlow makeFlow(const Blocks& values, const Theme& theme, const AttributeContainer& root,
                                    MarkerMeasure& measure);

} // namespace quillmoth::markdown
