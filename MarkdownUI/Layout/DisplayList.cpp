#include "MarkdownUI/Layout/DisplayList.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace quillmoth::markdown {

namespace {

std::string numberText(double value) {
    // Whole numbers without a point, others with at most two digits behind it.
    std::string text(32, '\0');
    text.resize(static_cast<std::size_t>(std::snprintf(text.data(), text.size(), "%.2f", value + 0.0)));
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.'))
        text.pop_back();
    return text == "-0" ? "0" : text;
}

std::string rectText(const Rect& rect) {
    return "(" + numberText(rect.x) + "," + numberText(rect.y) + " " + numberText(rect.width) + "x" +
           numberText(rect.height) + ")";
}

std::string inQuotes(std::string_view text) {
    std::string result = "\"";
    for (const char c : text) {
        if (c == '\n')
            result += "\\n";
        else if (c == '"' || c == '\\')
            result += {'\\', c};
        else
            result += c;
    }
    return result + "\"";
}

void appendWord(std::string& words, const std::string& word) {
    words += (words.empty() ? "" : " ") + word;
}

std::string describe(const Font& font) {
    std::string words = numberText(font.size);
    if (const auto* name = std::get_if<std::string>(&font.family))
        appendWord(words, *name);
    if (font.isMonospaced)
        appendWord(words, "mono");
    if (font.weight != FontProperties::Weight::regular)
        appendWord(words, "w" + std::to_string(static_cast<int>(font.weight)));
    if (font.isItalic)
        appendWord(words, "italic");
    if (font.hasMonospacedDigits)
        appendWord(words, "digits");
    return words;
}

std::string describe(const AttributeContainer& attributes) {
    std::string words = attributes.font ? describe(*attributes.font) : "no-font";
    if (attributes.foregroundColor)
        appendWord(words, describe(*attributes.foregroundColor));
    if (attributes.strikethroughStyle)
        appendWord(words, "strike");
    if (attributes.underlineStyle)
        appendWord(words, "underline");
    if (attributes.link)
        appendWord(words, "link=" + *attributes.link);
    if (attributes.attachment)
        appendWord(words,
                   "image=" + attributes.attachment->source + " alt=" + inQuotes(attributes.attachment->alt));
    return words;
}

std::string describe(const TextLineItem& item) {
    std::string result = item.textBlock == kNoTextBlock ? "label " : "text  ";
    result += rectText(item.frame);
    const TextLine& line = item.shaped->lines()[item.line];
    const AttributedText text = item.text->substring(line.begin, line.end);
    for (const AttributedText::Run& run : text.runs())
        result += " " + inQuotes(text.textOf(run)) + " [" + describe(run.attributes) + "]";
    return result;
}

std::string describe(const RectangleItem& item) {
    return "rect  " + rectText(item.frame) + " " + describe(item.color) +
           (item.trailingRadius > 0 ? " radius " + numberText(item.trailingRadius) : "");
}

std::string describe(const SymbolItem& item) {
    return "symbol " + rectText(item.frame) + " " + item.name + " " + describe(item.color);
}

std::string describe(const ImageItem& item) {
    return "image " + rectText(item.frame) + " " + inQuotes(item.source) + " alt " + inQuotes(item.alt) +
           (item.destination.empty() ? "" : " opens " + inQuotes(item.destination)) +
           (item.isPlaceholder ? " placeholder" : "");
}

std::string describe(const ButtonItem& item) {
    return "button " + rectText(item.frame) + " " + item.symbol + " " + inQuotes(item.label);
}

std::string describe(const ScrollRegionItem& item) {
    return "scroll " + rectText(item.frame) + " content " + numberText(item.contentWidth) + " offset " +
           numberText(item.offset);
}

} // namespace

const Rect& frameOf(const DisplayItem& item) {
    return std::visit([](const auto& kind) -> const Rect& { return kind.frame; }, item);
}

std::string describe(const DisplayList& list) {
    std::string result;
    std::size_t scrolled = 0;
    for (const DisplayItem& item : list) {
        if (scrolled > 0) {
            result += "  ";
            --scrolled;
        }
        result += std::visit([](const auto& kind) { return describe(kind); }, item) + "\n";
        if (const auto* region = std::get_if<ScrollRegionItem>(&item))
            scrolled = region->itemCount;
    }
    return result;
}

} // namespace quillmoth::markdown
