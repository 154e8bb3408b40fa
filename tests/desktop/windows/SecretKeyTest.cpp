#include "tests/desktop/windows/WindowsSession.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <linux/input-event-codes.h>

namespace quillmoth::test {

namespace {

namespace fs = std::filesystem;

constexpr const char* kKey = "sk-moth-3f9a71c2";

/// All regular files below the folder that hold the key.
std::vector<std::string> filesWithKey(const fs::path& folder) {
    std::vector<std::string> found;
    for (const auto& entry :
         fs::recursive_directory_iterator(folder, fs::directory_options::skip_permission_denied)) {
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

using SecretKey = WindowsSession;

} // namespace

TEST_F(SecretKey, OfAllFilesAndOutputOfARunTheDefaultsStoreAloneHoldsTheKey) {
    const auto testConnection = [](const std::string& answer) {
        EXPECT_TRUE(await("push button", "Test connection").press());
        awaitText(answer);
    };
    start();
    run({"--settings"});
    awaitWindow("Settings");
    tabTo("text", "OpenAI API Key:");
    input().type(kKey);
    awaitStored("openapikey", kKey);
    ask("one");
    server().answer("/v1/chat/completions", jsonAnswer(401, R"({"error":{"message":"no"}})"));
    openPanel();
    input().tapKey(KEY_ESC);
    input().type("two");
    input().tapKey(KEY_ENTER);
    eventually("the refusal arrives", [] { return chatRequests().size() > 1; });
    closePanelByHotKey();
    awaitWindow("Settings");
    server().answer("/v1/models", jsonAnswer(200, R"({"data":[{"id":"gpt-3.5-turbo"},{"id":"moth-1"}]})"));
    testConnection("It offers 2 models, “gpt-3.5-turbo” among them.");
    server().answer("/v1/models", jsonAnswer(401, "{}"));
    testConnection("refused the key (401).");
    EXPECT_TRUE(await("text", "Server address").setText("http://127.0.0.1:1"));
    testConnection("Could not connect to http://127.0.0.1:1");
    EXPECT_TRUE(shows(kKey));
    EXPECT_TRUE(await("push button", "Hide the key").press());
    eventually("the key is hidden",
               [] { return await("text", "OpenAI API Key:").isPassword() && !shows(kKey); });
    quit();
    const std::string store = session().path(ProgramSession::kDefaults);
    EXPECT_EQ(filesWithKey(desktop().temporaryDirectory()), std::vector{store});
    EXPECT_EQ(session().output().find(kKey), std::string::npos) << session().output();
    EXPECT_EQ(fs::status(store).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    for (const auto& request : server().requests())
        EXPECT_TRUE(!request.header("Authorization") || request.path.starts_with("/v1/")) << request.path;
}

} // namespace quillmoth::test
