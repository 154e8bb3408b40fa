#include "Platform/Posix/FileUserDefaults.h"
#include "Foundation/Log.h"
#include "Platform/Posix/FileWriter.h"
#include "Platform/Qt/FileWatch.h"
#include "tests/integration/platform/CoreApplication.h"
#include "tests/support/TemporaryFolder.h"

#include <cmath>
#include <gtest/gtest.h>

namespace quillmoth::platform {

namespace {

using test::contentOf;
using test::eventually;
using test::modeOf;
using test::replaceContent;
using test::setContent;
using test::TemporaryFolder;

class FileUserDefaultsTest : public testing::Test {
protected:
    std::unique_ptr<FileUserDefaults> open() {
        return std::make_unique<FileUserDefaults>(path_, writer_, watchFiles);
    }

    TemporaryFolder folder_;
    std::string path_ = folder_.path("defaults.json");
    FileWriter writer_;
    std::string logged_;
    ScopedLogCapture capture_{[this](const std::string& line) { logged_ += line; }};
};

} // namespace

TEST_F(FileUserDefaultsTest, ValuesKeepTheirTypesAndSurviveTheProcess) {
    const std::vector<std::pair<std::string, DefaultsValue>> values{
        {"boolean", true},
        {"integer", std::int64_t{-9'007'199'254'740'993}},
        {"whole real", 16.0},
        {"real", 0.1},
        {"text", std::string("Gr\u00fc\u00dfe \"\\\n\U0001F600")},
        {"empty", std::string()},
    };
    const auto writer = open();
    for (const auto& [key, value] : values)
        writer->set(key, value);
    writer_.flush();
    const auto reader = open();
    for (const auto& [key, value] : values)
        EXPECT_EQ(reader->object(key), value) << key;
    writer->remove("text");
    writer_.flush();
    EXPECT_EQ(reader->object("text"), std::nullopt);
    writer->set("infinite", INFINITY);
    EXPECT_EQ(writer->object("infinite"), std::nullopt);
}

TEST_F(FileUserDefaultsTest, FileAndFolderAreForTheOwnerAloneAlsoWhereALooserFileStood) {
    setContent(path_, R"({"openapikey": "secret"})");
    chmod(path_.c_str(), 0644);
    const auto defaults = open();
    EXPECT_EQ(modeOf(path_), 0600U) << "after reading";
    chmod(path_.c_str(), 0666);
    defaults->set("model", std::string("gpt-4"));
    writer_.flush();
    EXPECT_EQ(modeOf(path_), 0600U) << "after writing";
    EXPECT_EQ(defaults->string("openapikey"), "secret");
    path_ = folder_.path("config/quillmoth/defaults.json");
    open()->set("key", true);
    writer_.flush();
    EXPECT_EQ(contentOf(path_), "{\n  \"key\": true\n}\n");
    EXPECT_EQ(modeOf(folder_.path("config/quillmoth")), 0700U);
}

TEST_F(FileUserDefaultsTest, WhatItDoesNotKnowStaysInPlaceWhenAValueIsWritten) {
    setContent(path_, R"({"z": {"nested": [1, 2.50, null]}, "model": "a", "later": null, "list": [true]})");
    const auto defaults = open();
    EXPECT_EQ(defaults->object("z"), std::nullopt);
    EXPECT_EQ(defaults->object("later"), std::nullopt);
    defaults->set("model", std::string("b"));
    writer_.flush();
    const auto file = DefaultsObject::parse(contentOf(path_));
    EXPECT_EQ(file.dump(), R"({"z":{"nested":[1,2.5,null]},"model":"b","later":null,"list":[true]})");
}

TEST_F(FileUserDefaultsTest, AReadSeesWhatAnotherProcessHasWrittenAndAWriteKeepsIt) {
    const auto mine = open();
    const auto theirs = open();
    mine->set("a", std::int64_t{1});
    theirs->set("b", std::int64_t{2});
    mine->set("c", std::int64_t{3});
    theirs->remove("a");
    writer_.flush();
    EXPECT_EQ(mine->number("b", 0), 2);
    EXPECT_EQ(mine->object("a"), std::nullopt);
    EXPECT_EQ(theirs->number("c", 0), 3);
    replaceContent(path_, R"({"c": 4})");
    EXPECT_EQ(mine->number("c", 0), 4);
    EXPECT_EQ(mine->object("b"), std::nullopt);
    std::filesystem::remove(path_);
    EXPECT_EQ(mine->object("c"), std::nullopt);
}

TEST_F(FileUserDefaultsTest, ProcessesThatWriteAtOnceLoseNothing) {
    constexpr int kRounds = 50;
    const auto writeAll = [this](const std::string& name) {
        FileWriter writer;
        FileUserDefaults defaults(path_, writer);
        for (int round = 0; round < kRounds; ++round) {
            defaults.set(name + std::to_string(round), true);
            writer.flush();
        }
    };
    std::thread other(writeAll, "first ");
    writeAll("second ");
    other.join();
    EXPECT_EQ(DefaultsObject::parse(contentOf(path_)).size(), 2U * kRounds);
}

TEST_F(FileUserDefaultsTest, ADamagedFileIsKeptAsideAndNamedInTheLogWithoutItsContent) {
    setContent(folder_.path("defaults.json.damaged-1"), "from before");
    constexpr std::size_t kDepth = 1'000'000;
    const std::string tooDeep =
        R"({"model":"sk-secret","deep":)" + std::string(kDepth, '[') + std::string(kDepth, ']') + '}';
    for (const std::string& content :
         {std::string(R"({"openapikey": "sk-secret")"), std::string(R"(["sk-secret"])"), tooDeep,
          std::string("\xFFsk-secret")}) {
        setContent(path_, content);
        const auto defaults = open();
        EXPECT_EQ(defaults->object("openapikey"), std::nullopt);
        EXPECT_NE(defaults->problem().find("defaults.json.damaged-"), std::string::npos);
        EXPECT_FALSE(std::filesystem::exists(path_));
    }
    EXPECT_EQ(contentOf(folder_.path("defaults.json.damaged-1")), "from before");
    EXPECT_EQ(contentOf(folder_.path("defaults.json.damaged-2")), R"({"openapikey": "sk-secret")");
    EXPECT_EQ(contentOf(folder_.path("defaults.json.damaged-4")), tooDeep);
    EXPECT_NE(logged_.find("defaults.json.damaged-5"), std::string::npos);
    EXPECT_EQ(logged_.find("sk-secret"), std::string::npos);
    setContent(path_, "");
    EXPECT_EQ(open()->problem(), "");
    EXPECT_TRUE(std::filesystem::exists(path_)) << "an empty file holds nothing worth keeping";
}

TEST_F(FileUserDefaultsTest, AFileThatIsBeingWrittenElsewhereDoesNotTakeTheValuesAway) {
    const auto defaults = open();
    defaults->set("a", true);
    writer_.flush();
    setContent(path_, R"({"a": fal)");
    EXPECT_TRUE(defaults->boolean("a", false));
    setContent(path_, R"({"a": false})");
    EXPECT_FALSE(defaults->boolean("a", true));
    setContent(path_, R"({"a": fal)");
    defaults->set("b", true);
    writer_.flush();
    EXPECT_EQ(DefaultsObject::parse(contentOf(path_)).dump(), R"({"a":false,"b":true})");
    EXPECT_EQ(contentOf(path_ + ".damaged-1"), R"({"a": fal)");
}

TEST_F(FileUserDefaultsTest, AChangeThatCannotBeWrittenHoldsAndIsWrittenWithTheNext) {
    std::filesystem::create_directory(path_);
    const auto defaults = open();
    std::string told;
    defaults->setFaultHandler([&](const std::string& words) { told = words; });
    defaults->set("a", std::string("unwritten"));
    writer_.flush();
    EXPECT_NE(told.find("The settings were not saved."), std::string::npos) << told;
    EXPECT_EQ(defaults->string("a"), "unwritten");
    EXPECT_NE(logged_.find(path_), std::string::npos);
    EXPECT_EQ(logged_.find("unwritten"), std::string::npos);
    std::filesystem::remove(path_);
    EXPECT_EQ(defaults->string("a"), "unwritten");
    defaults->set("b", true);
    writer_.flush();
    EXPECT_EQ(DefaultsObject::parse(contentOf(path_)).dump(), R"({"a":"unwritten","b":true})");
}

TEST_F(FileUserDefaultsTest, ListenersHearOfOwnChangesAndOfThoseOfOtherProcesses) {
    const test::CoreApplication application;
    const auto defaults = open();
    int calls = 0;
    auto subscription = defaults->onChange([&] { ++calls; });
    defaults->set("a", true);
    EXPECT_EQ(calls, 1);
    writer_.flush();
    EXPECT_FALSE(eventually([&] { return calls != 1; }, 100)) << "what it has written itself is no news";
    for (const char* content : {R"({"a": 1})", R"({"a": 2})"}) {
        const int former = calls;
        replaceContent(path_, content);
        // The value is read first: the notice has to come all the same.
        EXPECT_NE(defaults->number("a", 0), 0);
        EXPECT_TRUE(eventually([&] { return calls > former; })) << content;
    }
    const int former = calls;
    setContent(path_, R"({"a": 3})");
    EXPECT_TRUE(eventually([&] { return calls > former && defaults->number("a", 0) == 3; }));
    subscription.reset();
    const int last = calls;
    defaults->set("a", false);
    EXPECT_EQ(calls, last);
}

} // namespace quillmoth::platform
