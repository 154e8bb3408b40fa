#pragma once

#include "tests/desktop/support/VirtualDesktop.h"

#include <gtest/gtest.h>

namespace quillmoth::test {

/// What another program would paste; this process answers meanwhile.
inline std::string onClipboard(const std::string& target = "UTF8_STRING") {
    ChildProcess reader({"xclip", "-selection", "clipboard", "-o", "-t", target});
    EXPECT_TRUE(holdsWithin(std::chrono::seconds(10), [&] { return !reader.isRunning(); }));
    return reader.output();
}

/// A program that has this text, its HTML and a picture on the clipboard until it loses them.
inline ChildProcess copyRich(const std::string& text, const std::string& html) {
    ChildProcess owner({CLIPBOARD_OWNER, text, html});
    // The same text may be there already, from a copy before.
    EXPECT_TRUE(holdsWithin(std::chrono::seconds(10), [&] {
        return owner.output().find("ready") != std::string::npos && onClipboard() == text;
    })) << owner.output();
    return owner;
}

} // namespace quillmoth::test
