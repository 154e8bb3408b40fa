#include "Platform/Posix/FileDocuments.h"
#include "Platform/Fake/FakeMainQueue.h"
#include "Platform/Posix/FileWriter.h"
#include "Platform/Posix/ReplaceFile.h"
#include "Platform/Qt/UserFolders.h"
#include "tests/integration/ScopedVariable.h"
#include "tests/support/TemporaryFolder.h"

#include <csignal>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

namespace quillmoth::platform {

namespace {

using test::contentOf;
using test::modeOf;
using test::ScopedVariable;
using test::setContent;
using test::TemporaryFolder;
using Names = std::vector<std::string>;

class FileDocumentsTest : public testing::Test {
protected:
    TemporaryFolder folder;
    FakeMainQueue mainQueue;
    FileWriter writer;
    FileDocuments documents{folder.path("Documents"), writer, mainQueue};

    [[nodiscard]] std::string path(const std::string& name) const { return folder.path(name); }
};

/// No file of this process may grow beyond `bytes`: the system refuses in the middle, as a full disk does.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) {
        formerSignal_ = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &former_);
        const rlimit limited{bytes, former_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limited);
    }

    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &former_);
        std::signal(SIGXFSZ, formerSignal_);
    }

    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit former_{};
    void (*formerSignal_)(int) = nullptr;
};

/// Gives the superuser's right to write everywhere up. The files named become those of the plain user.
class PlainUser {
public:
    explicit PlainUser(const Names& files) {
        constexpr uid_t kNobody = 65534;
        if (geteuid() != 0)
            return;
        for (const auto& file : files)
            EXPECT_EQ(chown(file.c_str(), kNobody, static_cast<gid_t>(-1)), 0);
        EXPECT_EQ(seteuid(kNobody), 0);
        changed_ = true;
    }

    ~PlainUser() {
        if (changed_) {
            EXPECT_EQ(seteuid(0), 0);
        }
    }

    PlainUser(const PlainUser&) = delete;
    PlainUser& operator=(const PlainUser&) = delete;

private:
    bool changed_ = false;
};

} // namespace

TEST_F(FileDocumentsTest, WritesAndReadsBytesAsTheyAreWhileOthersGoOnReadingTheOldOnes) {
    setContent(path("file"), "old");
    std::ifstream reader(path("file"));
    const std::string binary("a\0b\r\n\xFF", 6);
    for (const std::string& content : {std::string(), binary, std::string(3'000'000, 'x')}) {
        ASSERT_TRUE(documents.writeFile(path("file"), content));
        const auto read = documents.readFile(path("file"));
        ASSERT_TRUE(read);
        EXPECT_TRUE(*read == content);
    }
    EXPECT_EQ(folder.names(), Names{"file"}) << "a temporary file was left behind";
    std::string seen;
    reader >> seen;
    EXPECT_EQ(seen, "old");
}

TEST_F(FileDocumentsTest, KeepsPermissionsAndFollowsSymbolicLinks) {
    std::filesystem::create_directory(path("elsewhere"));
    const std::string target = path("elsewhere/target");
    setContent(target, "old");
    chmod(target.c_str(), 0640);
    std::filesystem::create_symlink("elsewhere/target", path("inner"));
    std::filesystem::create_symlink(path("inner"), path("outer"));
    ASSERT_TRUE(documents.writeFile(path("outer"), "new"));
    EXPECT_TRUE(std::filesystem::is_symlink(path("outer")));
    EXPECT_TRUE(std::filesystem::is_symlink(path("inner")));
    EXPECT_EQ(contentOf(target), "new");
    EXPECT_EQ(modeOf(target), 0640U);
    std::filesystem::remove(target);
    ASSERT_TRUE(documents.writeFile(path("outer"), "again"));
    EXPECT_EQ(contentOf(target), "again") << "a link that leads nowhere names where the file is to be";
}

TEST_F(FileDocumentsTest, WritesInPlaceWhereTheFolderTakesNoNewFile) {
    const std::string file = path("file");
    setContent(file, "the old content, which is longer");
    chmod(folder.path().c_str(), 0555);
    const PlainUser user({file});
    ASSERT_TRUE(documents.writeFile(file, "new"));
    EXPECT_EQ(contentOf(file), "new");
    {
        const FileSizeLimit limit(4096);
        EXPECT_FALSE(documents.writeFile(file, std::string(100'000, 'x')));
    }
    EXPECT_EQ(contentOf(file), "new");
    const auto refused = documents.writeFile(path("another"), "new");
    ASSERT_FALSE(refused);
    EXPECT_NE(refused.error().description.find("Permission denied"), std::string::npos);
    writer.flush();
}

TEST_F(FileDocumentsTest, SaysWhatStandsInTheWay) {
    setContent(path("file"), "x");
    setContent(path("protected"), "kept");
    chmod(path("protected").c_str(), 0444);
    std::filesystem::create_directory(path("folder"));
    chmod(folder.path().c_str(), 0777);
    const PlainUser user({path("protected")});
    const auto expect = [](const char* words, const auto& result) {
        ASSERT_FALSE(result) << words;
        EXPECT_NE(result.error().description.find(words), std::string::npos) << result.error().description;
    };
    expect("No such file", documents.readFile(path("missing")));
    expect("Is a directory", documents.readFile(path("folder")));
    expect("Is a directory", documents.writeFile(path("folder"), ""));
    expect("No such file", documents.writeFile(path("no/where"), ""));
    expect("Permission denied", documents.writeFile(path("protected"), ""));
    expect("Not a directory", documents.createDirectory(path("file")));
    EXPECT_EQ(contentOf(path("protected")), "kept");
}

TEST_F(FileDocumentsTest, TheDocumentsFolderIsTheOneOfTheUserDirectoriesAndMadeWhenAsked) {
    const ScopedVariable home("HOME", folder.path());
    const ScopedVariable configuration("XDG_CONFIG_HOME", path("config"));
    EXPECT_EQ(documentsFolder(), path("Documents"));
    std::filesystem::create_directory(path("config"));
    setContent(path("config/user-dirs.dirs"), "XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n");
    EXPECT_EQ(documentsFolder(), path("Dokumente"));
    EXPECT_EQ(defaultsFilePath(), path("config/quillmoth/defaults.json"));
    const ScopedVariable relative("XDG_CONFIG_HOME", "config");
    EXPECT_EQ(defaultsFilePath(), path(".config/quillmoth/defaults.json")) << "to be ignored";
    EXPECT_EQ(*documents.documentsDirectory(false), path("Documents"));
    EXPECT_FALSE(documents.fileExists(path("Documents")));
    EXPECT_TRUE(documents.documentsDirectory(true));
    EXPECT_TRUE(std::filesystem::is_directory(path("Documents")));
    for (int round = 0; round < 2; ++round)
        EXPECT_TRUE(documents.createDirectory(path("a/b/c")));
    EXPECT_TRUE(documents.fileExists(path("a/b/c")));
    EXPECT_FALSE(documents.fileExists(path("a/x")));
}

} // namespace quillmoth::platform
