#pragma once

#include "MarkdownUI/Style/AttributeContainer.h"
#include "MarkdownUI/Style/RelativeSize.h"

#include <concepts>
#include <memory>
#include <optional>
#include <utility>
#include <variant>

/// The algebra of text styles. A style edits a bag of attributes; those of a font touch only a bag that has
/// `fontProperties`.
namespace quillmoth::markdown {

template<class Style>
concept TextStyle = requires(const Style& style, AttributeContainer& attributes) {
    { style._collectAttributes(attributes) } -> std::same_as<void>;
};

struct EmptyTextStyle {
    void _collectAttributes(AttributeContainer& attributes) const;
};

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

/// Any text style, as a value.
class AnyTextStyle {
public:
    AnyTextStyle() : AnyTextStyle(EmptyTextStyle{}) {}

    template<TextStyle Style>

    requires(!std::same_as<std::remove_cvref_t<Style>, AnyTextStyle>) AnyTextStyle(Style style)
        : style_(std::make_shared<const Holder<Style>>(std::move(style))) {}

    void _collectAttributes(AttributeContainer& attributes) const { style_->collect(attributes); }

private:
    struct Interface {
        virtual ~Interface() = default;
        virtual void collect(AttributeContainer& attributes) const = 0;
    };

    template<class Style>
    struct Holder final : Interface {
        explicit Holder(Style value) : style(std::move(value)) {}

        void collect(AttributeContainer& attributes) const override { style._collectAttributes(attributes); }

        Style style;
    };

    std::shared_ptr<const Interface> style_;
};

/// What text styles are built of.
struct TextStyleBuilder {
    template<TextStyle First, TextStyle Second>
    struct Pair {
        First s0;
        Second s1;

        void _collectAttributes(AttributeContainer& attributes) const {
            s0._collectAttributes(attributes);
            s1._collectAttributes(attributes);
        }
    };

    /// Holds one of two styles. The name is reserved in the language; the compilers in use accept it.
    template<TextStyle First, TextStyle Second>
    struct _Conditional {
        std::variant<First, Second> branch;

        void _collectAttributes(AttributeContainer& attributes) const {
            std::visit([&attributes](const auto& style) { style._collectAttributes(attributes); }, branch);
        }
    };

    template<TextStyle Wrapped>
    struct Optional {
        std::optional<Wrapped> style;

        void _collectAttributes(AttributeContainer& attributes) const {
            if (style)
                style->_collectAttributes(attributes);
        }
    };
};

/// `outer`, then `inner`, which wins where both set a field.
[[nodiscard]] AnyTextStyle markdownTextStyle(const AnyTextStyle& outer, const AnyTextStyle& inner);

/// `attributes` after `style` has been collected into it.
[[nodiscard]] AttributeContainer collecting(const AnyTextStyle& style, AttributeContainer attributes);

/// What a text style makes of an empty bag: the font in force, for one.
struct TextStyleAttributesReader {
    AnyTextStyle textStyle;

    [[nodiscard]] AttributeContainer read() const { return collecting(textStyle, {}); }
};

} // namespace quillmoth::markdown
