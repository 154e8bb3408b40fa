#include "MarkdownUI/Layout/SchemeImages.h"

#include "Foundation/ASCII.h"
#include "Foundation/URL.h"

#include <algorithm>

namespace quillmoth::markdown {

namespace {

/// The one scheme that the image is for; `unspecified` for all.
ColorScheme schemeOf(const inlines::Image& image) {
    const auto url = URL::parse(image.source);
    if (!url || !url->fragment)
        return ColorScheme::unspecified;
    const std::string fragment = lowercasedASCII(*url->fragment);
    if (fragment == "gh-dark-mode-only")
        return ColorScheme::dark;
    return fragment == "gh-light-mode-only" ? ColorScheme::light : ColorScheme::unspecified;
}

bool isRemoved(const Inline& value, ColorScheme scheme) {
    const auto* image = value.get<inlines::Image>();
    if (image == nullptr || scheme == ColorScheme::unspecified)
        return false;
    const ColorScheme wanted = schemeOf(*image);
    return wanted != ColorScheme::unspecified && wanted != scheme;
}

void removeFrom(Inlines& values, ColorScheme scheme) {
    std::erase_if(values, [scheme](const Inline& value) { return isRemoved(value, scheme); });
    for (Inline& value : values) {
        Inlines* children = childrenOf(value);
        if (children != nullptr && value.get<inlines::Image>() == nullptr)
            removeFrom(*children, scheme);
    }
}

bool isFound(const Inlines& values) {
    return std::ranges::any_of(values, [](const Inline& value) {
        if (const auto* image = value.get<inlines::Image>())
            return schemeOf(*image) != ColorScheme::unspecified;
        const Inlines* children = childrenOf(value);
        return children != nullptr && isFound(*children);
    });
}

/// Calls visit(inlines) for each list of inlines in `values`.
template<class BlockList, class Visit>
void forEachInlines(BlockList& values, const Visit& visit);

template<class Kind, class Visit>
void visitKind(Kind& kind, const Visit& visit) {
    if constexpr (requires { kind.blocks; }) {
        forEachInlines(kind.blocks, visit);
    } else if constexpr (requires { kind.items; }) {
        for (auto& item : kind.items)
            forEachInlines(item.blocks, visit);
    } else if constexpr (requires { kind.text; }) {
        visit(kind.text);
    } else if constexpr (requires { kind.rows; }) {
        for (auto& row : kind.rows)
            std::ranges::for_each(row, visit);
    }
}

template<class BlockList, class Visit>
void forEachInlines(BlockList& values, const Visit& visit) {
    for (auto& block : values)
        std::visit([&visit](auto& kind) { visitKind(kind, visit); }, block.value);
}

} // namespace

Blocks removeSchemeImages(Blocks values, ColorScheme scheme) {
    forEachInlines(values, [scheme](Inlines& inlines) { removeFrom(inlines, scheme); });
    return values;
}

bool hasSchemeImages(const Blocks& values) {
    bool found = false;
    forEachInlines(values, [&found](const Inlines& inlines) { found = found || isFound(inlines); });
    return found;
}

} // namespace quillmoth::markdown
