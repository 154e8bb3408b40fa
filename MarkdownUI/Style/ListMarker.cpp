#include "MarkdownUI/Style/ListMarker.h"

#include "Foundation/ASCII.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

namespace quillmoth::markdown {

namespace {

struct RomanPair {
    int value;
    std::string_view numeral;
};

constexpr std::array<RomanPair, 13> kRomanPairs{{{1000, "M"},
                                                 {900, "CM"},
                                                 {500, "D"},
                                                 {400, "CD"},
                                                 {100, "C"},
                                                 {90, "XC"},
                                                 {50, "L"},
                                                 {40, "XL"},
                                                 {10, "X"},
                                                 {9, "IX"},
                                                 {5, "V"},
                                                 {4, "IV"},
                                                 {1, "I"}}};

ListMarker textMarker(std::string text) {
    ListMarker marker;
    marker.plainText = text;
    marker.text = std::move(text);
    return marker;
}

ListMarker symbolMarker(std::string symbol, std::string plainText) {
    ListMarker marker;
    marker.symbol = std::move(symbol);
    marker.plainText = std::move(plainText);
    return marker;
}

} // namespace

std::string romanNumeral(std::int64_t number) {
    if (number < 1 || number > 3999)
        return std::to_string(number);
    std::string result;
    for (const auto& [value, numeral] : kRomanPairs) {
        for (; number >= value; number -= value)
            result += numeral;
    }
    return result;
}

double symbolSide(ListMarker::SymbolScale scale, const FontProperties& font) {
    if (scale == ListMarker::SymbolScale::checkBox)
        return std::round(font.scaledSize() * 0.875);
    // The box of a symbol is a fifth larger than the font that it is set in.
    return std::max(1.0, std::round(std::round(font.scaledSize() / 3) * 1.2));
}

namespace markers {

ListMarker decimal(const ListMarkerConfiguration& configuration) {
    ListMarker marker = textMarker(std::to_string(configuration.itemNumber) + ".");
    marker.hasMonospacedDigits = true;
    return marker;
}

ListMarker upperRoman(const ListMarkerConfiguration& configuration) {
    return textMarker(romanNumeral(configuration.itemNumber) + ".");
}

ListMarker lowerRoman(const ListMarkerConfiguration& configuration) {
    return textMarker(lowercasedASCII(romanNumeral(configuration.itemNumber)) + ".");
}

ListMarker dash(const ListMarkerConfiguration& /*configuration*/) {
    return textMarker("-");
}

ListMarker disc(const ListMarkerConfiguration& /*configuration*/) {
    return symbolMarker("circle.fill", "•");
}

ListMarker circle(const ListMarkerConfiguration& /*configuration*/) {
    return symbolMarker("circle", "◦");
}

ListMarker square(const ListMarkerConfiguration& /*configuration*/) {
    return symbolMarker("square.fill", "▪");
}

ListMarker discCircleSquare(const ListMarkerConfiguration& configuration) {
    if (configuration.listLevel <= 1)
        return disc(configuration);
    return configuration.listLevel == 2 ? circle(configuration) : square(configuration);
}

ListMarker checkmarkSquare(const TaskListMarkerConfiguration& configuration) {
    ListMarker marker =
        configuration.isCompleted ? symbolMarker("checkmark.square.fill", "☑") : symbolMarker("square", "☐");
    marker.scale = ListMarker::SymbolScale::checkBox;
    marker.color = configuration.isCompleted ? SemanticColor::accent : SemanticColor::gray;
    return marker;
}

} // namespace markers

} // namespace quillmoth::markdown
