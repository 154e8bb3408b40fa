#include <gtest/gtest.h>

#include "MarkdownUI/Document/URLReference.h"

namespace quillmoth::markdown {
namespace {

TEST(URLReference, what_is_no_URL_is_refused) {
    for (const char* text : {"", "a b", "http://exa mple.org", "%", "a%2", "a%zz", "<a>", "http://h:port/",
                             "1a:b", "http://[::1/", "a\"b", "a\\b", "http://a^b/", "http://{a}/"})
        EXPECT_FALSE(URLReference::parse(text)) << text;
}

TEST(URLReference, references_are_resolved_against_their_base) {
    constexpr const char* kBase = "http://a/b/c/d;p?q";
    const std::vector<std::pair<const char*, const char*>> cases{
        // The examples of RFC 3986, 5.4.1 and 5.4.2.
        {"g:h", "g:h"},
        {"g", "http://a/b/c/g"},
        {"./g", "http://a/b/c/g"},
        {"g/", "http://a/b/c/g/"},
        {"/g", "http://a/g"},
        {"//g", "http://g"},
        {"?y", "http://a/b/c/d;p?y"},
        {"g?y", "http://a/b/c/g?y"},
        {"#s", "http://a/b/c/d;p?q#s"},
        {"g#s", "http://a/b/c/g#s"},
        {";x", "http://a/b/c/;x"},
        {".", "http://a/b/c/"},
        {"./", "http://a/b/c/"},
        {"..", "http://a/b/"},
        {"../g", "http://a/b/g"},
        {"../..", "http://a/"},
        {"../../g", "http://a/g"},
        {"../../../g", "http://a/g"},
        {"/./g", "http://a/g"},
        {"/../g", "http://a/g"},
        {"g.", "http://a/b/c/g."},
        {"..g", "http://a/b/c/..g"},
        {"./g/.", "http://a/b/c/g/"},
        {"g/../h", "http://a/b/c/h"},
        {"g?y/../x", "http://a/b/c/g?y/../x"},
        {"mailto:a@b.c", "mailto:a@b.c"},
        {"\xC3\xA4", "http://a/b/c/%C3%A4"},
        // What people write though it is to be encoded.
        {"/{id}|[1]^2?a=[{1|2}]^#[^x]", "http://a/%7Bid%7D%7C%5B1%5D%5E2?a=[%7B1%7C2%7D]%5E#[%5Ex]"},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(resolveURL(text, kBase), expected) << text;
    EXPECT_EQ(resolveURL("a/../b", ""), "a/../b") << "without a base it stays as written";
    EXPECT_EQ(resolveURL("a b", kBase), std::nullopt);
}

} // namespace
} // namespace quillmoth::markdown
