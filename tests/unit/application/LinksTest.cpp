#include "Quillmoth/Application/Links.h"

#include "Foundation/Limits.h"

#include <gtest/gtest.h>

namespace quillmoth {
namespace {

TEST(Links, OnlyWebPagesMailAndTheProgramsOwnAreOpened) {
    for (const char* url :
         {"http://a.example", "HTTPS://a.example/b?c", "mailto:a@b.example", "quillmoth://x", "QuillMoth:x"})
        EXPECT_TRUE(isOpenedFromAnswer(url)) << url;
    for (const char* url : {"file:///etc/passwd", "javascript:alert(1)", "smb://host/share", "httpss://a",
                            "http", "data:text/html,x", "vscode://x", "", ":", " http://a"})
        EXPECT_FALSE(isOpenedFromAnswer(url)) << url;
    EXPECT_EQ(unopenedLinkWords("file:///etc/passwd"), "Links that begin with “file:” are not opened.");
}

TEST(Links, WhatIsNoPresetIsToldInWords) {
    const auto words = [](const std::string& url) {
        const auto preset = presetOfLink(url);
        return preset ? *preset ? "a preset" : "none" : preset.error().description;
    };
    for (const char* data : {"", "%7B", "%5B%5D", "%FF", "%7B%22emoji%22%3A1%7D", "%00"})
        EXPECT_EQ(
            words("quillmoth://x?data=" + std::string(data)).find("What the link carries is no preset: "), 0U)
            << data;
    for (const char* url :
         {"quillmoth://promptEditor", "quillmoth://x?", "quillmoth://x?data", "quillmoth://x?a=b"})
        EXPECT_EQ(words(url), "none") << url;
    EXPECT_EQ(words("quillmoth://x:y?data=%7B%7D"), "The link is no valid address.");
    const std::string start = "quillmoth://x?a=";
    EXPECT_EQ(words(start + std::string(limits::kLink - start.size(), 'a')), "none");
    EXPECT_EQ(words(start + std::string(limits::kLink - start.size() + 1, 'a')),
              "The link is longer than 64 KB.");
}

} // namespace
} // namespace quillmoth
