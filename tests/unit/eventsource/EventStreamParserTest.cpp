#include "EventSource/EventStreamParser.h"

#include "tests/unit/eventsource/PlainParser.h"

#include <gtest/gtest.h>

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

const std::string kNoBreakSpace = "\u00A0";

const std::vector<std::tuple<const char*, std::string, Events>> kRows = {
    {"a field", "data: hello\n\n", {data("hello")}},
    {"the fields by their names on the wire",
     "id: 7\nevent: e\nretry: 20\ndata: d\n\n",
     {fields("7", "e", "d", "20")}},
    {"lines of one field are joined", "data: a\ndata: b\n\n", {data("a\nb")}},
    {"every field that comes again is joined",
     "id: 1\nid: 2\nevent: x\nevent: y\n\n",
     {fields("1\n2", "x\ny", kNone)}},
    {"CR LF", "data: a\r\nid: 1\r\n\r\n", {fields("1", kNone, "a")}},
    {"CR", "data: a\r\rdata: b\r\r", {data("a"), data("b")}},
    {"a block that begins with a colon is dropped whole", ": ping\ndata: x\n\ndata: y\n\n", {data("y")}},
    {"a comment within a block is ignored", "data: x\n: ping\n\n", {data("x")}},
    {"nothing between two ends is an event without fields", "\n\n\n\n", {Event(), Event()}},
    {"three line ends leave one over", "data: a\n\n\ndata: b\n\n", {data("a"), data("b")}},
    {"event without a value takes the name back", "event: a\nevent\ndata: x\n\n", {data("x")}},
    {"event with only a colon too", "event: a\nevent:\nevent: b\n\n", {fields(kNone, "b", kNone)}},
    {"other fields without a value are empty", "data\nid:\nretry:\n\n", {fields("", kNone, "", "")}},
    {"an empty line of data is joined too", "data: a\ndata\ndata: b\n\n", {data("a\n\nb")}},
    {"all blanks before a value go", "data:  \t x\n\n", {data("x")}},
    {"blanks behind a value stay", "data: x  \n\n", {data("x  ")}},
    {"a value of blanks is empty", "data:   \n\n", {data("")}},
    {"further colons belong to the value", "data: a:b:\n\n", {data("a:b:")}},
    {"blanks before a name go", "  data: x\n\n", {data("x")}},
    {"blanks behind a name belong to it", "data : x\n\n", {Event()}},
    {"names keep their letter case", "Data: x\n\n", {Event()}},
    {"a line without a name is ignored", "data: a\n : b\n  \n\n", {data("a")}},
    {"unknown fields leave nothing", "foo: bar\n\n", {Event()}},
    {"the end mark is an ordinary event", "data: [DONE]\n\n", {data("[DONE]")}},
    {"blanks of Unicode count",
     kNoBreakSpace + "\u3000data:\u2003" + kNoBreakSpace + "x\u1680\n\n",
     {data("x\u1680")}},
    {"a zero width space is none", "data:\u200Bx\n\n", {data("\u200Bx")}},
    {"a byte order mark is a part of the name", "\uFEFFdata: x\n\n", {Event()}},
    {"lines end at all line ends of Unicode",
     "data: a\u0085id: 1\u2028data: b\u2029data: c\vdata: d\fdata: e\n\n",
     {fields("1", kNone, "a\nb\nc\nd\ne")}},
    {"a letter like a line end is none",
     "data: \u00C5\u20AC\u0084\u202A\n\n",
     {data("\u00C5\u20AC\u0084\u202A")}},
    {"an ill-formed block is dropped alone",
     "\xFF\xFE\n\ndata: x\n\ndata: \xC3\n\ndata: \xED\xA0\x80\n\ndata: y\n\n",
     {data("x"), data("y")}},
    {"a stream without a last end", "data: x\n", {}},
    {"zeros are data", std::string("data: a\0b\n\n", 11), {data(std::string("a\0b", 3))}},
};

TEST(EventStreamParser, ReadsBlocksByItsOwnRulesHoweverTheyAreCut) {
    std::mt19937 random(7);
    for (const auto& [rule, stream, events] : kRows) {
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
