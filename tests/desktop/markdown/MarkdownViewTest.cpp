// A view on a real desktop: read from another process over the accessibility bus, used by keyboard, and shown
// while its images are still on the way.

#include "tests/desktop/support/AccessibleProgram.h"
#include "tests/desktop/support/FailureScreenshots.h"
#include "tests/desktop/support/VirtualDesktop.h"
#include "tests/support/ScriptedChatServer.h"

#include <gtest/gtest.h>

#include <linux/input-event-codes.h>

#include <fstream>

using namespace quillmoth::test;
using namespace std::chrono_literals;

namespace {

constexpr auto kPatience = 30s;

class MarkdownViewTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        desktop_ = std::make_unique<VirtualDesktop>(VirtualDesktopOptions{.accessibility = true});
        keepScreenshotsOnFailure(desktop_.get());
    }

    static void TearDownTestSuite() {
        keepScreenshotsOnFailure(nullptr);
        desktop_.reset();
    }

    static ChildOptions shown() {
        return {.environment = {{"QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"}, {"QT_QPA_PLATFORM", "xcb"}}};
    }

    static std::string write(const std::string& markdown) {
        std::string path = desktop_->homeDirectory() + "/document.md";
        std::ofstream(path, std::ios::binary) << markdown;
        return path;
    }

    static inline std::unique_ptr<VirtualDesktop> desktop_;
};

/// What another process reads of the view, once it is `expected`, or what it is in the end.
std::string documentText(const AccessibleProgram& view, const std::string& expected) {
    std::string seen;
    waitFor(
        [&] {
            const auto document = view.find("document");
            return (seen = document ? document->text() : "") == expected;
        },
        kPatience);
    return seen;
}

bool holds(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

/// A PNG of 2 by 1 pixels.
std::string smallPicture(const VirtualDesktop& desktop) {
    const std::string path = desktop.homeDirectory() + "/small.png";
    EXPECT_EQ(runChild({"convert", "-size", "2x1", "xc:red", path}, 20s).exitCode, 0);
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

TEST_F(MarkdownViewTest, anotherProcessReadsADocumentWithHeadingsLinksAndButtons) {
    ChildProcess view({MARKDOWNVIEW, write("# A title\n\nRead [the guide](https://example.org) first.\n\n"
                                           "```\nlet x = 1\n```\n\n![a moth](moth.png)\n")},
                      shown());
    const AccessibleProgram shown(view.processIdentifier());
    const std::string text = "A title\n\nRead the guide first.\n\nlet x = 1";
    EXPECT_EQ(documentText(shown, text), text) << view.output();
    for (const auto& [role, name] : {std::pair("heading", "A title"), std::pair("link", "the guide"),
                                     std::pair("push button", "Copy code"), std::pair("graphic", "a moth")})
        EXPECT_TRUE(shown.has(role, name)) << shown.described();
    const auto focuses = [&](const std::string& part) {
        return holdsWithin(kPatience, [&] {
            const auto focused = shown.focused();
            return !focused.empty() && focused.back() == part;
        });
    };

    ASSERT_TRUE(holdsWithin(kPatience, [&] {
        return desktop_->windows().processIdentifier(desktop_->windows().activeWindow()) ==
               static_cast<std::uint32_t>(view.processIdentifier());
    }));
    desktop_->input().tapKey(KEY_TAB);
    EXPECT_TRUE(focuses("link the guide"));
    desktop_->input().tapKey(KEY_TAB);
    EXPECT_TRUE(focuses("push button Copy code"));
    desktop_->input().tapKey(KEY_ENTER);
    std::string copied;
    EXPECT_TRUE(holdsWithin(kPatience, [&] {
        copied = runChild({"xclip", "-selection", "clipboard", "-o"}, 5s).output;
        return copied == "let x = 1";
    })) << copied;
    desktop_->input().chord({KEY_LEFTCTRL, KEY_A});
    EXPECT_TRUE(holdsWithin(kPatience, [&] { return shown.find("document")->selection() == text; }));
}

TEST_F(MarkdownViewTest, aDocumentIsThereBeforeItsImagesAndWithoutThoseThatFail) {
    ScriptedChatServer server;
    const auto latch = makeLatch();
    const auto picture = [bytes = smallPicture(*desktop_)](std::vector<Step> steps) {
        steps.emplace_back(Send{bytes});
        return ScriptedAnswer{.headers = {{"Content-Type", "image/png"}}, .steps = std::move(steps)};
    };
    server.answer("/late.png", picture({WaitFor{latch}}));
    server.answer("/good.png", picture({}));
    server.answer("/broken.png", ScriptedAnswer{.steps = {Send{"no picture at all"}}});
    const auto image = [&](const std::string& name) {
        return "![" + name + "](" + server.url("/" + name) + ")\n\n";
    };

    ChildProcess view({MARKDOWNVIEW, write("Before.\n\n" + image("late.png") + "After.\n")}, shown());
    EXPECT_EQ(documentText(AccessibleProgram(view.processIdentifier()), "Before.\n\nAfter."),
              "Before.\n\nAfter.")
        << view.output();
    EXPECT_TRUE(server.waitForRequests(1));
    latch->release();
    view.terminate();

    const ChildResult dump =
        runChild({MARKDOWNVIEW, "--dump",
                  write(image("good.png") + image("broken.png") + image("missing.png") + "End.\n")},
                 kPatience, {.environment = {{"QT_QPA_PLATFORM", "offscreen"}}});
    EXPECT_EQ(dump.exitCode, 0);
    EXPECT_TRUE(holds(dump.output, "image (0,0 2x1) \"" + server.url("/good.png"))) << dump.output;
    for (const char* name : {"/broken.png", "/missing.png"}) {
        const std::size_t line = dump.output.find(server.url(name));
        ASSERT_NE(line, std::string::npos) << dump.output;
    }
    EXPECT_TRUE(holds(dump.output, "\"End.\"")) << dump.output;
}
