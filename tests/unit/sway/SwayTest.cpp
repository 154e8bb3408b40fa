#include "Platform/Linux/Sway/SwayConfig.h"
#include "Platform/Linux/Sway/SwayMessage.h"
#include "Platform/Linux/Sway/SwayTree.h"

#include <gtest/gtest.h>

namespace quillmoth::platform {

namespace {

constexpr SwayCombination kAltSpace{.keycode = 65, .modifiers = keys::kCarbonOption};

std::optional<std::string> bound(const std::string& configuration) {
    return boundSwayCommand(configuration, kAltSpace, [](const std::string& name) {
        return name == "space" ? std::optional<std::uint32_t>(65) : std::nullopt;
    });
}

} // namespace

TEST(SwayConfig, FindsWhatTheUserHasBoundHoweverItIsWritten) {
    for (const char* line :
         {"bindsym Mod1+space exec menu", "  bindsym --release --locked alt+space exec menu",
          "bindcode Mod1+65 exec menu", "set $m Mod1\nset $mod $m\nbindsym $mod+space exec menu",
          "bindsym Mod1+space kill\nbindsym Mod1+space exec menu",
          "mode resize {\n bindsym Mod1+space kill\n}\nbindsym Mod1+space exec menu"})
        EXPECT_EQ(bound(line), "exec menu") << line;
    for (const char* line : {"", "bindsym Mod4+space exec menu", "bindsym Mod1+Shift+space exec menu",
                             "# bindsym Mod1+space exec menu", "bindsym Mod1+a exec menu", "bindsym",
                             "bindcode Mod1+space exec menu", "set", "bindsym $unknown+space exec menu",
                             "mode resize {\n bindsym Mod1+space exec menu\n}",
                             "bindsym Mod1+space exec menu\nunbindsym Mod1+space"})
        EXPECT_EQ(bound(line), std::nullopt) << line;
    EXPECT_EQ(writtenSwayCombination({.keycode = 65,
                                      .modifiers = keys::kCarbonOption | keys::kCarbonShift |
                                                   keys::kCarbonCommand | keys::kCarbonControl}),
              "Shift+Control+Mod1+Mod4+65");
}

TEST(SwayMessage, IsTakenOnceAllOfItIsThere) {
    const std::string all = writtenSwayMessage({.kind = 4, .payload = "[1]"}) +
                            writtenSwayMessage({.kind = kSwayEventBit | 3, .payload = ""});
    std::string received;
    std::vector<SwayMessage> messages;
    bool isBroken = false;
    for (const char byte : all) {
        received += byte;
        while (auto message = takeSwayMessage(received, isBroken))
            messages.push_back(*message);
    }
    EXPECT_FALSE(isBroken);
    ASSERT_EQ(messages.size(), 2U);
    EXPECT_EQ(messages[0].payload, "[1]");
    EXPECT_EQ(messages[1].kind, kSwayEventBit | 3);
    for (std::string nonsense : {std::string("HTTP/1.1 400 Bad"), "i3-ipc" + std::string(8, '\xFF')}) {
        EXPECT_FALSE(takeSwayMessage(nonsense, isBroken));
        EXPECT_TRUE(isBroken);
    }
}

TEST(SwayTree, TellsTheWindowWithTheFocusAndTakesNothingForGranted) {
    const auto focused = [](const char* tree) { return focusedWindow(nlohmann::json::parse(tree)); };
    EXPECT_EQ(focused(R"({"nodes":[{"focused":false,"pid":3},
                         {"floating_nodes":[{"focused":true,"id":4,"pid":7,"app_id":"org.x.Kate"}]}]})"),
              (SwayWindow{.identifier = 4, .process = 7, .application = "org.x.Kate"}));
    EXPECT_EQ(focused(R"({"nodes":[{"focused":true,"pid":8,"app_id":null,
                         "window_properties":{"class":"XTerm"}}]})"),
              (SwayWindow{.process = 8, .application = "XTerm"}));
    for (const char* tree :
         {"{}", "[]", "null", R"({"nodes":7})", R"({"nodes":[null,1,"a"]})", R"({"focused":"yes","pid":3})",
          R"({"focused":true,"pid":"x"})", R"({"focused":true,"type":"workspace"})"})
        EXPECT_EQ(focused(tree), std::nullopt) << tree;
    EXPECT_EQ(focusedOutput(nlohmann::json::parse(R"([{"name":"A"},{"name":"B","focused":true},3])")), "B");
    EXPECT_EQ(focusedOutput(nlohmann::json::parse("{}")), "");
}

} // namespace quillmoth::platform
