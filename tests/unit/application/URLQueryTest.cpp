#include "Quillmoth/Application/URLQuery.h"

#include <gtest/gtest.h>

namespace quillmoth {

namespace {

using Items = std::vector<URLQueryItem>;

TEST(URLQueryTest, items_are_split_and_decoded) {
    struct Case {
        const char* url;
        std::optional<Items> items;
    };

    const Case cases[] = {
        {"quillmoth://x", std::nullopt},
        {"quillmoth://x?", Items{}},
        {"quillmoth://x?a=1&data=%7B%22%F0%9F%A6%89%22%7D", Items{{"a", "1"}, {"data", "{\"🦉\"}"}}},
        {"quillmoth://x?data", Items{{"data", std::nullopt}}},
        {"quillmoth://x?data=", Items{{"data", ""}}},
        {"quillmoth://x?a=b=c+d#e?f=g", Items{{"a", "b=c+d"}}},
        {"quillmoth://x?%64ata=1&data=2", Items{{"data", "1"}, {"data", "2"}}},
        {"quillmoth://x?data=%7", std::nullopt},
        {"quillmoth://x?data=%", std::nullopt},
        {"quillmoth://x?data=%zz", std::nullopt},
        {"quillmoth://x?data=%41", Items{{"data", "A"}}},
    };
    for (const Case& each : cases)
        EXPECT_EQ(urlQueryItems(each.url), each.items) << each.url;
}

TEST(URLQueryTest, the_scheme_is_what_stands_before_the_colon) {
    EXPECT_EQ(urlScheme("quillmoth://x"), "quillmoth");
    EXPECT_EQ(urlScheme("Quillmoth:x"), "Quillmoth");
    for (const char* url : {"", "x", ":x", "1a:x", "a b:x"})
        EXPECT_EQ(urlScheme(url), "") << url;
}

} // namespace

} // namespace quillmoth
