#include "MarkdownUI/Style/AttributedText.h"

#include <algorithm>
#include <utility>

namespace quillmoth::markdown {

AttributedText::AttributedText(std::string text, SharedAttributes attributes) : text_(std::move(text)) {
    if (!text_.empty())
        runs_.push_back({0, text_.size(), std::move(attributes)});
}

void AttributedText::append(std::string_view text, const SharedAttributes& attributes) {
    if (text.empty())
        return;
    addRun({text_.size(), text.size(), attributes});
    text_ += text;
}

void AttributedText::reserve(std::size_t bytes, std::size_t runs) {
    text_.reserve(text_.size() + bytes);
    runs_.reserve(runs_.size() + runs);
}

void AttributedText::addRun(const Run& run) {
    const bool isImage = run.attributes->attachment.has_value(); // two of the same are two
    if (!runs_.empty() && !isImage && runs_.back().attributes == run.attributes)
        runs_.back().length += run.length;
    else
        runs_.push_back(run);
}

void AttributedText::append(const AttributedText& other) {
    for (const Run& run : other.runs_)
        append(other.textOf(run), run.attributes);
}

AttributedText AttributedText::substring(std::size_t begin, std::size_t end) const {
    AttributedText result;
    const Run* first = runAt(begin);
    if (first == nullptr)
        return result;
    for (auto run = runs_.begin() + (first - runs_.data()); run != runs_.end() && run->begin < end; ++run) {
        const std::size_t from = std::max(begin, run->begin);
        const std::size_t to = std::min(end, run->end());
        if (from < to)
            result.runs_.push_back({from - begin, to - from, run->attributes});
    }
    result.text_ = text_.substr(begin, end - begin);
    return result;
}

const AttributedText::Run* AttributedText::runAt(std::size_t offset) const {
    if (offset >= text_.size())
        return nullptr;
    const auto behind = std::ranges::upper_bound(runs_, offset, {}, &Run::begin);
    return &*std::prev(behind);
}

void realizeFonts(AttributedText& text) {
    text.editAttributes([](AttributeContainer& attributes) {
        if (!attributes.fontProperties)
            return;
        attributes.font = makeFont(*attributes.fontProperties);
        attributes.fontProperties.reset();
    });
}

} // namespace quillmoth::markdown
