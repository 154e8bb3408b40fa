#include "Platform/Posix/FileDocuments.h"
#include "Platform/Posix/DiskSync.h"
#include "Platform/Posix/ReplaceFile.h"
#include "Platform/Qt/UserFolders.h"
#include "tests/integration/platform/TemporaryFolder.h"

#include <QByteArray>
#include <csignal>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

namespace quillmoth::platform {

namespace {

using test::contentOf;
using test::modeOf;
using test::setContent;
using test::TemporaryFolder;
using Names = std::vector<std::string>;

struct Fixture {
    TemporaryFolder folder;
    DiskSync diskSync;
    FileDocuments documents{folder.path("Documents"), diskSync};

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

class ScopedVariable {
public:
    ScopedVariable(const char* name, const std::string& value)
        : name_(name), former_(qgetenv(name)), wasSet_(qEnvironmentVariableIsSet(name)) {
        qputenv(name, QByteArray::fromStdString(value));
    }

    ~ScopedVariable() { wasSet_ ? qputenv(name_, former_) : qunsetenv(name_); }

    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

private:
    const char* name_;
    QByteArray former_;
    bool wasSet_;
};

} // namespace

TEST(FileDocuments, WritesAndReadsBytesAsTheyAre) {
    Fixture fixture;
    const std::string binary("a\0b\r\n\xFF", 6);
    for (const std::string& content : {std::string(), binary, std::string(3'000'000, 'x')}) {
        ASSERT_TRUE(fixture.documents.writeFile(fixture.path("file"), content));
        const auto read = fixture.documents.readFile(fixture.path("file"));
        ASSERT_TRUE(read);
        EXPECT_TRUE(*read == content);
    }
    EXPECT_EQ(fixture.folder.names(), Names{"file"}) << "a temporary file was left behind";
}

TEST(FileDocuments, ReplacesTheFileSoThatWhoeverReadsTheOldOneGoesOnReadingIt) {
    Fixture fixture;
    setContent(fixture.path("file"), "old");
    std::ifstream reader(fixture.path("file"));
    ASSERT_TRUE(fixture.documents.writeFile(fixture.path("file"), "new"));
    std::string seen;
    reader >> seen;
    EXPECT_EQ(seen, "old");
    EXPECT_EQ(contentOf(fixture.path("file")), "new");
}

TEST(FileDocuments, KeepsPermissionsAndFollowsSymbolicLinks) {
    Fixture fixture;
    std::filesystem::create_directory(fixture.path("elsewhere"));
    const std::string target = fixture.path("elsewhere/target");
    setContent(target, "old");
    chmod(target.c_str(), 0640);
    std::filesystem::create_symlink("elsewhere/target", fixture.path("inner"));
    std::filesystem::create_symlink(fixture.path("inner"), fixture.path("outer"));
    ASSERT_TRUE(fixture.documents.writeFile(fixture.path("outer"), "new"));
    EXPECT_TRUE(std::filesystem::is_symlink(fixture.path("outer")));
    EXPECT_TRUE(std::filesystem::is_symlink(fixture.path("inner")));
    EXPECT_EQ(contentOf(target), "new");
    EXPECT_EQ(modeOf(target), 0640U);
    std::filesystem::remove(target);
    ASSERT_TRUE(fixture.documents.writeFile(fixture.path("outer"), "again"));
    EXPECT_EQ(contentOf(target), "again") << "a link that leads nowhere names where the file is to be";
}

TEST(FileDocuments, AFileThatDoesNotFitLeavesTheFormerContentAndNothingElse) {
    Fixture fixture;
    setContent(fixture.path("file"), "old");
    Result<void> written;
    {
        const FileSizeLimit limit(4096);
        written = fixture.documents.writeFile(fixture.path("file"), std::string(100'000, 'x'));
    }
    ASSERT_FALSE(written);
    EXPECT_NE(written.error().description.find("File too large"), std::string::npos)
        << written.error().description;
    EXPECT_EQ(contentOf(fixture.path("file")), "old");
    EXPECT_EQ(fixture.folder.names(), Names{"file"});
}

TEST(FileDocuments, AFullDiskLeavesTheFormerContentAndNothingElse) {
    Fixture fixture;
    bool mounted = false;
    Result<void> written;
    Result<void> retried;
    std::string content;
    Names names;
    // The disk is there for this one thread, and gone with it.
    std::thread([&] {
        mounted = unshare(CLONE_FS | CLONE_NEWNS) == 0 &&
                  mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                  mount("none", fixture.folder.path().c_str(), "tmpfs", 0, "size=64k") == 0;
        if (!mounted)
            return;
        setContent(fixture.path("file"), "old");
        written =
            replaceFile(fixture.path("file"), std::string(100'000, 'x')) ? Result<void>() : Error{"full"};
        names = fixture.folder.names();
        content = contentOf(fixture.path("file"));
        retried = replaceFile(fixture.path("file"), "new") ? Result<void>() : Error{"full"};
    }).join();
    if (!mounted)
        GTEST_SKIP() << "no right to mount a small disk";
    EXPECT_FALSE(written);
    EXPECT_EQ(content, "old");
    EXPECT_EQ(names, Names{"file"});
    EXPECT_TRUE(retried);
}

TEST(FileDocuments, WritesInPlaceWhereTheFolderTakesNoNewFile) {
    Fixture fixture;
    const std::string file = fixture.path("file");
    setContent(file, "the old content, which is longer");
    chmod(fixture.folder.path().c_str(), 0555);
    const PlainUser user({file});
    ASSERT_TRUE(fixture.documents.writeFile(file, "new"));
    EXPECT_EQ(contentOf(file), "new");
    {
        const FileSizeLimit limit(4096);
        EXPECT_FALSE(fixture.documents.writeFile(file, std::string(100'000, 'x')));
    }
    EXPECT_EQ(contentOf(file), "new");
    const auto refused = fixture.documents.writeFile(fixture.path("another"), "new");
    ASSERT_FALSE(refused);
    EXPECT_NE(refused.error().description.find("Permission denied"), std::string::npos);
    fixture.diskSync.flush();
}

TEST(FileDocuments, SaysWhatStandsInTheWay) {
    Fixture fixture;
    setContent(fixture.path("file"), "x");
    setContent(fixture.path("protected"), "kept");
    chmod(fixture.path("protected").c_str(), 0444);
    std::filesystem::create_directory(fixture.path("folder"));
    chmod(fixture.folder.path().c_str(), 0777);
    const PlainUser user({fixture.path("protected")});
    const auto descriptionOf = [](const auto& result) {
        return result ? "none" : result.error().description;
    };
    auto& documents = fixture.documents;
    EXPECT_NE(descriptionOf(documents.readFile(fixture.path("missing"))).find("No such file"),
              std::string::npos);
    EXPECT_NE(descriptionOf(documents.readFile(fixture.path("folder"))).find("Is a directory"),
              std::string::npos);
    EXPECT_NE(descriptionOf(documents.writeFile(fixture.path("folder"), "")).find("Is a directory"),
              std::string::npos);
    EXPECT_NE(descriptionOf(documents.writeFile(fixture.path("no/where"), "")).find("No such file"),
              std::string::npos);
    EXPECT_NE(descriptionOf(documents.writeFile(fixture.path("protected"), "")).find("Permission denied"),
              std::string::npos);
    EXPECT_NE(descriptionOf(documents.createDirectory(fixture.path("file"))).find("Not a directory"),
              std::string::npos);
    EXPECT_EQ(contentOf(fixture.path("protected")), "kept");
}

TEST(FileDocuments, MakesFoldersWithThoseAboveThemAndTakesThoseThatStand) {
    Fixture fixture;
    for (int round = 0; round < 2; ++round)
        EXPECT_TRUE(fixture.documents.createDirectory(fixture.path("a/b/c")));
    EXPECT_TRUE(fixture.documents.fileExists(fixture.path("a/b/c")));
    EXPECT_FALSE(fixture.documents.fileExists(fixture.path("a/x")));
}

TEST(FileDocuments, TheDocumentsFolderIsTheOneOfTheUserDirectoriesAndMadeWhenAsked) {
    Fixture fixture;
    const ScopedVariable home("HOME", fixture.folder.path());
    const ScopedVariable configuration("XDG_CONFIG_HOME", fixture.path("config"));
    EXPECT_EQ(documentsFolder(), fixture.path("Documents"));
    std::filesystem::create_directory(fixture.path("config"));
    setContent(fixture.path("config/user-dirs.dirs"), "XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n");
    EXPECT_EQ(documentsFolder(), fixture.path("Dokumente"));
    EXPECT_EQ(*fixture.documents.documentsDirectory(false), fixture.path("Documents"));
    EXPECT_FALSE(fixture.documents.fileExists(fixture.path("Documents")));
    EXPECT_TRUE(fixture.documents.documentsDirectory(true));
    EXPECT_TRUE(std::filesystem::is_directory(fixture.path("Documents")));
}

TEST(DiskSync, TakesRequestsFromManyThreadsAndFinishesThemAtTheEnd) {
    const TemporaryFolder folder;
    {
        DiskSync sync;
        std::vector<std::thread> threads;
        for (int number = 0; number < 4; ++number)
            threads.emplace_back([&, name = folder.path(std::to_string(number))] {
                for (int round = 0; round < 50; ++round) {
                    setContent(name, "x");
                    sync.request(name);
                }
            });
        sync.flush();
        for (auto& thread : threads)
            thread.join();
    }
    EXPECT_EQ(folder.names().size(), 4U);
}

} // namespace quillmoth::platform
