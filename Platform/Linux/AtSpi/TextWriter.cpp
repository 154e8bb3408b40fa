#include "Platform/Linux/AtSpi/TextWriter.h"

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
    if (!edit.replacement.empty()) {
        const bool accepted = element.insert(edit.start, edit.replacement);
        const std::string inserted = resultOf(before, insertion);
        const auto now = accepted ? settledContent(element, inserted) : element.content();
        if (!now || now->text != inserted)
            return now && now->text == before.text ? Outcome::nothingHappened : Outcome::wentWrong;
    }
    if (edit.removed == 0)
        return Outcome::done;
    const std::int64_t start = edit.start + lengthIn(before.unit, edit.replacement);
    const bool accepted = element.remove({.start = start, .end = start + edit.removed});
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

WriteAnswer prepareForPaste(const TextElement& element, Edit edit) {
    const TextRange range{.start = edit.start, .end = edit.start + edit.removed};
    const bool isReady = range.empty() ? element.setCaret(range.start) && element.caret() == range.start
                                       : element.select(range) && element.selection(0) == range;
    return {.error = isReady ? kAXErrorSuccess : kAXErrorFailure,
            .isReadyForPaste = isReady,
            .replacement = std::move(edit.replacement)};
}

AXError failureOf(const Operation& operation) {
    return operation.isOver() ? operation.error() : kAXErrorFailure;
}

} // namespace

WriteAnswer writeValue(const TextElement& element, const std::string& newText, bool preparesPaste) {
    Operation& operation = element.operation();
    const auto refused = [](AXError error) { return WriteAnswer{.error = error, .replacement = {}}; };
    if (const AXError check = checkReadableText(element); check != kAXErrorSuccess)
        return refused(check);
    const auto states = statesOf(operation, element.object());
    if (!states)
        return refused(operation.error());
    if (!states->has(ATSPI_STATE_EDITABLE) || states->has(ATSPI_STATE_READ_ONLY))
        return refused(kAXErrorAttributeUnsupported);
    const auto before = element.content();
    const auto interfaces = before ? interfacesOf(operation, element.object()) : std::nullopt;
    if (!interfaces)
        return refused(operation.error());

    Edit edit = editBetween(*before, newText);
    if (isSingleLine(*states, element.toolkit()))
        edit.replacement = flattenedLines(edit.replacement);
    Outcome outcome = Outcome::nothingHappened;
    if (interfaces->editableText)
        outcome = apply(element, *before, edit);
    if (outcome == Outcome::done)
        return {};
    if (outcome == Outcome::wentWrong && !operation.isOver())
        restore(element, before->text);
    if (outcome == Outcome::nothingHappened && preparesPaste && !operation.isOver())
        return prepareForPaste(element, std::move(edit));
    return refused(failureOf(operation));
}

} // namespace quillmoth::platform
