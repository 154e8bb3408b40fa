#include "Foundation/URL.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace quillmoth {
namespace {

TEST(URL, what_is_no_URL_is_refused) {
    for (const char* text : {"", "a b", "http://exa mple.org", "%", "a%2", "a%zz", "<a>", "http://h:port/",
                             "1a:b", "http://[::1/", "a\"b", "a\\b", "http://a^b/", "http://{a}/"})
        EXPECT_FALSE(URL::parse(text)) << text;
}

TEST(URL, references_are_resolved_against_their_base) {
    constexpr const char* kBase = "http://a/b/c/d;p?q";
    // The examples of RFC 3986, 5.4.1 and 5.4.2; then what people write though it is to be encoded.
    std::istringstream cases(R"(
        g:h     g:h                   g         http://a/b/c/g         ./g     http://a/b/c/g
        g/      http://a/b/c/g/       /g        http://a/g             //g     http://g
        ?y      http://a/b/c/d;p?y    g?y       http://a/b/c/g?y       #s      http://a/b/c/d;p?q#s
        g#s     http://a/b/c/g#s      ;x        http://a/b/c/;x        .       http://a/b/c/
        ./      http://a/b/c/         ..        http://a/b/            ../g    http://a/b/g
        ../..   http://a/             ../../g   http://a/g             /./g    http://a/g
        /../g   http://a/g            g.        http://a/b/c/g.        ..g     http://a/b/c/..g
        ./g/.   http://a/b/c/g/       g/../h    http://a/b/c/h         ä       http://a/b/c/%C3%A4
        ../../../g    http://a/g      g?y/../x  http://a/b/c/g?y/../x  mailto:a@b.c  mailto:a@b.c
        /{id}|[1]^2?a=[{1|2}]^#[^x]   http://a/%7Bid%7D%7C%5B1%5D%5E2?a=%5B%7B1%7C2%7D%5D%5E#%5B%5Ex%5D)");
    for (std::string text, expected; cases >> text >> expected;)
        EXPECT_EQ(resolveURL(text, kBase), expected) << text;
    EXPECT_EQ(resolveURL("a/../b", ""), "a/../b") << "without a base it stays as written";
    EXPECT_EQ(resolveURL("a b", kBase), std::nullopt);
    EXPECT_EQ(resolveURL("a \"b\"", kBase, URL::kAnything), "http://a/b/c/a%20%22b%22");
    EXPECT_EQ(resolveURL("../y", "http://u@[::1]:9/b/c"), "http://u@[::1]:9/y");
    EXPECT_EQ(resolveLink("g", kBase), "http://a/b/c/g");
    EXPECT_EQ(resolveLink("g", ""), std::nullopt);
}

TEST(URL, query_items_are_split_and_decoded) {
    using Items = std::vector<URLQueryItem>;
    const std::pair<const char*, std::optional<Items>> cases[] = {
        {"quillmoth://x", std::nullopt},
        {"quillmoth://x?", Items{}},
        {"quillmoth://x?a=1&data=%7B%22%F0%9F%A6%89%22%7D", Items{{"a", "1"}, {"data", "{\"🦉\"}"}}},
        {"quillmoth://x?data={\"a b\":\"🦉\"}", Items{{"data", "{\"a b\":\"🦉\"}"}}},
        {"quillmoth://x?data", Items{{"data", std::nullopt}}},
        {"quillmoth://x?data=", Items{{"data", ""}}},
        {"quillmoth:?a=b=c+d%0D%0A#e?f=g", Items{{"a", "b=c+d\r\n"}}},
        {"quillmoth://x?%64ata=1&data=2", Items{{"data", "1"}, {"data", "2"}}},
        {"quillmoth://x?a%00b=c%00d&&=",
         Items{{std::string("a\0b", 3), std::string("c\0d", 3)}, {"", std::nullopt}, {"", ""}}},
    };
    for (const auto& [text, items] : cases) {
        const auto url = URL::parse(text, URL::kAnything);
        ASSERT_TRUE(url) << text;
        EXPECT_EQ(url->queryItems(), items) << text;
    }
    for (const char* broken : {"x:?data=%7", "x:?data=%", "x:?data=%zz"})
        EXPECT_FALSE(URL::parse(broken, URL::kAnything)) << broken;
}

// The library goes through a text by calls that end in calls: none may wait for the next.
TEST(URL, a_long_one_is_read_and_resolved) {
    constexpr std::size_t kLength = 1 << 20;
    for (const char* start : {"", "x:", "http://h/?", "http://h/#", "http://"}) {
        const std::string url = start + std::string(kLength, 'a');
        EXPECT_EQ(resolveURL(url, "http://b/"), *start == 0 ? "http://b/" + url : url);
    }
}

} // namespace
} // namespace quillmoth
