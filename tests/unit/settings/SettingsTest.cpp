#include "Foundation/Limits.h"
#include "Quillmoth/Settings/ConnectionTest.h"
#include "Quillmoth/Settings/Updater.h"
#include "tests/unit/PlatformFixture.h"

namespace quillmoth {
namespace {

TEST(UpdateFeedOrder, ComparesVersionsNumberByNumberAndThenBuilds) {
    const std::tuple<const char*, std::optional<std::string>, bool> cases[] = {
        {"1.10", {}, true},   {"1.9.1", {}, true},  {"1.9", {}, false},
        {"1.9.0", {}, false}, {"1.8.9", {}, false}, {"2", {}, true},
        {"1.9", "8", true},   {"1.9", "7", false},  {"1.8", "99", false}};
    for (const auto& [version, build, expected] : cases)
        EXPECT_EQ(isNewer({version, build, {}, {}}, "1.9", "7"), expected)
            << version << " " << build.value_or("-");
}

class SettingsServices : public PlatformFixture {
protected:
    SettingsServices() {
        platform.bundle.infos = {{"CFBundleShortVersionString", "1.0"}, {"CFBundleVersion", "1"}};
    }

    platform::FakeDataTask& task() { return platform.urlSessions.shared().lastTask(); }
};

TEST_F(SettingsServices, OneCheckAtATimeOfAConfiguredFeedHasAnOutcomeAndOnlyAWebPageIsForTheBrowser) {
    EXPECT_FALSE(readUpdateFeed(R"({"version":"2","url":"file:///bin/sh"})")->url);
    EXPECT_EQ(readUpdateFeed(R"({"version":"2","url":"https://h/p?v=2"})")->url, "https://h/p?v=2");

    const std::tuple<int, const char*, std::size_t> cases[] = {{200, R"({"version":"1.0"})", 0},
                                                               {200, R"({"version":"1.1"})", 1},
                                                               {200, R"({"version":"new"})", 2},
                                                               {200, "<html>", 2},
                                                               {404, R"({"version":"9"})", 2}};
    Updater updater(platform.platform());
    CheckForUpdatesViewModel model(updater);
    for (const char* feed : {"", "file:///etc/passwd", "https://feed.example/f.json"}) {
        EXPECT_FALSE(model._canCheckForUpdates);
        updater.checkForUpdates();
        EXPECT_TRUE(platform.urlSessions.shared().tasks().empty());
        platform.userDefaults.set("updateFeedURL", std::string(feed));
    }
    std::optional<UpdateOutcome> outcome;
    updater.onOutcome = [&](const UpdateOutcome& given) { outcome = given; };
    for (const auto& [status, body, expected] : cases) {
        const std::size_t before = platform.urlSessions.shared().tasks().size();
        for (const bool canCheck : {true, false}) {
            EXPECT_EQ(model._canCheckForUpdates, canCheck);
            updater.checkForUpdates();
            EXPECT_EQ(platform.urlSessions.shared().tasks().size(), before + 1) << "one at a time";
        }
        task().answer(status, body);
        EXPECT_FALSE(outcome);
        platform.runUntilIdle();
        ASSERT_TRUE(outcome) << body;
        EXPECT_EQ(outcome->index(), expected) << body;
        outcome.reset();
    }
}

TEST_F(SettingsServices, ItChecksByItselfOnceAfterTheStartAndThenDailyWhileAFeedIsConfigured) {
    auto& tasks = platform.urlSessions.shared();
    Updater updater(platform.platform());
    std::vector<std::string> found;
    updater.onFound = [&](const UpdateFeed& feed) { found.push_back(feed.version); };
    updater.onOutcome = [&](const UpdateOutcome&) { ADD_FAILURE() << "nobody has asked"; };
    updater.startChecking();
    EXPECT_EQ(platform.mainQueue.pendingCount(), 0U) << "without a feed nothing wakes the program";
    platform.userDefaults.set("updateFeedURL", std::string("https://feed.example/f.json"));
    EXPECT_TRUE(tasks.tasks().empty()) << "the start is not held up";
    const auto checkAfter = [&](double seconds, int status, const char* body) {
        const std::size_t before = tasks.tasks().size();
        platform.mainQueue.advance(seconds);
        ASSERT_EQ(tasks.tasks().size(), before + 1);
        task().answer(status, body);
        platform.runUntilIdle();
    };
    constexpr double kDay = 86'400;
    checkAfter(5, 200, R"({"version":"1.0"})");
    checkAfter(kDay, 500, "");
    EXPECT_TRUE(found.empty());
    checkAfter(kDay, 200, R"({"version":"1.1"})");
    checkAfter(kDay, 200, R"({"version":"1.1"})");
    EXPECT_EQ(found, std::vector<std::string>{"1.1"}) << "each version is told once";
    platform.mainQueue.advance(kDay - 1);
    EXPECT_EQ(tasks.tasks().size(), 4U) << "not before the day is over";
    platform.userDefaults.remove("updateFeedURL");
    platform.mainQueue.advance(2 * kDay);
    EXPECT_EQ(platform.mainQueue.pendingCount(), 0U);
}

TEST_F(SettingsServices, AConnectionTestSaysWhatHappenedAndNeverTheKey) {
    const std::tuple<int, const char*, const char*> cases[] = {
        {200, R"({"data":[{"id":"gpt-3.5-turbo"}]})", "It offers 1 model, “gpt-3.5-turbo” among them."},
        {200, R"({"data":[{"id":"a"},{"id":"b"}]})", "It offers 2 models, but not “gpt-3.5-turbo”."},
        {200, "<html>", "not as an OpenAI-compatible server"},
        {401, "", "refused the key (401)"},
        {403, "", "refused the key (403)"},
        {404, "", "no list of models (404)"},
        {405, "", "no list of models (405)"},
        {429, "", "takes no more requests for the moment (429)"},
        {503, "", "answered with an error (503)"},
    };
    platform.userDefaults.set("openapikey", std::string("sk-secret"));
    platform.userDefaults.set("openAIBaseURL", std::string(" http://localhost:11434/ "));
    ConnectionTest test(platform.platform());
    for (const auto& [status, body, words] : cases) {
        std::optional<ConnectionTest::Answer> answer;
        test.start([&](const ConnectionTest::Answer& given) { answer = given; });
        EXPECT_EQ(task().request().url, "http://localhost:11434/v1/models");
        EXPECT_EQ(task().request().value("Authorization"), "Bearer sk-secret");
        EXPECT_EQ(task().request().timeoutInterval, 15);
        task().answer(status, body);
        platform.runUntilIdle();
        ASSERT_TRUE(answer) << words;
        EXPECT_NE(answer->text.find(words), std::string::npos) << answer->text;
        EXPECT_EQ(answer->text.find("secret"), std::string::npos);
        EXPECT_EQ(answer->isGood, words == std::get<2>(cases[0]));
    }
}

TEST_F(SettingsServices, AnAnswerThatIsTooLongIsToldForWhatItWas) {
    const platform::URLError tooLarge{platform::URLError::Code::tooLarge, "It was too much."};
    platform.userDefaults.set("openAIBaseURL", std::string("http://localhost:1"));
    std::string text;
    ConnectionTest test(platform.platform());
    test.start([&](const ConnectionTest::Answer& given) { text = given.text; });
    EXPECT_EQ(task().request().largestAnswer, limits::kModelList);
    task().answer(std::nullopt, std::nullopt, tooLarge);
    platform.runUntilIdle();
    EXPECT_EQ(text, "The list of models of http://localhost:1 could not be read: It was too much.");

    platform.userDefaults.set("updateFeedURL", std::string("http://localhost:1/feed"));
    Updater updater(platform.platform());
    updater.onOutcome = [&](const UpdateOutcome& outcome) {
        text = std::get<UpdateCheckFailed>(outcome).description;
    };
    updater.checkForUpdates();
    EXPECT_EQ(task().request().largestAnswer, limits::kFeed);
    task().answer(std::nullopt, std::nullopt, tooLarge);
    platform.runUntilIdle();
    EXPECT_EQ(text, "It was too much.");
}

TEST_F(SettingsServices, WhereNothingMayBeSentTheConnectionTestSaysSoAndSendsNothing) {
    platform.userDefaults.set("openapikey", std::string("k"));
    ConnectionTest test(platform.platform());
    for (const auto& [address, words] : {std::pair("localhost:11434", "Correct it in Settings."),
                                         std::pair("http://relay.example", "is not encrypted")}) {
        platform.userDefaults.set("openAIBaseURL", std::string(address));
        std::string text;
        test.start([&](const ConnectionTest::Answer& given) { text = given.text; });
        platform.runUntilIdle();
        EXPECT_NE(text.find(words), std::string::npos) << text;
    }
    EXPECT_TRUE(platform.urlSessions.shared().tasks().empty());
}

TEST_F(SettingsServices, AnAnswerThatComesAfterTheTestHasGoneOrBeenRestartedIsDropped) {
    int first = 0;
    int second = 0;
    auto test = std::make_unique<ConnectionTest>(platform.platform());
    test->start([&](const ConnectionTest::Answer&) { ++first; });
    test->start([&](const ConnectionTest::Answer&) { ++second; });
    platform.runUntilIdle();
    EXPECT_EQ(first, 0);
    task().answer(200, "{}");
    test.reset();
    platform.runUntilIdle();
    EXPECT_EQ(second, 0);
}

} // namespace
} // namespace quillmoth
