#pragma once

#include "MarkdownUI/Style/AttributeContainer.h"

#include <concepts>
#include <memory>
#include <type_traits>
#include <utility>

namespace quillmoth::markdown {

/// A style edits a bag of attributes. What it says of a font touches only a bag that has `fontProperties`.
template<class Style>
concept TextStyle = requires(const Style& style, AttributeContainer& attributes) {
    { style._collectAttributes(attributes) } -> std::same_as<void>;
};

struct EmptyTextStyle {
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
