#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>

namespace quillmoth::markdown {

/// Colours that the painter's palette resolves.
enum class SemanticColor : std::uint8_t {
    text,        ///< primary text
    secondary,   ///< table borders
    gray,        ///< code side bar, empty check boxes
    link,        ///< text of links
    accent,      ///< ticked check boxes
    divider,     ///< thematic breaks
    codeFill,    ///< behind a code block
    buttonFill,  ///< behind the copy button
    buttonLabel, ///< symbol and text of the copy button
    done,        ///< symbol and text of the copy button after a copy
    clear,       ///< paints nothing
};

/// The name of the enumerator ("codeFill").
[[nodiscard]] const char* nameOf(SemanticColor color);

/// An opaque sRGB colour.
struct RGBColor {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    bool operator==(const RGBColor&) const = default;
};

/// A colour of text or of a box: fixed, or a name that the painter resolves.
class Color {
public:
    constexpr Color(SemanticColor name) : value_(name) {}

    constexpr Color(RGBColor value) : value_(value) {}

    /// 0xRRGGBB.
    [[nodiscard]] static constexpr Color fromHex(std::uint32_t value) {
        return RGBColor{static_cast<std::uint8_t>(value >> 16), static_cast<std::uint8_t>(value >> 8),
                        static_cast<std::uint8_t>(value)};
    }

    /// Null where the colour is semantic.
    [[nodiscard]] constexpr const RGBColor* rgb() const { return std::get_if<RGBColor>(&value_); }

    /// Null where the colour is fixed.
    [[nodiscard]] constexpr const SemanticColor* semantic() const {
        return std::get_if<SemanticColor>(&value_);
    }

    bool operator==(const Color& other) const;

private:
    std::variant<SemanticColor, RGBColor> value_;
};

/// "gray" or "#C4A2FF".
[[nodiscard]] std::string describe(const Color& color);

[[nodiscard]] std::size_t hashValue(const Color& color);

} // namespace quillmoth::markdown
