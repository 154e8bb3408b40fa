#include "Foundation/JSONWriter.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace quillmoth {
namespace {

TEST(JSONWriter, NestsAndEscapes) {
    std::string text;
    JSONWriter writer(text);
    writer.beginArray();
    writer.beginObject();
    writer.required("a\"b", std::string("\\ \b\f\n\r\t\x01\x1F\x7F"));
    writer.optional("none", std::optional<std::string>());
    writer.ignoredOnWrite("some", std::optional<std::string>("x"));
    writer.required("numbers", std::vector<double>{0.1, 1700000000.25, -3, 1e300});
    writer.endObject();
    writer.value(true);
    writer.value(0.1F);
    writer.value(std::int64_t{-9223372036854775807 - 1});
    writer.endArray();
    EXPECT_EQ(text,
              "[{\"a\\\"b\":\"\\\\ \\b\\f\\n\\r\\t\\u0001\\u001f\x7F\",\"numbers\":[0.1,1700000000.25,-3,"
              "1e+300]},true,0.1,-9223372036854775808]");
    EXPECT_FALSE(writer.hasReplacedText());
    writer.value("\xC3");
    EXPECT_TRUE(writer.hasReplacedText());
    EXPECT_TRUE(text.ends_with("\"\uFFFD\""));
}

TEST(JSONWriter, EscapesEachByteWhereverItStands) {
    for (const std::string filler : {"x", "\x7F", "é", "\"", "!", "#", "[", "]"}) {
        for (int byte = 0; byte < 0x80; ++byte) {
            for (int before = 0; before < 18; ++before) {
                std::string given;
                for (int count = 0; count < before; ++count)
                    given += filler;
                (given += static_cast<char>(byte)) += "tail of it";
                std::string text;
                JSONWriter(text).value(given);
                ASSERT_EQ(text, nlohmann::json(given).dump()) << byte << " behind " << before << filler;
            }
        }
    }
}

} // namespace
} // namespace quillmoth
