#include "MarkdownUI/Style/FontProperties.h"

#include "MarkdownUI/Document/Hash.h"
#include "MarkdownUI/Style/AttributeContainer.h"
#include "MarkdownUI/Style/RelativeSize.h"

#include <cmath>

namespace quillmoth::markdown {

double FontProperties::scaledSize() const {
    return std::round(size * scale);
}

void FontProperties::_collectAttributes(AttributeContainer& attributes) const {
    attributes.fontProperties = *this;
}

double RelativeSize::points(const FontProperties& properties) const {
    const double base = unit == Unit::rem ? properties.size : properties.scaledSize();
    return std::round(base * value);
}

std::size_t hashValue(const FontProperties& properties) {
    return hashOf(properties.family, properties.familyVariant, properties.capsVariant,
                  properties.digitVariant, properties.style, properties.weight, properties.size,
                  properties.scale);
}

std::size_t hashValue(const Font& font) {
    return hashOf(font.family, font.size, font.weight, font.caps, font.isMonospaced, font.hasMonospacedDigits,
                  font.isItalic);
}

Font makeFont(const FontProperties& properties) {
    Font font{.family = properties.family, .size = properties.scaledSize()};
    font.isMonospaced = properties.familyVariant == FontProperties::FamilyVariant::monospaced;
    font.caps = properties.capsVariant;
    font.hasMonospacedDigits = properties.digitVariant == FontProperties::DigitVariant::monospaced;
    font.weight = properties.weight;
    font.isItalic = properties.style == FontProperties::Style::italic;
    return font;
}

} // namespace quillmoth::markdown
