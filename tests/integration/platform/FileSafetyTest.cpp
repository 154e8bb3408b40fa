// What keeps the user's files whole, private and in order.

#include "Platform/Fake/FakeUserDefaults.h"
#include "Platform/Posix/FileDocuments.h"
#include "Platform/Posix/FileWriter.h"
#include "Platform/Posix/OwnFolder.h"
#include "Platform/Posix/ReplaceFile.h"
#include "tests/support/RunLoop.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>

#include <unistd.h>

namespace quillmoth::platform {

namespace {

using test::contentOf;
using test::modeOf;
using test::setContent;
using test::TemporaryFolder;

class FileSafety : public testing::Test {
protected:
    const TemporaryFolder folder;
    FileWriter writer;
    test::RunLoop loop;
    FileDocuments documents{folder.path("Documents"), writer, loop};
};

TEST_F(FileSafety, WhatIsMadeIsForItsOwnerAloneWhateverTheMaskIs) {
    const mode_t former = umask(0);
    const std::string own = *documents.documentsDirectory(true) + "/Quillmoth";
    EXPECT_TRUE(documents.createDirectory(own));
    EXPECT_TRUE(documents.writeFile(own + "/replaced", "x"));
    documents.appendToFile(own + "/appended", "x", [](const auto&) {});
    writer.flush();
    umask(former);
    EXPECT_EQ(modeOf(folder.path("Documents")), 0700U);
    EXPECT_EQ(modeOf(own), 0700U);
    EXPECT_EQ(modeOf(own + "/replaced"), 0600U);
    EXPECT_EQ(modeOf(own + "/appended"), 0600U);
}

TEST_F(FileSafety, AFolderIsPutInOrderOnceAndLeftAsTheUserWantsItThen) {
    FakeUserDefaults defaults;
    chmod(folder.path().c_str(), 0755);
    setContent(folder.path("wide"), "");
    chmod(folder.path("wide").c_str(), 0644);
    setContent(folder.path("narrow"), "");
    chmod(folder.path("narrow").c_str(), 0400);
    setContent(folder.path(".quillmoth-1.tmp"), "half");
    putFolderInOrder(folder.path(), defaults);
    EXPECT_EQ(modeOf(folder.path()), 0700U);
    EXPECT_EQ(modeOf(folder.path("wide")), 0600U);
    EXPECT_EQ(modeOf(folder.path("narrow")), 0400U);
    EXPECT_EQ(folder.names().size(), 3U) << "somebody may be writing that";
    chmod(folder.path("wide").c_str(), 0640);
    std::filesystem::last_write_time(folder.path(".quillmoth-1.tmp"),
                                     std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
    putFolderInOrder(folder.path(), defaults);
    EXPECT_EQ(modeOf(folder.path("wide")), 0640U);
    EXPECT_EQ(folder.names(), (std::vector<std::string>{"narrow", "wide"}));
}

TEST_F(FileSafety, WhatCannotBeReadIsSaidToBeThereAndNotWaitedFor) {
    ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
    setContent(folder.path("large"), "");
    ASSERT_EQ(truncate(folder.path("large").c_str(), off_t{600} << 20), 0);
    std::filesystem::create_symlink("loop", folder.path("loop"));
    for (const char* name : {"pipe", "large", "loop"}) {
        EXPECT_FALSE(documents.readFile(folder.path(name))) << name;
        EXPECT_TRUE(documents.fileExists(folder.path(name))) << name;
    }
    EXPECT_FALSE(documents.fileExists(folder.path("missing")));
    EXPECT_FALSE(documents.writeFile(folder.path("pipe"), "x"));
    EXPECT_FALSE(documents.writeFile(folder.path("loop"), "x"));
    EXPECT_FALSE(appendToFile(folder.path("pipe"), "x"));
}

TEST_F(FileSafety, TheLastOfWhatWaitsForOneFileIsWrittenInOrderAndAllIsAnswered) {
    std::promise<void> gate;
    writer.run([future = gate.get_future().share()] { future.wait(); });
    std::string answers;
    const auto answer = [&](char name) {
        return [&answers, name](const Result<void>& result) { answers += result ? name : '-'; };
    };
    writer.replace(folder.path("a"), "1", answer('1'));
    writer.append(folder.path("b"), "x", answer('x'));
    writer.replace(folder.path("a"), "2", answer('2'));
    writer.append(folder.path("b"), "y", answer('y'));
    writer.remove(folder.path("a"), answer('r'));
    writer.replace(folder.path("a"), "3", answer('3'));
    writer.replace(folder.path("no/where"), "", answer('n'));
    gate.set_value();
    writer.flush();
    EXPECT_EQ(answers, "12xyr3-");
    EXPECT_EQ(contentOf(folder.path("a")), "3");
    EXPECT_EQ(contentOf(folder.path("b")), "xy");
}

TEST(FileWriter, FinishesAtItsEndAndReadsSeeWhatWaits) {
    const TemporaryFolder folder;
    test::RunLoop loop;
    bool isAnswered = false;
    {
        FileWriter writer;
        FileDocuments documents(folder.path(), writer, loop);
        for (int number = 0; number < 100; ++number)
            documents.saveFile(folder.path("a"), std::to_string(number),
                               [&](const auto&) { isAnswered = true; });
        EXPECT_EQ(*documents.readFile(folder.path("a")), "99");
        EXPECT_FALSE(isAnswered) << "in a turn of the main queue alone";
        documents.appendToFile(folder.path("a"), "!", [](const auto&) {});
    }
    EXPECT_EQ(contentOf(folder.path("a")), "99!");
    EXPECT_TRUE(loop.runUntil([&] { return isAnswered; }));
}

} // namespace

} // namespace quillmoth::platform
