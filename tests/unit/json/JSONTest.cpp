#include "Foundation/JSONReader.h"
#include "Foundation/JSONWriter.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <random>

namespace quillmoth {
namespace {

struct Item {
    std::string name;
    std::optional<std::int64_t> count;

    friend bool operator==(const Item&, const Item&) = default;
};

struct List {
    std::vector<Item> items;
};

} // namespace

static bool visitFields(JSONFields& fields, Item& item) {
    return fields.required("name", item.name) && fields.optional("count", item.count);
}

static bool visitFields(JSONFields& fields, List& list) {
    return fields.required("items", list.items);
}

namespace {

std::string entriesOf(std::string_view json) {
    JSONArray array(json);
    std::string result;
    while (const auto entry = array.next())
        result.append(*entry).append("|");
    return result + (array.isComplete() ? "" : "damaged");
}

TEST(JSONArray, GivesTheTextOfEachEntry) {
    const std::pair<const char*, const char*> cases[] = {
        {"[]", ""},
        {" [ ] \n", ""},
        {"[1,\"a,]\\\"\\\\\", {\"x\":[\"}\"]} ,[[]]]", "1|\"a,]\\\"\\\\\"|{\"x\":[\"}\"]}|[[]]|"},
        {"[1] x", "1|damaged"},
        {"[1,]", "1|damaged"},
        {"[,1]", "damaged"},
        {"[1 2]", "1|damaged"},
        {"[1", "1|damaged"},
        {"[{\"a\":\"}]", "damaged"},
        {"{}", "damaged"},
        {"", "damaged"},
    };
    for (const auto& [json, entries] : cases)
        EXPECT_EQ(entriesOf(json), entries) << json;
}

TEST(JSONArray, ReadingEntryByEntryIsReadingTheWhole) {
    const std::string whole =
        R"([{"name":"a \\ \" ]","count":1e1}, {"x":[{}, "]", 1e400],"name":"ü"},{"name":"\u00e9"}])";
    const std::string letters = "[]{}\",:\\ 1enx\xC3";
    std::mt19937 random(20261122); // NOLINT(cert-msc51-cpp): the same cases in each run
    std::size_t readable = 0;
    for (int round = 0; round < 20000; ++round) {
        std::string json = whole;
        for (auto changes = random() % 3; changes > 0; --changes) {
            const auto place = random() % json.size();
            if (random() % 2 == 0)
                json[place] = letters[random() % letters.size()];
            else
                json.erase(place, 1 + random() % 3);
        }
        const auto entries = readJSONArray<Item>(json);
        // The same text as one value within an object goes through the parser in one piece.
        const auto list = readJSON<List>("{\"items\":" + json + "}");
        ASSERT_EQ(static_cast<bool>(entries), static_cast<bool>(list)) << json;
        if (entries) {
            ++readable;
            EXPECT_EQ(*entries, list->items) << json;
        }
    }
    EXPECT_GT(readable, 1000U);
    EXPECT_FALSE(readJSONArray<Item>("[\xEF\xBB\xBF{\"name\":\"a\"}]")) << "a mark is at the start alone";
}

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
