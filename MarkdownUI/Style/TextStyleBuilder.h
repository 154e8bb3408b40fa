#pragma once

#include "MarkdownUI/Style/AnyTextStyle.h"

#include <optional>
#include <variant>

namespace quillmoth::markdown {

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

} // namespace quillmoth::markdown
