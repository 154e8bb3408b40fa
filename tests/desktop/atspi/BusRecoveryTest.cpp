#include "tests/desktop/atspi/AtSpiTest.h"

#include <csignal>
#include <cstdlib>

namespace quillmoth::test {

using namespace platform;
using namespace std::chrono_literals;

namespace {

/// The process that owns a name on the session bus.
pid_t ownerOf(const std::string& name) {
    const auto result =
        runChild({"dbus-send", "--session", "--print-reply=literal", "--dest=org.freedesktop.DBus", "/",
                  "org.freedesktop.DBus.GetConnectionUnixProcessID", "string:" + name},
                 2s);
    const auto number = result.output.find("uint32 ");
    return number == std::string::npos ? 0
                                       : static_cast<pid_t>(std::atol(result.output.c_str() + number + 7));
}

} // namespace

TEST_F(AtSpiTest, TrustIsThatAccessibilityIsEnabledAndIsAskedForOnce) {
    bool consent = false;
    int asked = 0;
    AtSpiAccessibility asking =
        newcomer({.hasConsent = [&] { return consent; }, .askForConsent = [&] { ++asked; }});
    const auto editor = openEditor(lightEditors()[0], "words");
    const auto application = asking.createApplication(editor.processIdentifier());
    EXPECT_TRUE(asking.isProcessTrustedWithOptions(true));
    EXPECT_EQ(asked, 0) << "nothing to ask for";
    VirtualDesktop::setAccessible(false);
    EXPECT_FALSE(asking.isProcessTrusted());
    EXPECT_FALSE(asking.isProcessTrustedWithOptions(false));
    EXPECT_EQ(asked, 0);
    EXPECT_FALSE(asking.isProcessTrustedWithOptions(true));
    EXPECT_FALSE(asking.isProcessTrustedWithOptions(true));
    EXPECT_EQ(asked, 1);
    AXValue value;
    EXPECT_EQ(asking.copyAttributeValue(asking.createSystemWide(), "AXFocusedUIElement", value),
              kAXErrorAPIDisabled);
    EXPECT_NE(asking.setAttributeValue(application, "AXEnhancedUserInterface", true), kAXErrorSuccess);
    EXPECT_FALSE(asking.isProcessTrusted()) << "never switched on without consent";
    consent = true;
    EXPECT_EQ(asking.setAttributeValue(application, "AXEnhancedUserInterface", true), kAXErrorSuccess);
    EXPECT_TRUE(asking.isProcessTrusted());
}

TEST_F(AtSpiTest, ItWorksAgainWhenTheAccessibilityBusIsBack) {
    { const auto editor = openEditor(lightEditors()[0], "before"); }
    const pid_t launcher = ownerOf("org.a11y.Bus");
    ASSERT_GT(launcher, 0);
    kill(launcher, SIGSTOP);
    EXPECT_LT(millisecondsOf([] { EXPECT_FALSE(accessibility().isProcessTrusted()); }), 1100);
    kill(launcher, SIGCONT);
    ASSERT_TRUE(holdsWithin(3s, [] { return accessibility().isProcessTrusted(); }));
    kill(launcher, SIGTERM);
    ASSERT_TRUE(holdsWithin(3s, [&] { return ownerOf("org.a11y.Bus") != launcher; }));
    // The session bus starts another one when it is asked for.
    ASSERT_TRUE(holdsWithin(5s, [] { return accessibility().enableForDesktop(); }));
    EXPECT_TRUE(accessibility().isProcessTrusted());
    const auto editor = openEditor(lightEditors()[0], "after");
    selectAll("after");
}

} // namespace quillmoth::test
