#include "Platform/Linux/AtSpi/SelectionReader.h"

#include "Foundation/Limits.h"
#include "Platform/Linux/AtSpi/ParagraphChain.h"
#include "Platform/Linux/AtSpi/SelectionGatherer.h"

namespace quillmoth::platform {

namespace {

std::string joinedSelections(const TextElement& element, std::int64_t count) {
    std::string joined;
    for (std::int64_t index = 0; index < count && joined.size() <= limits::kSelection; ++index) {
        const TextRange range = element.selection(index).value_or(TextRange{});
        const std::string part =
            range.empty() ? std::string() : element.text(withinSelectionLimit(range)).value_or("");
        if (!joined.empty() && !part.empty() && joined.back() != '\n')
            joined.push_back('\n');
        joined.append(part);
    }
    return joined;
}

std::string joinedParagraphs(const TextElement& element, const std::vector<ObjectReference>& paragraphs) {
    std::string joined;
    for (const ObjectReference& paragraph : paragraphs) {
        const std::string text =
            gatherSelectedText(TextElement(element.operation(), paragraph, element.toolkit()));
        joined.append(&paragraph == &paragraphs.front() ? "" : "\n").append(text);
    }
    return joined;
}

/// In a document nothing may be selected itself, while something is within an object that it embeds.
bool holdsSelectionWithin(const TextElement& element) {
    const auto interfaces = interfacesOf(element.operation(), element.object());
    return interfaces && interfaces->hypertext && !gatherSelectedText(element).empty();
}

} // namespace

std::optional<TextRange> readFirstSelection(const TextElement& element, const TextElement::Content& content) {
    const std::int64_t count = element.selectionCount().value_or(0);
    const TextRange range = count > 0 ? element.selection(0).value_or(TextRange{}) : TextRange{};
    const std::int64_t caret = element.caret().value_or(-1);
    if (range.empty())
        return caret < 0 ? std::nullopt : std::optional(TextRange{.start = caret, .end = caret});
    return element.toolkit() == Toolkit::chromium ? repairedRange(content.text, range, caret) : range;
}

AXError checkReadableText(const TextElement& element) {
    const auto role = roleOf(element.operation(), element.object());
    if (!role)
        return element.operation().error();
    if (*role == ATSPI_ROLE_PASSWORD_TEXT)
        return kAXErrorNoValue;
    const auto interfaces = interfacesOf(element.operation(), element.object());
    if (!interfaces)
        return element.operation().error();
    const auto states = statesOf(element.operation(), element.object());
    if (!states)
        return element.operation().error();
    return hasOwnText(*interfaces, *role, *states) ? kAXErrorSuccess : kAXErrorAttributeUnsupported;
}

TextAnswer readSelectedText(const TextElement& element) {
    Operation& operation = element.operation();
    const AXError check = checkReadableText(element);
    if (check == kAXErrorNoValue)
        return {};
    if (check != kAXErrorSuccess)
        return {.error = check, .text = {}};
    const auto count = element.selectionCount();
    if (!count)
        return {.error = operation.error(), .text = {}};
    std::string text = joinedSelections(element, *count);
    const bool reachesDeeper =
        (text.empty() ? holdsSelectionWithin(element) : text.find(kEmbeddedObject) != text.npos) ||
        !selectedParagraphs(element).empty();
    if (operation.isOver())
        return {.error = operation.error(), .text = {}};
    if (reachesDeeper)
        return {.error = kAXErrorAttributeUnsupported, .text = {}};
    return {.error = kAXErrorSuccess, .text = std::move(text)};
}

TextAnswer readGatheredText(const TextElement& element) {
    const AXError check = checkReadableText(element);
    if (check != kAXErrorSuccess)
        return {.error = check, .text = {}};
    const auto paragraphs = selectedParagraphs(element);
    std::string text =
        paragraphs.empty() ? gatherSelectedText(element) : joinedParagraphs(element, paragraphs);
    return {.error = text.empty() ? kAXErrorNoValue : kAXErrorSuccess, .text = std::move(text)};
}

TextAnswer readValue(const TextElement& element) {
    const AXError check = checkReadableText(element);
    if (check != kAXErrorSuccess)
        return {.error = check, .text = {}};
    auto content = element.content();
    if (!content)
        return {.error = element.operation().error(), .text = {}};
    return {.error = kAXErrorSuccess, .text = std::move(content->text)};
}

RangeAnswer readSelectedRange(const TextElement& element) {
    const AXError check = checkReadableText(element);
    if (check != kAXErrorSuccess)
        return {.error = check, .range = {}};
    const auto content = element.content();
    const auto range = content ? readFirstSelection(element, *content) : std::nullopt;
    if (!content || element.operation().isOver())
        return {.error = element.operation().error(), .range = {}};
    if (!range)
        return {.error = kAXErrorNoValue, .range = {}};
    const auto inUnits = [&content](std::int64_t offset) {
        return convertedOffset(content->text, offset, content->unit, OffsetUnit::utf16);
    };
    const std::int64_t location = inUnits(range->start);
    return {.error = kAXErrorSuccess,
            .range = {.location = location, .length = inUnits(range->end) - location}};
}

AXError writeSelectedRange(const TextElement& element, CFRange range) {
    const AXError check = checkReadableText(element);
    if (check != kAXErrorSuccess)
        return check;
    const auto content = element.content();
    if (!content)
        return element.operation().error();
    const auto inApplication = [&content](std::int64_t offset) {
        return convertedOffset(content->text, offset, OffsetUnit::utf16, content->unit);
    };
    const TextRange target{.start = inApplication(range.location),
                           .end = inApplication(range.location + range.length)};
    const bool done = target.empty() ? element.setCaret(target.start) : element.select(target);
    if (element.operation().isOver())
        return element.operation().error();
    return done ? kAXErrorSuccess : kAXErrorFailure;
}

} // namespace quillmoth::platform
