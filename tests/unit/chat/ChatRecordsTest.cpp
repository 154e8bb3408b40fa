#include "Quillmoth/Chat/ChatRecords.h"
#include "Platform/Fake/FakeUUIDSource.h"

#include <gtest/gtest.h>

namespace quillmoth {
namespace {

using platform::FakeUUIDSource;

TEST(ChatMessageJSON, ReadingMakesAnIDWhereTheTextHasNone) {
    FakeUUIDSource uuids;
    const std::string json = R"({"role":"user","content":"hi"})";
    for (const int number : {1, 2})
        EXPECT_EQ(*readChatMessage(json, uuids), (ChatMessage{FakeUUIDSource::uuid(number), "user", "hi"}));
    EXPECT_TRUE(readChatMessage(R"({"content":"hi","role":"user","id":null})", uuids));
    EXPECT_EQ(readChatMessage(R"({"id":"X","role":"user","content":"hi"})", uuids)->id, "X");
}

TEST(ChatMessageJSON, WritesRoleAndContentAndNeverTheID) {
    const auto json = writeJSON(ChatMessage{"X", "user", "a \"quoted\"\nline\x01 ü 🦋"});
    ASSERT_TRUE(json);
    EXPECT_EQ(*json, R"({"role":"user","content":"a \"quoted\"\nline\u0001 ü 🦋"})");
    for (const char* noUTF8 : {"broken \xFF", "surrogate \xED\xA0\x80"})
        EXPECT_FALSE(writeJSON(ChatMessage{std::nullopt, "user", noUTF8}));
}

TEST(ChatRecordsJSON, DamagedTextsAndWrongTypesFailTheWholeRecord) {
    FakeUUIDSource uuids;
    for (const char* json :
         {"", " ", "null", "[]", "{", R"({"role":"user"})", R"({"role":"user","content":null})",
          R"({"role":"user","content":1})", R"({"role":"user","content":"hi","id":5})",
          R"({"role":"user","content":"hi"}x)", R"({"role":"user","content":"hi",})",
          "{\"role\":\"user\",\"content\":\"\xC3\x28\"}", "{\"role\":\"user\",\"content\":\"a\nb\"}",
          R"({"role":"user","content":"\ud800"})"})
        EXPECT_FALSE(readChatMessage(json, uuids)) << json;
    EXPECT_EQ(uuids.count(), 0U);
}

/// JSON that no 64-bit number, no Unicode text and no bounded stack can hold.
std::vector<std::string> beyondBounds() {
    const std::size_t deep = 20000;
    std::string objects = "1";
    for (int level = 0; level < 5000; ++level)
        objects = R"({"a":[)" + objects + "]}";
    return {"18446744073709551616",
            "-9223372036854775809",
            "1e400",
            "-1.5E+999",
            "1" + std::string(1000, '0'),
            R"("half \ud83e")",
            std::string(deep, '[') + std::string(deep, ']'),
            "[1, " + objects + "]",
            R"({"a":{"b":[1e400, {"c":"]\"}"}]}})"};
}

TEST(ChatRecordsJSON, WhatStandsUnderAnUnknownKeyDoesNotMatter) {
    FakeUUIDSource uuids;
    for (const std::string& value : beyondBounds()) {
        SCOPED_TRACE(value.substr(0, 40));
        const std::string unknown = "{\"x\":" + value + ",";
        const auto message =
            readChatMessage(unknown + R"("role":"user","content":"\ud83e\udd89 \"1e400\"","id":"X"})", uuids);
        ASSERT_TRUE(message) << message.error().description;
        EXPECT_EQ(*message, (ChatMessage{"X", "user", "🦉 \"1e400\""}));
        const auto delta =
            readChatResponseDelta(unknown + R"("created":5,"choices":[{"logprobs":)" + value + "}]}");
        ASSERT_TRUE(delta) << delta.error().description;
        EXPECT_EQ(delta->created, 5);
        EXPECT_EQ(delta->choices->size(), 1U);
        // Under a known key it is of the wrong type, and what is broken stays so.
        for (const char* key : {"id", "created", "choices"})
            EXPECT_FALSE(readChatResponseDelta("{\"" + std::string(key) + "\":" + value + "}")) << key;
        for (const std::string& broken : {value + "}", value + "]", value + ",\"y\":01", value + ",\"y\":[}"})
            EXPECT_FALSE(readChatResponseDelta("{\"x\":" + broken + "}"))
                << broken.substr(broken.size() - 10);
    }
    const std::string deep = std::string(300, '[') + "01" + std::string(300, ']');
    for (const std::string& broken :
         std::vector<std::string>{"1e400.5", "-01e400", "1e", "--1e400", "\"\\ud83e\\x\"", deep})
        EXPECT_FALSE(readChatResponseDelta("{\"x\":" + broken + "}")) << broken;
}

