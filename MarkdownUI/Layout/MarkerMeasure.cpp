#include "MarkdownUI/Layout/MarkerMeasure.h"

namespace quillmoth::markdown {

AttributedText markerText(const ListMarker& marker, const AttributeContainer& attributes) {
    AttributeContainer bag = attributes;
    if (marker.hasMonospacedDigits && bag.fontProperties)
        bag.fontProperties->digitVariant = FontProperties::DigitVariant::monospaced;
    if (marker.color != Color(SemanticColor::text))
        bag.foregroundColor = marker.color;
    AttributedText text(marker.text, bag);
    realizeFonts(text);
    return text;
}

double MarkerMeasure::widthOf(const ListMarker& marker, const AttributeContainer& attributes) {
    if (!marker.symbol.empty())
        return symbolSide(marker.scale, *attributes.fontProperties);
    const auto [entry, isNew] =
        widths_.try_emplace({hashValue(*attributes.fontProperties), marker.text}, 0.0);
    if (isNew)
        entry->second = engine_.shape(markerText(marker, attributes), {})->lines().front().advance;
    return entry->second;
}

} // namespace quillmoth::markdown
