#pragma once

#include "MarkdownUI/Style/Color.h"
#include "MarkdownUI/Style/RelativeSize.h"

#include <cstdint>
#include <functional>
#include <string>

namespace quillmoth::markdown {

struct ListMarkerConfiguration {
    int listLevel = 1; ///< 1 for a list that is in no other
    std::int64_t itemNumber = 1;
};

struct TaskListMarkerConfiguration {
    bool isCompleted = false;
};

/// What stands before a list item: a text, or a symbol where `symbol` is not empty.
struct ListMarker {
    enum class SymbolScale : std::uint8_t { bullet, checkBox };

    std::string text;
    bool hasMonospacedDigits = false;
    std::string symbol;
    SymbolScale scale = SymbolScale::bullet;
    Color color = SemanticColor::text;
    std::string plainText;                              ///< in text that is copied
    RelativeSize relativeFrame = RelativeSize::em(1.5); ///< its column is that wide at least

    bool operator==(const ListMarker&) const = default;
};

using ListMarkerStyle = std::function<ListMarker(const ListMarkerConfiguration&)>;
using TaskListMarkerStyle = std::function<ListMarker(const TaskListMarkerConfiguration&)>;

/// The marker styles.
namespace markers {

[[nodiscard]] ListMarker decimal(const ListMarkerConfiguration& configuration);
[[nodiscard]] ListMarker upperRoman(const ListMarkerConfiguration& configuration);
[[nodiscard]] ListMarker lowerRoman(const ListMarkerConfiguration& configuration);
[[nodiscard]] ListMarker dash(const ListMarkerConfiguration& configuration);
[[nodiscard]] ListMarker disc(const ListMarkerConfiguration& configuration);
[[nodiscard]] ListMarker circle(const ListMarkerConfiguration& configuration);
[[nodiscard]] ListMarker square(const ListMarkerConfiguration& configuration);
/// One of the three above by the level.
[[nodiscard]] ListMarker discCircleSquare(const ListMarkerConfiguration& configuration);
[[nodiscard]] ListMarker checkmarkSquare(const TaskListMarkerConfiguration& configuration);

} // namespace markers

/// 1 to 3999 in capitals; any other number in decimal.
[[nodiscard]] std::string romanNumeral(std::int64_t number);

/// The side of a marker's symbol beside text of that font.
[[nodiscard]] double symbolSide(ListMarker::SymbolScale scale, const FontProperties& font);

} // namespace quillmoth::markdown
