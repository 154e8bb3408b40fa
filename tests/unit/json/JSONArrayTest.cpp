#include "Foundation/JSONReader.h"

#include <gtest/gtest.h>

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

} // namespace
} // namespace quillmoth
