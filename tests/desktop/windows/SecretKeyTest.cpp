#include "tests/desktop/windows/ProgramDesktop.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <linux/input-event-codes.h>
#include <sys/stat.h>

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

using SecretKey = ProgramDesktop;

} // namespace

TEST_F(SecretKey, OfAllFilesAndOutputOfARunTheDefaultsStoreAloneHoldsTheKey) {
    start();
    run({"--settings"});
    awaitWindow("Settings");
    tabTo("text", "OpenAI API Key:");
    input().type(kKey);
    eventually("the key is stored", [] { return defaults().value("openapikey", "") == kKey; });
    // An answer, a refusal, a test of the connection, a connection that fails.
    ask("one");
    server().answer("/v1/chat/completions", jsonAnswer(401, R"({"error":{"message":"no"}})"));
    input().chord({KEY_LEFTALT, KEY_SPACE});
    eventually("the panel opens", [] { return isPanelVisible(); });
    input().tapKey(KEY_ESC);
    input().type("two");
    input().tapKey(KEY_ENTER);
    eventually("the refusal arrives", [] { return chatRequests().size() > 1; });
    input().chord({KEY_LEFTALT, KEY_SPACE});
    eventually("the panel closes", [] { return !isPanelVisible(); });
    awaitWindow("Settings");
    server().answer("/v1/models", jsonAnswer(401, "{}"));
    EXPECT_TRUE(control("push button", "Test connection").press());
    eventually("the connection is tested", [&] { return shows("refused the key"); });
    EXPECT_TRUE(control("text", "Server address").setText("http://127.0.0.1:1"));
    EXPECT_TRUE(control("push button", "Test connection").press());
    eventually("nobody answers", [&] { return shows("Could not connect"); });
    EXPECT_TRUE(control("push button", "Hide the key").press());
    eventually("the key is hidden", [&] { return has("password text", "OpenAI API Key:"); });
    quit();
    EXPECT_EQ(filesWithKey(desktop().temporaryDirectory()), std::vector{defaultsPath()});
    EXPECT_EQ(output().find(kKey), std::string::npos) << output();

    struct stat status {};

    ASSERT_EQ(stat(defaultsPath().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600U);
    for (const auto& request : server().requests()) {
        const bool carriesKey = request.header("Authorization").has_value();
        EXPECT_TRUE(!carriesKey || request.path.starts_with("/v1/")) << request.path;
    }
}

} // namespace quillmoth::test
