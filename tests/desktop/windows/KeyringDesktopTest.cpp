#include "tests/desktop/windows/WindowsSession.h"

#include <linux/input-event-codes.h>

namespace quillmoth::test {

namespace {

using nlohmann::json;

constexpr const char* kKeptKey = "sk-moth-7e1d";
constexpr const char* kPassword = "password";
constexpr const char* kService = "org.freedesktop.secrets";
constexpr const char* kLogin = "/org/freedesktop/secrets/collection/login";

/// With a real keyring on the session bus, unlocked at first.
class KeyringDesktop : public WindowsSession {
protected:
    void SetUp() override {
        WindowsSession::SetUp();
        keyring_.emplace(std::vector<std::string>{"gnome-keyring-daemon", "--unlock", "--components=secrets",
                                                  "--foreground"},
                         ChildOptions{.input = kPassword});
        // Any call to it would have the bus start another one meanwhile.
        eventually("the keyring is there", [] {
            return call("org.freedesktop.DBus", "/", "org.freedesktop.DBus.NameHasOwner", {kService})
                .starts_with("(true");
        });
        EXPECT_TRUE(isLocked().starts_with("(<false"));
    }

    /// The answer; empty where the call fails.
    static std::string call(const char* service, const char* path, const char* method,
                            const std::vector<std::string>& arguments) {
        std::vector<std::string> command{"gdbus", "call", "--session", "-d",  service,
                                         "-o",    path,   "-m",        method};
        command.insert(command.end(), arguments.begin(), arguments.end());
        const auto result = runChild(command, std::chrono::seconds(10));
        return result.exitCode == 0 ? result.output : "";
    }

    static std::string isLocked() {
        return call(kService, kLogin, "org.freedesktop.DBus.Properties.Get",
                    {"org.freedesktop.Secret.Collection", "Locked"});
    }

    static void lock() {
        call(kService, "/org/freedesktop/secrets", "org.freedesktop.Secret.Service.Lock",
             {std::string("['") + kLogin + "']"});
        EXPECT_NE(isLocked().find("true"), std::string::npos);
    }

    static std::string diagnosis() { return session().run({"--diagnose"}).output; }

    std::optional<ChildProcess> keyring_;
};

} // namespace

TEST_F(KeyringDesktop, TheKeyLeavesTheFileAndALockedKeyringIsAskedForByTheFirstQuestionAlone) {
    writeDefaults({{"openapikey", kKeptKey}});
    start();
    run({"--settings"});
    awaitWindow("Settings");
    EXPECT_TRUE(await("check box", "Keep the key in the keyring").press());
    awaitStored("openapikey", nullptr);
    EXPECT_TRUE(defaults().value("keepsKeyInKeyring", false));
    EXPECT_TRUE(shows(kKeptKey));
    EXPECT_NE(diagnosis().find("Key: in the keyring\n"), std::string::npos) << diagnosis();
    closeWindow("Settings");
    ask("one");
    EXPECT_EQ(chatRequests().back().header("Authorization"), std::string("Bearer ") + kKeptKey);
    quit();

    lock();
    start({"--toggle"});
    EXPECT_TRUE(isFocused("text Command"));
    input().type("two");
    EXPECT_NE(isLocked().find("true"), std::string::npos);
    EXPECT_EQ(windows().managedWindows().size(), 0U) << "somebody is asked at the start";
    input().tapKey(KEY_ENTER);
    const auto awaitQuestion = [] {
        eventually("the desktop asks for the password, and has the keyboard", [] {
            const auto all = windows().managedWindows();
            return all.size() == 1 && windows().activeWindow() == all.front() && !isOpen();
        });
    };
    awaitQuestion();
    EXPECT_NE(diagnosis().find("Key: in the keyring, locked"), std::string::npos) << diagnosis();
    input().tapKey(KEY_ESC);
    awaitText("The keyring is locked. Unlock it to send.");
    EXPECT_EQ(command(), "two");
    EXPECT_EQ(chatRequests().size(), 1U);
    input().tapKey(KEY_ENTER);
    awaitQuestion();
    input().type(kPassword);
    input().tapKey(KEY_ENTER);
    eventually("the panel is back", [] { return isOpen() && command() == "two"; });
    input().tapKey(KEY_ENTER);
    eventually("the question is sent", [] { return chatRequests().size() > 1; });
    EXPECT_EQ(chatRequests().back().header("Authorization"), std::string("Bearer ") + kKeptKey);
    for (const auto& request : server().requests())
        EXPECT_TRUE(request.path.starts_with("/v1/")) << request.path;
}

} // namespace quillmoth::test
