#pragma once

#include "MarkdownUI/Style/AnyTextStyle.h"
#include "MarkdownUI/Style/RelativeSize.h"

#include <optional>
#include <variant>

/// The text styles, each of which sets one attribute.
namespace quillmoth::markdown {

struct FontFamily {
    FontProperties::Family family;

    void _collectAttributes(AttributeContainer& attributes) const;
};

struct FontFamilyVariant {
    FontProperties::FamilyVariant familyVariant;

    void _collectAttributes(AttributeContainer& attributes) const;
};

struct FontCapsVariant {
    FontProperties::CapsVariant capsVariant;

    void _collectAttributes(AttributeContainer& attributes) const;
};

struct FontDigitVariant {
    FontProperties::DigitVariant digitVariant;

    void _collectAttributes(AttributeContainer& attributes) const;
};

struct FontStyle {
    FontProperties::Style style;

    void _collectAttributes(AttributeContainer& attributes) const;
};

struct FontWeight {
    FontProperties::Weight weight;

    void _collectAttributes(AttributeContainer& attributes) const;
};

/// Points set the size and reset the scale; em multiplies the scale; rem replaces it.
struct FontSize {
    std::variant<double, RelativeSize> size; ///< points, or relative

    void _collectAttributes(AttributeContainer& attributes) const;
};

struct ForegroundColor {
    std::optional<Color> foregroundColor;

    void _collectAttributes(AttributeContainer& attributes) const;
};

struct BackgroundColor {
    std::optional<Color> backgroundColor;

    void _collectAttributes(AttributeContainer& attributes) const;
};

struct StrikethroughStyle {
    std::optional<LineStyle> lineStyle;

    void _collectAttributes(AttributeContainer& attributes) const;
};

struct UnderlineStyle {
    std::optional<LineStyle> lineStyle;

    void _collectAttributes(AttributeContainer& attributes) const;
};

struct TextKerning {
    std::optional<double> kern;

    void _collectAttributes(AttributeContainer& attributes) const;
};

struct TextTracking {
    std::optional<double> tracking;

    void _collectAttributes(AttributeContainer& attributes) const;
};

} // namespace quillmoth::markdown
