#include "Quillmoth/Chat/ChatDeltaReader.h"

#include <gtest/gtest.h>

#include <random>

namespace quillmoth {
namespace {

std::string piece(const std::string& content) {
    return R"({"id":"i","choices":[{"index":0,"delta":{"content":")" + content +
           R"("},"finish_reason":null}]})";
}

TEST(ChatDeltaReader, GivesWhatReadingEachPieceAloneGives) {
    // Each follows each: what is remembered of one piece must not show in the next.
    const std::vector<std::string> pieces = {
        piece("a"),
        piece(""),
        piece("ü 🦋"),
        piece(R"(a \"quoted\" \n \u00e9)"),
        piece(R"(\\)"),
        piece(R"(a\"b)"),
        piece(R"(a"b)"),
        piece(R"(a","role":"b)"),
        piece("a\nb"),
        piece("\xFF"),
        piece("\\"),
        piece(R"("content":"x)"),
        R"({"id":"i","choices":[{"index":0,"delta":{"content":"a"},"finish_reason":"stop"}]})",
        R"({"id":"i","choices":[{"index":0,"delta":{"content":"a"},"finish_reason":null}]}x)",
        R"({"id":"i","choices":[{"index":0,"delta":{"content":null},"finish_reason":null}]})",
        R"({"content":"outer","choices":[{"delta":{"content":"a"}}]})",
        R"({"choices":[{"delta":{"content":"a"}}],"content":"outer"})",
        R"({"x":{"content":"other"},"choices":[{"delta":{"c\u006fntent":"a"}}]})",
        R"({"choices":[{"delta":{"content":"a"}},{"delta":{}}]})",
        R"({"choices":[{"delta":{"a\"content":"x","role":"r"}}]})",
        R"({"seed":18446744073709551616,"choices":[{"delta":{"content":"a"}}],"created":1e3})",
        R"({"seed":18446744073709551616,"choices":[{"delta":{"content":"b"}}],"created":1e3})",
        R"({"choices":[]})",
        "{}",
        "",
    };
    for (const std::string& first : pieces) {
        for (const std::string& second : pieces) {
            ChatDeltaReader reader;
            for (const std::string& json : {first, second, first}) {
                const auto expected = readChatResponseDelta(json);
                const ChatResponseDelta* delta = reader.read(json);
                ASSERT_EQ(delta != nullptr, static_cast<bool>(expected)) << first << "\n" << second;
                if (delta != nullptr) {
                    EXPECT_EQ(*delta, *expected) << first << "\n" << second;
                }
            }
        }
    }
}

TEST(ChatDeltaReader, GivesTheSameForDamagedPieces) {
    const std::string letters = "[]{}\",:\\ 1nx\xC3";
    std::mt19937 random(20261122); // NOLINT(cert-msc51-cpp): the same cases in each run
    ChatDeltaReader reader;
    for (int round = 0; round < 20000; ++round) {
        std::string json = piece("word");
        // Mostly in and around the content.
        const std::size_t place = random() % 2 == 0 ? 45 + random() % 24 : random() % json.size();
        json.replace(std::min(place, json.size() - 1), 1, 1, letters[random() % letters.size()]);
        const auto expected = readChatResponseDelta(json);
        const ChatResponseDelta* delta = reader.read(json);
        ASSERT_EQ(delta != nullptr, static_cast<bool>(expected)) << json;
        if (delta != nullptr) {
            ASSERT_EQ(*delta, *expected) << json;
        }
        ASSERT_NE(reader.read(piece("next")), nullptr);
    }
}

} // namespace
} // namespace quillmoth
