#include "MarkdownUI/Document/Inline.h"

#include "MarkdownUI/Document/Hash.h"

#include <type_traits>

namespace quillmoth::markdown {

namespace {

template<class Kind>
concept HasLiteral = requires(const Kind& kind) {
    kind.literal;
};

template<class Kind>
concept HasChildren = requires(const Kind& kind) {
    kind.children;
};

/// The text that a kind has of its own: literal, destination or source.
template<class Kind>
std::string_view ownText(const Kind& kind) {
    if constexpr (HasLiteral<Kind>)
        return kind.literal;
    else if constexpr (std::is_same_v<Kind, inlines::Link>)
        return kind.destination;
    else if constexpr (std::is_same_v<Kind, inlines::Image>)
        return kind.source;
    else
        return {};
}

template<class Value>
auto* childrenOfValue(Value& value) {
    return std::visit(
        [](auto& kind) {
            if constexpr (HasChildren<std::remove_const_t<std::remove_reference_t<decltype(kind)>>>)
                return &kind.children;
            else
                return static_cast<std::conditional_t<std::is_const_v<Value>, const Inlines, Inlines>*>(
                    nullptr);
        },
        value);
}

void appendText(const Inlines& values, std::string& text) {
    for (const Inline& value : values) {
        if (const Inlines* children = childrenOf(value))
            appendText(*children, text);
        else if (value.get<inlines::SoftBreak>() != nullptr)
            text += ' ';
        else if (value.get<inlines::LineBreak>() != nullptr)
            text += '\n';
        else
            text += std::visit([](const auto& kind) { return ownText(kind); }, value.value);
    }
}

} // namespace

const Inlines* childrenOf(const Inline& value) {
    return childrenOfValue(value.value);
}

Inlines* childrenOf(Inline& value) {
    return childrenOfValue(value.value);
}

bool operator==(const Inline& first, const Inline& second) {
    if (first.value.index() != second.value.index())
        return false;
    const auto text = [](const auto& kind) { return ownText(kind); };
    if (std::visit(text, first.value) != std::visit(text, second.value))
        return false;
    const Inlines* children = childrenOf(first);
    return children == nullptr || *children == *childrenOf(second);
}

std::size_t hashValue(const Inline& value) {
    const std::string_view text = std::visit([](const auto& kind) { return ownText(kind); }, value.value);
    const std::size_t seed = hashOf(value.value.index(), text);
    const Inlines* children = childrenOf(value);
    return children == nullptr ? seed : mixHash(seed, hashValue(*children));
}

std::size_t hashValue(const Inlines& values) {
    std::size_t seed = values.size();
    for (const Inline& value : values)
        seed = mixHash(seed, hashValue(value));
    return seed;
}

std::string inlinesAsText(const Inlines& values) {
    std::string text;
    appendText(values, text);
    return text;
}

std::optional<Inline::Image> imageOfInline(const Inline& value) {
    if (const auto* image = value.get<inlines::Image>())
        return Inline::Image{image->source, inlinesAsText(image->children), std::nullopt};
    const auto* link = value.get<inlines::Link>();
    if (link == nullptr || link->children.size() != 1)
        return std::nullopt;
    const auto* image = link->children.front().get<inlines::Image>();
    if (image == nullptr)
        return std::nullopt;
    return Inline::Image{image->source, inlinesAsText(image->children), link->destination};
}

} // namespace quillmoth::markdown
