#include "EventSource/Event.h"

#include "Foundation/ASCII.h"
#include "Foundation/WhiteSpace.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <system_error>
#include <utility>

namespace quillmoth {

namespace {

constexpr bool mayEndLine(char c) {
    return (c >= '\n' && c <= '\r') || c == '\xC2' || c == '\xE2';
}

/// The place of the first byte from `offset` on that a line end may begin with, or the length of `text`.
std::size_t nextCandidate(std::string_view text, std::size_t offset) {
    // A vector of the compiler's: compared in one instruction where the processor can.
    using Block = std::uint8_t __attribute__((vector_size(16)));
    for (; offset + sizeof(Block) <= text.size(); offset += sizeof(Block)) {
        Block block;
        std::memcpy(&block, text.data() + offset, sizeof(block));
        const auto hits = (block - '\n' <= '\r' - '\n') | (block == 0xC2) | (block == 0xE2);
        std::array<std::uint64_t, 2> halves;
        std::memcpy(halves.data(), &hits, sizeof(hits));
        if ((halves[0] | halves[1]) != 0)
            break;
    }
    while (offset < text.size() && !mayEndLine(text[offset]))
        ++offset;
    return offset;
}

/// Splits the first line off `text`, its end included.
std::string_view takeLine(std::string_view& text) {
    for (std::size_t offset = nextCandidate(text, 0); offset < text.size();
         offset = nextCandidate(text, offset + 1)) {
        const std::size_t end = newlineLength(text.substr(offset));
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
    if (digits.size() <= first || !isASCIIDigit(digits[first]))
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
