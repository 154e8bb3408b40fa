// Feeds mutated streams to the event stream parser for as long as it is told, from a seed, so that a failure
// can be had again: fuzz-event-stream [seconds [seed]]. Ends with an abort at the first broken promise.

#include "EventSource/EventStreamParser.h"
#include "tests/unit/eventsource/PlainParser.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

using quillmoth::Event;
using quillmoth::EventStreamParser;
using quillmoth::test::PlainParser;
using Random = std::mt19937_64;
using Events = std::vector<Event>;

constexpr std::array<std::string_view, 26> kWords = {
    "data: hello", "data:",       "data",         "id: 7",     "event: message",
    "event",       "retry: 2500", "retry: +12 x", ": comment", ":",
    " ",           "\t",          "\n",           "\n\n",      "\r",
    "\r\n",        "\r\n\r\n",    "\r\r",         "\u0085",    "\u2028",
    "\u2029",      "\u3000",      "\xE2\x80",     "\xC3\x28",  "\xF0\x9F\x98\x80",
    "\xED\xA0\x80"};

std::size_t below(Random& random, std::size_t limit) {
    return limit == 0 ? 0 : static_cast<std::size_t>(random() % limit);
}

std::string madeUp(Random& random) {
    std::string stream;
    for (std::size_t count = below(random, 60); count > 0; --count)
        stream += kWords[below(random, kWords.size())];
    return stream;
}

/// Changes, takes out, repeats or puts in something somewhere.
void mutate(std::string& stream, Random& random) {
    const std::size_t place = below(random, stream.size() + 1);
    const std::size_t length = std::min(below(random, 12), stream.size() - place);
    switch (random() % 4) {
    case 0:
        if (place < stream.size())
            stream[place] = static_cast<char>(random());
        break;
    case 1:
        stream.erase(place, length);
        break;
    case 2:
        stream.insert(place, std::string(stream, place, length));
        break;
    default:
        stream.insert(place, kWords[below(random, kWords.size())]);
    }
}

std::vector<std::string> cut(std::string_view stream, std::size_t longest, Random& random) {
    std::vector<std::string> chunks;
    while (!stream.empty()) {
        const std::size_t length = std::min(stream.size(), longest == 1 ? 1 : below(random, longest + 1));
        // A buffer of just this length, so that a read beyond it is noticed.
        chunks.emplace_back(stream.substr(0, length));
        chunks.back().shrink_to_fit();
        stream.remove_prefix(length);
    }
    return chunks;
}

template<class Parser>
Events parse(const std::vector<std::string>& chunks) {
    Parser parser;
    Events events;
    for (const std::string& chunk : chunks) {
        for (Event& event : parser.append(chunk))
            events.push_back(std::move(event));
    }
    return events;
}

void check(bool holds, const char* promise, const std::string& stream) {
    if (holds)
        return;
    std::fprintf(stderr, "Broken: %s\nThe stream in hexadecimal:\n", promise);
    for (const char c : stream)
        std::fprintf(stderr, "%02x", static_cast<unsigned>(static_cast<unsigned char>(c)));
    std::fputc('\n', stderr);
    std::abort();
}

/// Where only one kind of line end occurs, the cuts make no difference.
std::string withOneLineEnd(const std::string& stream, std::string_view lineEnd) {
    std::string result;
    for (const char c : stream) {
        if (c == '\n')
            result += lineEnd;
        else if (c != '\r')
            result += c;
    }
    return result;
}

void runOnce(const std::string& stream, Random& random) {
    const auto chunks = cut(stream, 1 + below(random, 40), random);
    check(parse<EventStreamParser>(chunks) == parse<PlainParser>(chunks), "the same as the plain search",
          stream);
    for (const std::string_view lineEnd : {"\n", "\r\n", "\r"}) {
        const std::string plain = withOneLineEnd(stream, lineEnd);
        const Events whole = parse<EventStreamParser>({plain});
        check(whole == parse<EventStreamParser>(cut(plain, 1, random)), "the same byte by byte", plain);
        check(whole == parse<EventStreamParser>(cut(plain, 17, random)), "the same however cut", plain);
    }
    for (const Event& event : parse<EventStreamParser>({stream})) {
        const auto time = event.retryTime();
        check(!time || event.time, "a retry time only where there is a field", stream);
        check(!event.onlyRetryEvent() || (!event.data && event.time), "a retry alone has no data", stream);
    }
}

} // namespace

int main(int count, char** arguments) {
    const double seconds = count > 1 ? std::strtod(arguments[1], nullptr) : 10;
    const std::uint64_t seed = count > 2 ? std::strtoull(arguments[2], nullptr, 10) : 1;
    Random random(seed);
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    std::uint64_t runs = 0;
    std::vector<std::string> corpus = {"data: hello\n\n"};
    while (std::chrono::steady_clock::now() < end) {
        std::string stream = random() % 4 == 0 ? madeUp(random) : corpus[below(random, corpus.size())];
        for (std::size_t times = 1 + below(random, 8); times > 0; --times)
            mutate(stream, random);
        runOnce(stream, random);
        ++runs;
        if (stream.size() < 4096 && random() % 8 == 0) {
            if (corpus.size() < 200)
                corpus.push_back(stream);
            else
                corpus[below(random, corpus.size())] = stream;
        }
    }
    std::printf("%llu streams, all as promised (seed %llu)\n", static_cast<unsigned long long>(runs),
                static_cast<unsigned long long>(seed));
    return 0;
}
