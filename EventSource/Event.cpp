#include "EventSource/Event.h"

#include "EventSource/UnicodeSpace.h"

#include <charconv>
#include <system_error>
#include <utility>

namespace quillmoth {

namespace {

constexpr bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Splits the first line off `text`, its end included.
std::string_view takeLine(std::string_view& text) {
    for (std::size_t offset = 0; offset < text.size(); ++offset) {
        const char c = text[offset];
        const bool mayEndLine = (c >= '\n' && c <= '\r') || c == '\xC2' || c == '\xE2';
        const std::size_t end = mayEndLine ? newlineLength(text.substr(offset)) : 0;
        if (end > 0) {
            const std::string_view line = text.substr(0, offset);
            text.remove_prefix(offset + end);
            return line;
        }
    }
    return std::exchange(text, {});
}

std::optional<std::string>* fieldNamed(Event& event, std::string_view name) {
    if (name == "data")
        return &event.data;
    if (name == "id")
        return &event.id;
    if (name == "event")
        return &event.event;
    return name == "retry" ? &event.time : nullptr;
}

/// A field that comes again is joined to what there is. Only "event" can be taken back, by a line without a
/// value.
void applyLine(std::string_view line, Event& event) {
    line = withoutLeadingSpace(line, true);
    const std::size_t colon = line.find(':');
    auto* field = fieldNamed(event, line.substr(0, colon));
    if (field == nullptr)
        return;
    const std::string_view value = colon == std::string_view::npos
                                       ? std::string_view()
                                       : withoutLeadingSpace(line.substr(colon + 1), true);
    if (value.empty() && field == &event.event)
        field->reset();
    else if (*field)
        (*field)->append("\n").append(value);
    else
        field->emplace(value);
}

} // namespace

std::optional<std::int64_t> Event::retryTime() const {
    if (!time)
        return std::nullopt;
    std::string_view digits = withoutTrailingSpace(withoutLeadingSpace(*time, false));
    const bool negative = digits.starts_with('-');
    if (digits.starts_with('+'))
        digits.remove_prefix(1);
    const std::size_t first = negative ? 1 : 0;
    if (digits.size() <= first || !isDigit(digits[first]))
        return std::nullopt;
    std::int64_t value = 0;
    const char* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value);
    return error == std::errc() && stop == end ? std::optional(value) : std::nullopt;
}

bool Event::onlyRetryEvent() const {
    return !id && !event && !data && time;
}

Event parseEvent(std::string_view block) {
    Event event;
    while (!block.empty())
        applyLine(takeLine(block), event);
    return event;
}

} // namespace quillmoth
