#include "tests/desktop/atspi/AtSpiDesktop.h"

#include <cstdlib>
#include <linux/input-event-codes.h>
#include <signal.h>

using namespace quillmoth::platform;
using namespace quillmoth::test;

namespace {

using BusRecoveryTest = AtSpiDesktop;

/// The process that owns a name on the session bus.
pid_t ownerOf(const std::string& name) {
    const auto result =
        runChild({"dbus-send", "--session", "--print-reply=literal", "--dest=org.freedesktop.DBus", "/",
                  "org.freedesktop.DBus.GetConnectionUnixProcessID", "string:" + name},
                 std::chrono::seconds(2));
    const auto number = result.output.find("uint32 ");
    return number == std::string::npos ? 0
                                       : static_cast<pid_t>(std::atol(result.output.c_str() + number + 7));
}

void setEnabled(bool enabled) {
    runChild({"dbus-send", "--session", "--print-reply", "--dest=org.a11y.Bus", "/org/a11y/bus",
              "org.freedesktop.DBus.Properties.Set", "string:org.a11y.Status", "string:IsEnabled",
              enabled ? "variant:boolean:true" : "variant:boolean:false"},
             std::chrono::seconds(2));
}

} // namespace

TEST_F(BusRecoveryTest, trustIsThatAccessibilityIsEnabledAndIsAskedForOnce) {
    bool consent = false;
    int asked = 0;
    AtSpiAccessibility asking({.frontProcess = frontProcess,
                               .hasConsent = [&] { return consent; },
                               .askForConsent = [&] { ++asked; }});
    const auto editor = openEditor(editorKinds()[0], "words");
    const auto application = asking.createApplication(editor.processIdentifier());
    EXPECT_TRUE(asking.isProcessTrustedWithOptions(true));
    EXPECT_EQ(asked, 0) << "nothing to ask for";
    setEnabled(false);
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

TEST_F(BusRecoveryTest, worksAgainWhenTheAccessibilityBusIsBack) {
    { const auto editor = openEditor(editorKinds()[0], "before"); }
    const pid_t launcher = ownerOf("org.a11y.Bus");
    ASSERT_GT(launcher, 0);
    kill(launcher, SIGSTOP);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(accessibility().isProcessTrusted()) << "it does not answer";
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1100));
    kill(launcher, SIGCONT);
    ASSERT_TRUE(holdsWithin(std::chrono::seconds(3), [] { return accessibility().isProcessTrusted(); }));
    kill(launcher, SIGTERM);
    ASSERT_TRUE(holdsWithin(std::chrono::seconds(3), [&] { return ownerOf("org.a11y.Bus") != launcher; }));
    // The session bus starts another one when it is asked for.
    ASSERT_TRUE(holdsWithin(std::chrono::seconds(5), [] { return accessibility().enableForDesktop(); }));
    EXPECT_TRUE(accessibility().isProcessTrusted());
    const auto editor = openEditor(editorKinds()[0], "after");
    desktop().input().chord({KEY_LEFTCTRL, KEY_A});
    EXPECT_EQ(capturedTextOnce("after"), "after");
}
