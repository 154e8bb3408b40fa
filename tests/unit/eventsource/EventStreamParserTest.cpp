#include "EventSource/EventStreamParser.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/unit/eventsource/PlainParser.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <array>
#include <limits>
#include <map>
#include <optional>
#include <random>

namespace quillmoth {

namespace {

using Events = std::vector<Event>;
using Text = std::optional<std::string>;

constexpr std::nullopt_t kNone = std::nullopt;

Event data(std::string text) {
    return {.id = kNone, .event = kNone, .data = std::move(text), .time = kNone};
}

Event fields(Text id, Text event, Text data, Text time = kNone) {
    return {std::move(id), std::move(event), std::move(data), std::move(time)};
}

/// Parses the chunks with one parser.
Events parse(const std::vector<std::string_view>& chunks) {
    EventStreamParser parser;
    Events events;
    for (const std::string_view chunk : chunks) {
        for (Event& event : parser.append(chunk))
            events.push_back(std::move(event));
    }
    return events;
}

std::vector<std::string_view> cutAtRandom(std::string_view text, std::mt19937& random) {
    std::vector<std::string_view> chunks;
    while (!text.empty()) {
        const std::size_t length = std::min<std::size_t>(text.size(), random() % 9);
        chunks.push_back(text.substr(0, length));
        text.remove_prefix(length);
    }
    return chunks;
}

/// Its rule, the stream, and its events, as streams.json has them.
struct Row {
    std::string rule;
    std::string stream;
    Events events;
};

std::vector<Row> rowsOfFile() {
    const auto field = [](const nlohmann::json& event, const char* name) {
        return event.contains(name) ? Text(event[name].get<std::string>()) : kNone;
    };
    std::vector<Row> rows;
    for (const auto& each : nlohmann::json::parse(test::contentOf(QUILLMOTH_STREAMS))) {
        rows.push_back({each["rule"], each["stream"], {}});
        for (const auto& event : each["events"])
            rows.back().events.push_back(
                {field(event, "id"), field(event, "event"), field(event, "data"), field(event, "retry")});
    }
    return rows;
}

TEST(EventStreamParser, ReadsBlocksByItsOwnRulesHoweverTheyAreCut) {
    std::mt19937 random(7);
    std::vector<Row> rows = rowsOfFile();
    EXPECT_EQ(rows.size(), 31U);
    rows.push_back({"an ill-formed block is dropped alone",
                    "\xFF\xFE\n\ndata: x\n\ndata: \xC3\n\ndata: \xED\xA0\x80\n\ndata: y\n\n",
                    {data("x"), data("y")}});
    for (const auto& [rule, stream, events] : rows) {
        EXPECT_EQ(parse({stream}), events) << rule;
        for (int round = 0; round < 20; ++round)
            EXPECT_EQ(parse(cutAtRandom(stream, random)), events) << rule << ", cut " << round;
    }
}

TEST(EventStreamParser, PrefersTheDoubledLineEndsInTheirOrderOverTheirPlace) {
    EXPECT_EQ(parse({"data: a\n\ndata: b\r\n\r\n"}), Events{data("a\nb")});
    EXPECT_EQ(parse({"data: a\n", "\ndata: b\r\n\r\n"}), Events{data("a\nb")});
    EXPECT_EQ(parse({"data: a\r\rdata: b\n\ndata: c\r\r"}), (Events{data("a\nb"), data("c")}));
    // What was complete before the better end arrived has been cut already.
    EXPECT_EQ(parse({"data: a\n\n", "data: b\r\n\r\n"}), (Events{data("a"), data("b")}));
    EXPECT_EQ(parse({"data: a\r\n\r", "\ndata: b\n\n"}), (Events{data("a"), data("b")}));
}

TEST(EventStreamParser, GivesWhatThePlainSearchGivesForAnyBytesAndCuts) {
    constexpr std::array<std::string_view, 12> kPieces{
        "\n", "\r", "\r\n", "\n\n", "\r\n\r\n", "data: ", "id:", "event: e", ":", "x", "\xC3", "\u2028"};
    std::mt19937 random(20);
    for (int round = 0; round < 3000; ++round) {
        std::string stream;
        for (std::size_t count = random() % 40; count > 0; --count)
            stream += kPieces[random() % kPieces.size()];
        EventStreamParser parser;
        test::PlainParser plain;
        for (const std::string_view chunk : cutAtRandom(stream, random))
            ASSERT_EQ(parser.append(chunk), plain.append(chunk)) << testing::PrintToString(stream);
    }
}

TEST(Event, ReadsARetryTimeStrictly) {
    constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
    const std::map<std::string, std::int64_t> numbers = {{"2500", 2500},
                                                         {"+5", 5},
                                                         {"-5", -5},
                                                         {"007", 7},
                                                         {" \t12\u00A0\t", 12},
                                                         {std::to_string(kMost), kMost},
                                                         {"-9223372036854775808", -kMost - 1}};
    for (const auto& [time, number] : numbers)
        EXPECT_EQ(fields(kNone, kNone, kNone, time).retryTime(), number) << testing::PrintToString(time);
    for (const char* time :
         {"9223372036854775808", "12x", "+-5", "-+5", "-", "", "1 2", "1\n2", "\n1", "0x10", "1.5", "\u0661"})
        EXPECT_EQ(fields(kNone, kNone, kNone, time).retryTime(), kNone) << testing::PrintToString(time);
    EXPECT_EQ(Event().retryTime(), kNone);
}

} // namespace
} // namespace quillmoth