TEST(ChatRecordsJSON, ErrorsNameThePlaceOfTheFault) {
    const auto missing = readChatResponse(
        R"({"id":"","object":"","created":1,"model":"","usage":{},"choices":[{"message":{"role":"a"},"index":0}]})");
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error().description, R"("choices", "entry 0", "message", "content" is missing)");
    const auto wrong = readChatResponseDelta(R"({"created":"soon"})");
    ASSERT_FALSE(wrong);
    EXPECT_EQ(wrong.error().description, R"("created" is no integer)");
}

TEST(ChatBodyJSON, AbsentOptionalsHaveNoKey) {
    ChatBody body;
    body.model = "m";
    body.messages = {{"X", "user", "hi"}};
    EXPECT_EQ(*writeJSON(body), R"({"model":"m","messages":[{"role":"user","content":"hi"}]})");
    body.temperature = 0.5F;
    body.stream = false;
    const auto json = writeJSON(body);
    EXPECT_EQ(
        *json,
        R"({"model":"m","messages":[{"role":"user","content":"hi"}],"temperature":0.5,"stream":false})");
    FakeUUIDSource uuids;
    const auto read = readChatBody(*json, uuids);
    ASSERT_TRUE(read);
    body.messages[0].id = FakeUUIDSource::uuid(1);
    EXPECT_EQ(*read, body);
    const auto known = readChatBody(R"({"model":"","messages":[{"role":"","content":"","id":"X"}]})", uuids);
    EXPECT_EQ(known->messages.at(0).id, "X");
}

TEST(ChatResponseJSON, RequiresAllButTheTokenCountsAndTheReasonToFinish) {
    const std::string head = R"({"id":"i","object":"o","created":5,"model":"m")";
    const std::string choice =
        R"({"message":{"role":"assistant","content":"c"},"index":0,"finish_reason":null})";
    const auto read = readChatResponse(head + R"(,"usage":{},"choices":[)" + choice + "],\"extra\":[1.5]}");
    ASSERT_TRUE(read);
    EXPECT_EQ(read->choices.at(0).message.content, "c");
    EXPECT_FALSE(read->choices.at(0).finishReason);
    EXPECT_EQ(*readChatResponse(*writeJSON(*read)), *read);
    EXPECT_FALSE(readChatResponse(head + R"(,"choices":[]})"));
    EXPECT_FALSE(
        readChatResponse(head + R"(,"usage":{},"choices":[{"message":{"role":"a","content":"c"}}]})"));
    EXPECT_FALSE(readChatResponse(R"({"error":{"message":"Incorrect API key"}})"));
}

TEST(ChatResponseDeltaJSON, EveryFieldMayBeAbsent) {
    EXPECT_EQ(*readChatResponseDelta("{}"), ChatResponseDelta{});
    const auto empty = readChatResponseDelta(R"({"choices":[{"delta":{},"index":0}]})");
    ASSERT_TRUE(empty);
    EXPECT_EQ(empty->choices->at(0).delta, MessageDelta{});
    EXPECT_EQ(empty->choices->at(0).index, 0);
    const auto null = readChatResponseDelta(R"({"choices":[{"delta":{"content":null}}],"usage":null})");
    ASSERT_TRUE(null);
    EXPECT_EQ(null->choices->at(0).delta, MessageDelta{});
    EXPECT_FALSE(null->usage);
}

TEST(ChatResponseDeltaJSON, ReadsKeysInAnyOrder) {
    const auto reversed = readChatResponseDelta(
        R"({"choices":[{"x":{},"delta":{"content":"\u00e9"}},{"delta":{"content":""}}],"usage":)"
        R"({"total_tokens":3,"completion_tokens":2,"prompt_tokens":1},"model":"m","created":7,"object":"o","id":"i"})");
    ASSERT_TRUE(reversed);
    EXPECT_EQ(
        *writeJSON(*reversed),
        R"({"id":"i","object":"o","created":7,"model":"m","usage":{"prompt_tokens":1,"completion_tokens":2,)"
        R"("total_tokens":3},"choices":[{"delta":{"content":"é"}},{"delta":{"content":""}}]})");
    EXPECT_EQ(*readChatResponseDelta(*writeJSON(*reversed)), *reversed);
}

TEST(ChatResponseDeltaJSON, IntegersAreWholeNumbersOf64Bits) {
    EXPECT_EQ(readChatResponseDelta(R"({"created":-9223372036854775808})")->created, INT64_MIN);
    const std::pair<const char*, std::int64_t> exponents[] = {
        {"1e3", 1000}, {"-12E+2", -1200}, {"1500e-2", 15}, {"0e99", 0}, {"1700000000e0", 1700000000}};
    for (const auto& [number, value] : exponents)
        EXPECT_EQ(readChatResponseDelta("{\"created\":" + std::string(number) + "}")->created, value)
            << number;
    for (const char* number :
         {"1.5", "1.0", "1.0e1", "15e-1", "1e19", "9223372036854775808", "true", "\"1\""})
        EXPECT_FALSE(readChatResponseDelta("{\"created\":" + std::string(number) + "}")) << number;
}

} // namespace
} // namespace quillmoth
