// The user's key: where it goes, and where it never lies.

#include "tests/desktop/windows/WindowsSession.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <linux/input-event-codes.h>

namespace quillmoth::test {

namespace {

namespace fs = std::filesystem;
using Paths = std::vector<std::string>;

constexpr const char* kKey = "sk-moth-3f9a71c2";
constexpr const char* kPassword = "password";
constexpr const char* kService = "org.freedesktop.secrets";
constexpr const char* kLogin = "/org/freedesktop/secrets/collection/login";

class SecretKey : public WindowsSession {
protected:
    /// All regular files of the desktop that hold the key.
    static Paths filesWithKey() {
        Paths found;
        for (const auto& entry : fs::recursive_directory_iterator(
                 desktop().temporaryDirectory(), fs::directory_options::skip_permission_denied)) {
            std::error_code ignored;
            if (!entry.is_regular_file(ignored))
                continue;
            std::ifstream file(entry.path(), std::ios::binary);
            const std::string content(std::istreambuf_iterator<char>(file), {});
            if (content.find(kKey) != std::string::npos)
                found.push_back(entry.path());
        }
        return found;
    }

    static std::optional<std::string> keyOfLastRequest() {
        return chatRequests().back().header("Authorization");
    }

    /// A real keyring on the session bus, unlocked.
    static ChildProcess startKeyring() {
        ChildProcess keyring({"gnome-keyring-daemon", "--unlock", "--components=secrets", "--foreground"},
                             {.input = kPassword});
        // Any call to it would have the bus start another one meanwhile.
        eventually("the keyring is there", [] {
            return call("org.freedesktop.DBus", "/", "org.freedesktop.DBus.NameHasOwner", {kService})
                .starts_with("(true");
        });
        EXPECT_TRUE(isLocked().starts_with("(<false"));
        return keyring;
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
};

} // namespace

// First: once any window has looked for a keyring, the bus has started one of its own.
TEST_F(SecretKey, TheKeyLeavesTheFileAndALockedKeyringIsAskedForByTheFirstQuestionAlone) {
    ChildProcess keyring = startKeyring();
    writeDefaults({{"openapikey", kKey}});
    start();
    run({"--settings"});
    awaitWindow("Settings");
    EXPECT_TRUE(await("check box", "Keep the key in the keyring").press());
    awaitStored("openapikey", nullptr);
    EXPECT_TRUE(shows(kKey));
    EXPECT_EQ(filesWithKey(), Paths());
    EXPECT_NE(diagnosis().find("Key: in the keyring\n"), std::string::npos) << diagnosis();
    closeWindow("Settings");
    ask("one");
    EXPECT_EQ(keyOfLastRequest(), std::string("Bearer ") + kKey);
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
    EXPECT_EQ(keyOfLastRequest(), std::string("Bearer ") + kKey);
    for (const auto& request : server().requests())
        EXPECT_TRUE(request.path.starts_with("/v1/")) << request.path;

    // The program's session with the keyring ends with that; it begins another one.
    keyring.terminate();
    keyring = startKeyring();
    run({"--settings"});
    awaitWindow("Settings");
    const auto toggle = await("check box", "Keep the key in the keyring");
    for (const bool isOut : {true, false}) {
        eventually("the key moves out, and in again", [&] {
            toggle.press();
            return holdsWithin(std::chrono::seconds(1), [&] { return filesWithKey().empty() != isOut; });
        });
    }
}

TEST_F(SecretKey, OfAllFilesAndOutputOfARunTheDefaultsStoreAloneHoldsTheKey) {
    start();
    run({"--settings"});
    awaitWindow("Settings");
    click(await("text", "OpenAI API Key:"));
    EXPECT_TRUE(isFocused("text OpenAI API Key:"));
    input().type(kKey);
    awaitStored("openapikey", kKey);
    ask("one");
    EXPECT_EQ(keyOfLastRequest(), std::string("Bearer ") + kKey);
    server().answer("/v1/chat/completions", jsonAnswer(401, R"({"error":{"message":"no"}})"));
    openPanel();
    input().tapKey(KEY_ESC);
    input().type("two");
    input().tapKey(KEY_ENTER);
    eventually("the refusal arrives", [] { return chatRequests().size() > 1; });
    closePanelByHotKey();
    awaitWindow("Settings");
    EXPECT_TRUE(await("text", "Server address").setText("http://127.0.0.1:1"));
    EXPECT_TRUE(await("push button", "Test connection").press());
    awaitText("Could not connect to http://127.0.0.1:1");
    EXPECT_TRUE(shows(kKey));
    quit();
    const std::string store = session().path(ProgramSession::kDefaults);
    EXPECT_EQ(filesWithKey(), Paths{store});
    EXPECT_EQ(session().output().find(kKey), std::string::npos) << session().output();
    EXPECT_EQ(fs::status(store).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    for (const auto& request : server().requests())
        EXPECT_TRUE(!request.header("Authorization") || request.path.starts_with("/v1/")) << request.path;
}

} // namespace quillmoth::test
