#include "EventSource/EventStreamParser.h"

#include "Foundation/Limits.h"
#include "Foundation/Text.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace quillmoth {

namespace {

constexpr std::size_t kNowhere = std::string_view::npos;

/// The well-formedness test, with a fast way over the leading ASCII that most streams consist of.
bool isWellFormed(std::string_view text) {
    constexpr std::uint64_t kHighBits = 0x8080808080808080U;
    while (text.size() >= sizeof(std::uint64_t)) {
        std::uint64_t word = 0;
        std::memcpy(&word, text.data(), sizeof(word));
        if ((word & kHighBits) != 0)
            break;
        text.remove_prefix(sizeof(word));
    }
    return isValidUTF8(text);
}

bool contains(std::string_view text, char c) {
    return !text.empty() && std::memchr(text.data(), c, text.size()) != nullptr;
}

/// Where `newline` first comes twice in a row, from `from` on. Fast where its first byte is rare.
std::size_t findDoubled(std::string_view text, std::string_view newline, std::size_t from) {
    const std::size_t length = 2 * newline.size();
    while (from + length <= text.size()) {
        const void* hit = std::memchr(text.data() + from, newline[0], text.size() - from - (length - 1));
        if (hit == nullptr)
            return kNowhere;
        from = static_cast<std::size_t>(static_cast<const char*>(hit) - text.data());
        if (text.substr(from).starts_with(newline) && text.substr(from + newline.size()).starts_with(newline))
            return from;
        ++from;
    }
    return kNowhere;
}

} // namespace

std::vector<Event> EventStreamParser::append(std::string_view data) {
    std::vector<Event> events;
    if (isOverfull_)
        return events;
    dataBuffer_.append(data);
    // What was there before holds no delimiter, so one must end in the new bytes.
    if (!contains(data, '\n') && !contains(data, '\r')) {
        checkSize();
        return events;
    }
    std::size_t start = 0;
    for (Cut cut = nextCut(start); cut.position != kNowhere; cut = nextCut(start)) {
        const std::string_view block = std::string_view(dataBuffer_).substr(start, cut.position - start);
        if (!block.starts_with(':') && isWellFormed(block))
            events.push_back(parseEvent(block));
        start = cut.position + cut.length;
    }
    // What is left lies within the chunk just added, as a delimiter before it would have been cut earlier: so
    // moving it to the front costs no more than the chunk did.
    dataBuffer_.erase(0, start);
    for (std::size_t& offset : searched_)
        offset -= std::min(offset, start);
    checkSize();
    return events;
}

void EventStreamParser::checkSize() {
    isOverfull_ = dataBuffer_.size() > limits::kStreamBlock;
    if (isOverfull_)
        dataBuffer_ = std::string();
}

std::size_t EventStreamParser::findDelimiter(std::size_t index, std::size_t start) {
    const std::string_view newline = validNewlineCharacters[index];
    std::size_t& searched = searched_[index];
    searched = std::max(searched, start);
    const std::size_t found = findDoubled(dataBuffer_, newline, searched);
    const std::size_t untilEnd = dataBuffer_.size() - std::min(dataBuffer_.size(), 2 * newline.size() - 1);
    searched = found == kNowhere ? std::max(searched, untilEnd) : found;
    return found;
}

EventStreamParser::Cut EventStreamParser::nextCut(std::size_t start) {
    for (std::size_t index = 0; index < validNewlineCharacters.size(); ++index) {
        const std::size_t found = findDelimiter(index, start);
        if (found != kNowhere)
            return {found, 2 * validNewlineCharacters[index].size()};
    }
    return {kNowhere, 0};
}

} // namespace quillmoth
