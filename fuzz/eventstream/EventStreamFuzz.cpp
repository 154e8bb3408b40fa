// The events of a stream, however it is cut into chunks.

#include "Fuzz.h"

#include "EventSource/EventStreamParser.h"
#include "tests/unit/eventsource/PlainParser.h"

#include <algorithm>
#include <random>

namespace quillmoth::fuzz {

namespace {

using Events = std::vector<Event>;

/// Each chunk in a buffer of just its length, so that a read beyond it is noticed.
std::vector<std::vector<char>> cut(std::string_view stream, std::size_t longest, std::mt19937_64& random) {
    std::vector<std::vector<char>> chunks;
    while (!stream.empty()) {
        const std::size_t length = std::min<std::size_t>(stream.size(), random() % (longest + 1));
        chunks.emplace_back(stream.begin(), stream.begin() + static_cast<std::ptrdiff_t>(length));
        stream.remove_prefix(length);
    }
    return chunks;
}

template<class Parser>
Events parse(const std::vector<std::vector<char>>& chunks) {
    Parser parser;
    Events events;
    for (const std::vector<char>& chunk : chunks) {
        for (Event& event : parser.append({chunk.data(), chunk.size()}))
            events.push_back(std::move(event));
    }
    return events;
}

/// Where only one kind of line end occurs, the cuts make no difference.
std::string withOneLineEnd(std::string_view stream, std::string_view lineEnd) {
    std::string result;
    for (const char c : stream) {
        if (c == '\n')
            result += lineEnd;
        else if (c != '\r')
            result += c;
    }
    return result;
}

} // namespace

void check(std::string_view input) {
    std::mt19937_64 random(std::hash<std::string_view>()(input));
    const auto chunks = cut(input, 1 + random() % 40, random);
    promise(parse<EventStreamParser>(chunks) == parse<test::PlainParser>(chunks),
            "as the plain search gives");
    for (const std::string_view lineEnd : {"\n", "\r\n", "\r"}) {
        const std::string plain = withOneLineEnd(input, lineEnd);
        const Events whole = EventStreamParser().append(plain);
        promise(whole == parse<EventStreamParser>(cut(plain, 1, random)), "the same byte by byte");
        promise(whole == parse<EventStreamParser>(cut(plain, 17, random)), "the same however cut");
    }
    for (const Event& event : EventStreamParser().append(input)) {
        promise(!event.retryTime() || event.time, "a retry time only where there is a field");
        promise(!event.onlyRetryEvent() || (!event.data && event.time), "a retry alone has no data");
        for (const auto& field : {event.id, event.event, event.data, event.time})
            promise(!field || isValidUTF8(*field), "events are well-formed text");
    }
}

} // namespace quillmoth::fuzz
