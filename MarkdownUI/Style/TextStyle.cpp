#include "MarkdownUI/Style/TextStyle.h"

#include "MarkdownUI/Style/TextStyleBuilder.h"

namespace quillmoth::markdown {

namespace {

template<class Field, class Value>
void setFontField(AttributeContainer& attributes, Field FontProperties::*field, const Value& value) {
    if (attributes.fontProperties)
        (*attributes.fontProperties).*field = value;
}

} // namespace

void EmptyTextStyle::_collectAttributes(AttributeContainer& /*attributes*/) const {}

void FontFamily::_collectAttributes(AttributeContainer& attributes) const {
    setFontField(attributes, &FontProperties::family, family);
}

void FontFamilyVariant::_collectAttributes(AttributeContainer& attributes) const {
    setFontField(attributes, &FontProperties::familyVariant, familyVariant);
}

void FontCapsVariant::_collectAttributes(AttributeContainer& attributes) const {
    setFontField(attributes, &FontProperties::capsVariant, capsVariant);
}

void FontDigitVariant::_collectAttributes(AttributeContainer& attributes) const {
    setFontField(attributes, &FontProperties::digitVariant, digitVariant);
}

void FontStyle::_collectAttributes(AttributeContainer& attributes) const {
    setFontField(attributes, &FontProperties::style, style);
}

void FontWeight::_collectAttributes(AttributeContainer& attributes) const {
    setFontField(attributes, &FontProperties::weight, weight);
}

void FontSize::_collectAttributes(AttributeContainer& attributes) const {
    if (!attributes.fontProperties)
        return;
    FontProperties& properties = *attributes.fontProperties;
    const auto* relative = std::get_if<RelativeSize>(&size);
    if (relative == nullptr) {
        properties.size = std::get<double>(size);
        properties.scale = 1;
    } else if (relative->unit == RelativeSize::Unit::em) {
        properties.scale *= relative->value;
    } else {
        properties.scale = relative->value;
    }
}

void ForegroundColor::_collectAttributes(AttributeContainer& attributes) const {
    attributes.foregroundColor = foregroundColor;
}

void BackgroundColor::_collectAttributes(AttributeContainer& attributes) const {
    attributes.backgroundColor = backgroundColor;
}

void StrikethroughStyle::_collectAttributes(AttributeContainer& attributes) const {
    attributes.strikethroughStyle = lineStyle;
}

void UnderlineStyle::_collectAttributes(AttributeContainer& attributes) const {
    attributes.underlineStyle = lineStyle;
}

void TextKerning::_collectAttributes(AttributeContainer& attributes) const {
    attributes.kern = kern;
}

void TextTracking::_collectAttributes(AttributeContainer& attributes) const {
    attributes.tracking = tracking;
}

AnyTextStyle markdownTextStyle(const AnyTextStyle& outer, const AnyTextStyle& inner) {
    return TextStyleBuilder::Pair<AnyTextStyle, AnyTextStyle>{outer, inner};
}

AttributeContainer collecting(const AnyTextStyle& style, AttributeContainer attributes) {
    style._collectAttributes(attributes);
    return attributes;
}

} // namespace quillmoth::markdown
