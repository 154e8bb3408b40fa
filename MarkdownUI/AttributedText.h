#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "MarkdownUI/AttributeContainer.h"

namespace quillmoth::markdown {

/// UTF-8 text in runs of equal attributes. The runs cover the text without gap, in order, none of them empty,
/// and neighbours differ. A value; offsets are bytes.
class AttributedText {
public:
    struct Run {
        std::size_t begin = 0;
        std::size_t length = 0;
        AttributeContainer attributes;

        [[nodiscard]] std::size_t end() const { return begin + length; }

        bool operator==(const Run&) const = default;
    };

    AttributedText() = default;
    AttributedText(std::string text, AttributeContainer attributes);

    [[nodiscard]] const std::string& text() const { return text_; }

    [[nodiscard]] const std::vector<Run>& runs() const { return runs_; }

    [[nodiscard]] bool empty() const { return text_.empty(); }

    [[nodiscard]] std::string_view textOf(const Run& run) const {
        return std::string_view(text_).substr(run.begin, run.length);
    }

    void append(std::string_view text, const AttributeContainer& attributes);
    void append(const AttributedText& other);

    /// Sets the attributes of [begin, end), which lies within the text.
    void setAttributes(std::size_t begin, std::size_t end, const AttributeContainer& attributes);

    /// Calls `edit` with each run's attributes; runs that have become equal are joined.
    template<class Edit>
    void editAttributes(Edit edit) {
        for (Run& run : runs_)
            edit(run.attributes);
        joinEqualRuns();
    }

    /// The part [begin, end) with its attributes.
    [[nodiscard]] AttributedText substring(std::size_t begin, std::size_t end) const;

    /// The run that holds the byte at `offset`; null at or behind the end.
    [[nodiscard]] const Run* runAt(std::size_t offset) const;

    bool operator==(const AttributedText&) const = default;

private:
    void joinEqualRuns();

    std::string text_;
    std::vector<Run> runs_;
};

/// Gives each run with `fontProperties` the font made of them, and clears them; other runs stay.
void realizeFonts(AttributedText& text);

} // namespace quillmoth::markdown
