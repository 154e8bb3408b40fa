#include "MarkdownUI/Layout/PlainText.h"

#include "MarkdownUI/Style/InlineRendering.h"

#include <algorithm>

namespace quillmoth::markdown {

namespace {

/// The literal text of an inline without children; empty for images.
std::string_view literalOf(const Inline& value) {
    if (const auto* text = value.get<inlines::Text>())
        return text->literal;
    if (const auto* code = value.get<inlines::Code>())
        return code->literal;
    if (const auto* html = value.get<inlines::HTML>())
        return html->literal;
    if (value.get<inlines::SoftBreak>() != nullptr)
        return " ";
    return value.get<inlines::LineBreak>() != nullptr ? "\n" : "";
}

struct TextCollector {
    std::string text;
    const VisitLink* visitLink = nullptr;

    void add(const Inline& value) {
        const std::size_t begin = text.size();
        const Inlines* children = childrenOf(value);
        if (value.get<inlines::Image>() != nullptr)
            return;
        if (children != nullptr)
            std::ranges::for_each(*children, [this](const Inline& child) { add(child); });
        else
            text += literalOf(value);
        const auto* link = value.get<inlines::Link>();
        if (link != nullptr && visitLink != nullptr)
            (*visitLink)(begin, text.size(), link->destination);
    }

    void addTopLevel(const Inline& value, const IsImageLoaded& isLoaded) {
        const auto* image = value.get<inlines::Image>();
        if (image == nullptr)
            add(value);
        else if (isLoaded && isLoaded(image->source))
            text += kObjectReplacement;
    }

    void addTopLevel(const Inlines& values, const IsImageLoaded& isLoaded) {
        for (const Inline& value : values)
            addTopLevel(value, isLoaded);
    }
};

void addSize(const Inlines& values, TextSize& total) {
    for (const Inline& value : values) {
        const Inlines* children = childrenOf(value);
        if (value.get<inlines::Image>() != nullptr)
            ++total.bytes;
        else if (children != nullptr)
            addSize(*children, total);
        else
            total.bytes += literalOf(value).size();
        if (value.get<inlines::LineBreak>() != nullptr)
            ++total.lineBreaks;
    }
}

} // namespace

std::string plainTextOf(const Inlines& values, const IsImageLoaded& isLoaded) {
    TextCollector collector;
    collector.addTopLevel(values, isLoaded);
    return std::move(collector.text);
}

std::size_t movedOffset(const Inlines& values, std::size_t offset, bool isBehind, const IsImageLoaded& before,
                        const IsImageLoaded& after) {
    TextCollector passed;
    std::size_t moved = offset;
    for (const Inline& value : values) {
        if (passed.text.size() > offset || (passed.text.size() == offset && !isBehind))
            break;
        const auto* image = value.get<inlines::Image>();
        if (image != nullptr && !before(image->source) && after(image->source))
            moved += kObjectReplacement.size();
        else
            passed.addTopLevel(value, before);
    }
    return moved;
}

void forEachLink(const Inlines& values, const IsImageLoaded& isLoaded, const VisitLink& visit) {
    TextCollector collector;
    collector.visitLink = &visit;
    collector.addTopLevel(values, isLoaded);
}

void forEachImage(const Inlines& values, const IsImageLoaded& isLoaded, const VisitImage& visit) {
    TextCollector collector;
    for (const Inline& value : values) {
        const std::size_t begin = collector.text.size();
        collector.addTopLevel(value, isLoaded);
        if (const auto* image = value.get<inlines::Image>())
            visit(begin, collector.text.size(), *image);
    }
}

TextSize sizeOf(std::string_view text) {
    return {text.size(), static_cast<std::size_t>(std::ranges::count(text, '\n'))};
}

TextSize sizeOf(const Inlines& values) {
    TextSize total;
    addSize(values, total);
    return total;
}

} // namespace quillmoth::markdown
