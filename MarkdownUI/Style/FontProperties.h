#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>

namespace quillmoth::markdown {

struct AttributeContainer;

/// Designs of the system font.
enum class FontDesign : std::uint8_t { standard, monospaced, rounded, serif };

/// Everything that decides the font of a run of text; edited by text styles, made into a Font at the end.
/// Itself a text style, which sets all of them.
struct FontProperties {
    /// The system font in some design, or the font family of that name.
    using Family = std::variant<FontDesign, std::string>;

    enum class FamilyVariant : std::uint8_t { normal, monospaced };
    enum class CapsVariant : std::uint8_t { normal, smallCaps, lowercaseSmallCaps, uppercaseSmallCaps };
    enum class DigitVariant : std::uint8_t { normal, monospaced };
    enum class Style : std::uint8_t { normal, italic };

    /// Values are those of the OpenType weight class.
    enum class Weight : std::uint16_t {
        ultraLight = 100,
        thin = 200,
        light = 300,
        regular = 400,
        medium = 500,
        semibold = 600,
        bold = 700,
        heavy = 800,
        black = 900,
    };

    static constexpr Weight defaultWeight = Weight::regular;
    static constexpr double defaultSize = 13;

    Family family = FontDesign::standard;
    FamilyVariant familyVariant = FamilyVariant::normal;
    CapsVariant capsVariant = CapsVariant::normal;
    DigitVariant digitVariant = DigitVariant::normal;
    Style style = Style::normal;
    Weight weight = defaultWeight;
    double size = defaultSize; ///< points
    double scale = 1;

    /// `size` times `scale` in whole points, halves away from zero.
    [[nodiscard]] double scaledSize() const;

    void _collectAttributes(AttributeContainer& attributes) const;

    bool operator==(const FontProperties&) const = default;
};

[[nodiscard]] std::size_t hashValue(const FontProperties& properties);

/// A concrete font, as a text engine is asked for it.
struct Font {
    FontProperties::Family family = FontDesign::standard;
    double size = FontProperties::defaultSize;
    FontProperties::Weight weight = FontProperties::defaultWeight;
    FontProperties::CapsVariant caps = FontProperties::CapsVariant::normal;
    bool isMonospaced = false;
    bool hasMonospacedDigits = false;
    bool isItalic = false;

    bool operator==(const Font&) const = default;
};

[[nodiscard]] std::size_t hashValue(const Font& font);

[[nodiscard]] Font makeFont(const FontProperties& properties);

} // namespace quillmoth::markdown
