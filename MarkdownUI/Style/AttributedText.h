#pragma once

#include "MarkdownUI/Style/AttributeContainer.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quillmoth::markdown {

/// Attributes as a value that copies like a pointer: a text has few different ones and very many runs.
class SharedAttributes {
public:
    SharedAttributes() : SharedAttributes(AttributeContainer{}) {}

    SharedAttributes(AttributeContainer attributes)
        : attributes_(std::make_shared<const AttributeContainer>(std::move(attributes))) {}

    const AttributeContainer& operator*() const { return *attributes_; }

    const AttributeContainer* operator->() const { return attributes_.get(); }

    operator const AttributeContainer&() const { return *attributes_; }

    /// Equal contents are equal, shared or not.
    bool operator==(const SharedAttributes& other) const {
        return attributes_ == other.attributes_ || *attributes_ == *other.attributes_;
    }

private:
    std::shared_ptr<const AttributeContainer> attributes_;
};

/// UTF-8 text in runs of equal attributes. The runs cover the text without gap, in order, none of them empty,
/// and neighbours differ but for images, each of which is a run. A value; offsets are bytes.
class AttributedText {
public:
    struct Run {
        std::size_t begin = 0;
        std::size_t length = 0;
        SharedAttributes attributes;

        [[nodiscard]] std::size_t end() const { return begin + length; }

        bool operator==(const Run&) const = default;
    };

    AttributedText() = default;
    AttributedText(std::string text, SharedAttributes attributes);

    [[nodiscard]] const std::string& text() const { return text_; }

    [[nodiscard]] const std::vector<Run>& runs() const { return runs_; }

    [[nodiscard]] bool empty() const { return text_.empty(); }

    [[nodiscard]] std::string_view textOf(const Run& run) const {
        return std::string_view(text_).substr(run.begin, run.length);
    }

    void append(std::string_view text, const SharedAttributes& attributes);
    void append(const AttributedText& other);

    /// Room for that many more bytes and runs.
    void reserve(std::size_t bytes, std::size_t runs);

    /// Calls `edit` with a copy of each run's attributes, once for those that runs share; runs that have
    /// become equal are joined.
    template<class Edit>
    void editAttributes(Edit edit) {
        std::unordered_map<const AttributeContainer*, SharedAttributes> edited;
        const std::vector<Run> before = std::exchange(runs_, {}); // keeps the keys alive
        runs_.reserve(before.size());
        for (const Run& run : before) {
            auto known = edited.find(&*run.attributes);
            if (known == edited.end()) {
                AttributeContainer attributes = *run.attributes;
                edit(attributes);
                known = edited.emplace(&*run.attributes, std::move(attributes)).first;
            }
            addRun({run.begin, run.length, known->second});
        }
    }

    /// The part [begin, end) with its attributes.
    [[nodiscard]] AttributedText substring(std::size_t begin, std::size_t end) const;

    /// The run that holds the byte at `offset`; null at or behind the end.
    [[nodiscard]] const Run* runAt(std::size_t offset) const;

    bool operator==(const AttributedText&) const = default;

private:
    /// Behind the last one; joins that where it is equal.
    void addRun(const Run& run);

    std::string text_;
    std::vector<Run> runs_;
};

/// Gives each run with `fontProperties` the font made of them, and clears them; other runs stay.
void realizeFonts(AttributedText& text);

} // namespace quillmoth::markdown
