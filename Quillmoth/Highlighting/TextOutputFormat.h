#pragma once

#include "MarkdownUI/Style/AttributedText.h"
#include "Quillmoth/Highlighting/Theme.h"
#include "Quillmoth/Highlighting/TokenType.h"

#include <deque>
#include <optional>
#include <string_view>

namespace quillmoth::highlighting {

/// Makes coloured text of the pieces of code.
struct TextOutputFormat {
    /// A piece with its colour; the text is that of the code being read.
    struct StyledText {
        std::string_view text;
        std::optional<markdown::Color> foregroundColor;

        bool operator==(const StyledText&) const = default;
    };

    /// Used for one text, which must live until `build` returns.
    class Builder {
    public:
        explicit Builder(const Theme& theme) : theme(theme) {}

        void addToken(std::string_view token, TokenType type);
        void addPlainText(std::string_view text);
        void addWhitespace(std::string_view whitespace);

        /// The pieces joined, in order.
        [[nodiscard]] markdown::AttributedText build() const;

        const Theme& theme;
        std::deque<StyledText> accumulatedText; ///< a deque: thousands of pieces, never moved
    };

    Theme theme;

    /// The builder reads the theme of this format, which must outlive it.
    [[nodiscard]] Builder makeBuilder() const { return Builder(theme); }
};

} // namespace quillmoth::highlighting
