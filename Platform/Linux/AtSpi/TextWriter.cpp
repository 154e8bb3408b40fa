#include "Platform/Linux/AtSpi/TextWriter.h"

#include "Platform/Linux/AtSpi/ParagraphChain.h"
#include "Platform/Linux/AtSpi/SelectionReader.h"
#include "Platform/Linux/AtSpi/TextDifference.h"

#include <thread>

namespace quillmoth::platform {

namespace {

using Content = TextElement::Content;

// Chromium applies an edit only after it has said yes; others are done by then.
constexpr std::chrono::milliseconds kSettleLimit{150};
constexpr std::chrono::milliseconds kSettleStep{10};

/// `replacement` in place of the `removed` units from `start` on.
struct Edit {
    std::int64_t start = 0;
    std::int64_t removed = 0;
    std::string replacement;
};

Edit editBetween(const Content& content, std::string_view newText) {
    const TextDifference difference = differenceBetween(content.text, newText);
    const std::string_view old = content.text;
    return {.start = lengthIn(content.unit, old.substr(0, difference.location)),
            .removed = lengthIn(content.unit, old.substr(difference.location, difference.oldLength)),
            .replacement = std::string(newText.substr(difference.location, difference.newLength))};
}

std::string resultOf(const Content& content, const Edit& edit) {
    const std::size_t start = byteOffset(content.text, edit.start, content.unit);
    const std::size_t end = byteOffset(content.text, edit.start + edit.removed, content.unit);
    return content.text.substr(0, start) + edit.replacement + content.text.substr(end);
}

bool isSingleLine(States states, Toolkit toolkit) {
    // Qt's editors of one line say so by not being of several.
    return states.has(ATSPI_STATE_SINGLE_LINE) ||
           (toolkit == Toolkit::qt && !states.has(ATSPI_STATE_MULTI_LINE));
}

bool isEditable(States states) {
    return states.has(ATSPI_STATE_EDITABLE) && !states.has(ATSPI_STATE_READ_ONLY);
}

/// Reads the text until it has become `wanted`, for a little while; what was read last.
std::optional<Content> settledContent(const TextElement& element, const std::string& wanted) {
    const auto end = Operation::Clock::now() + kSettleLimit;
    auto content = element.content();
    while (content && content->text != wanted && Operation::Clock::now() < end) {
        std::this_thread::sleep_for(kSettleStep);
        content = element.content();
    }
    return content;
}

enum class Outcome { done, nothingHappened, wentWrong };

/// Puts the new text in and, once it is seen to be there, takes the old one out.
Outcome apply(const TextElement& element, const Content& before, const Edit& edit) {
    const std::string wanted = resultOf(before, edit);
    const Edit insertion{.start = edit.start, .removed = 0, .replacement = edit.replacement};
    OffsetUnit unit = before.unit;
    if (!edit.replacement.empty()) {
        const bool accepted = element.insert(edit.start, edit.replacement);
        const std::string inserted = resultOf(before, insertion);
        const auto now = accepted ? settledContent(element, inserted) : element.content();
        if (!now || now->text != inserted)
            return now && now->text == before.text ? Outcome::nothingHappened : Outcome::wentWrong;
        // Which unit it is may show with the new text only.
        unit = now->unit;
    }
    if (edit.removed == 0)
        return Outcome::done;
    const auto inUnit = [&](std::int64_t offset) {
        return convertedOffset(before.text, offset, before.unit, unit);
    };
    const std::int64_t start = inUnit(edit.start) + lengthIn(unit, edit.replacement);
    const std::int64_t removed = inUnit(edit.start + edit.removed) - inUnit(edit.start);
    const bool accepted = element.remove({.start = start, .end = start + removed});
    if (element.operation().isOver())
        return Outcome::wentWrong;
    const auto now = accepted ? settledContent(element, wanted) : element.content();
    if (now && now->text == wanted)
        return Outcome::done;
    return now && now->text == before.text ? Outcome::nothingHappened : Outcome::wentWrong;
}

void restore(const TextElement& element, const std::string& text) {
    const auto now = element.content();
    if (now && now->text != text)
        apply(element, *now, editBetween(*now, text));
}

/// What is to take the place of what is selected, or to come to the caret, so that the text becomes
/// `newText`; none where that changes something else.
std::optional<std::string> replacementOfSelection(const TextElement& element, const Content& before,
                                                  std::string_view newText) {
    const auto range = readFirstSelection(element, before);
    if (!range)
        return std::nullopt;
    const std::string_view old = before.text;
    const std::string_view head = old.substr(0, byteOffset(old, range->start, before.unit));
    const std::string_view tail = old.substr(byteOffset(old, range->end, before.unit));
    if (newText.size() < head.size() + tail.size() || !newText.starts_with(head) || !newText.ends_with(tail))
        return std::nullopt;
    return std::string(newText.substr(head.size(), newText.size() - head.size() - tail.size()));
}

AXError failureOf(const Operation& operation) {
    return operation.isOver() ? operation.error() : kAXErrorFailure;
}

} // namespace

/// Gecko says yes and does nothing; Chromium has no such interface; of others it is not known what they do.
bool takesEdits(const TextElement& element) {
    const Toolkit toolkit = element.toolkit();
    if (toolkit == Toolkit::gecko || toolkit == Toolkit::chromium || toolkit == Toolkit::unknown)
        return false;
    const auto interfaces = interfacesOf(element.operation(), element.object());
    return interfaces && interfaces->editableText;
}

AXError writeValue(const TextElement& element, const std::string& newText) {
    Operation& operation = element.operation();
    if (const AXError check = checkReadableText(element); check != kAXErrorSuccess)
        return check;
    const auto states = statesOf(operation, element.object());
    if (!states)
        return operation.error();
    if (!isEditable(*states))
        return kAXErrorAttributeUnsupported;
    // What reaches beyond this paragraph can be replaced only as a whole.
    if (!takesEdits(element) || !selectedParagraphs(element).empty())
        return operation.isOver() ? operation.error() : kAXErrorAttributeUnsupported;
    const auto before = element.content();
    if (!before)
        return operation.error();
    Edit edit = editBetween(*before, newText);
    if (isSingleLine(*states, element.toolkit()))
        edit.replacement = flattenedLines(edit.replacement);
    const Outcome outcome = apply(element, *before, edit);
    if (outcome == Outcome::wentWrong && !operation.isOver())
        restore(element, before->text);
    if (outcome == Outcome::done)
        return kAXErrorSuccess;
    if (outcome == Outcome::nothingHappened && !operation.isOver())
        return kAXErrorAttributeUnsupported;
    return failureOf(operation);
}

PasteAnswer preparePaste(const TextElement& element, const std::string& text) {
    Operation& operation = element.operation();
    const auto refused = [](AXError error) { return PasteAnswer{.error = error}; };
    const auto role = roleOf(operation, element.object());
    const auto states = role ? statesOf(operation, element.object()) : std::nullopt;
    const auto interfaces = states ? interfacesOf(operation, element.object()) : std::nullopt;
    if (!interfaces)
        return refused(operation.error());
    if (*role == ATSPI_ROLE_TERMINAL)
        return refused(kAXErrorActionUnsupported);
    if (*role == ATSPI_ROLE_PASSWORD_TEXT)
        return refused(kAXErrorNoValue);
    if (!states->has(ATSPI_STATE_FOCUSED))
        return refused(kAXErrorFailure);
    // Without a text there is nothing that such a state would be told of.
    const bool hasText = hasOwnText(*interfaces, *role, *states);
    if (states->has(ATSPI_STATE_READ_ONLY) || (hasText && !isEditable(*states)))
        return refused(kAXErrorAttributeUnsupported);
    auto content = hasText ? element.content() : std::nullopt;
    if (operation.isOver())
        return refused(operation.error());
    const bool flattens = hasText && isSingleLine(*states, element.toolkit());
    PasteAnswer answer{.replacement = flattens ? flattenedLines(text) : text};
    // Where parts are embedded the text is theirs, and a paste does not change the one that was read.
    if (content && content->text.find(kEmbeddedObject) == std::string::npos)
        answer.before = std::move(content->text);
    return answer;
}

PasteAnswer prepareReplacement(const TextElement& element, const std::string& newText) {
    const auto content = element.content();
    const auto replacement = content ? replacementOfSelection(element, *content, newText) : std::nullopt;
    if (!content || element.operation().isOver())
        return {.error = element.operation().error()};
    if (!replacement)
        return {.error = kAXErrorAttributeUnsupported};
    return preparePaste(element, *replacement);
}

AXError awaitOtherText(const TextElement& element, const std::string& before) {
    constexpr std::chrono::milliseconds kPasteSettleLimit{400};
    const auto end = Operation::Clock::now() + kPasteSettleLimit;
    while (Operation::Clock::now() < end) {
        const auto content = element.content();
        if (!content)
            return element.operation().error();
        if (content->text != before)
            return kAXErrorSuccess;
        std::this_thread::sleep_for(kSettleStep);
    }
    return kAXErrorFailure;
}

} // namespace quillmoth::platform
