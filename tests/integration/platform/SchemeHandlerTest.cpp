#include "Platform/Linux/Desktop/SchemeHandler.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace quillmoth::platform {

namespace {

constexpr const char* kPackaged = "[Desktop Entry]\nName=Quillmoth\nExec=quillmoth %U\n";
constexpr const char* kInstalledName = "org.quillmoth.Quillmoth.desktop";
constexpr const char* kOwnName = "quillmoth-links.desktop";

class SchemeHandler : public testing::Test {
protected:
    using Names = std::vector<std::string>;

    /// The entry that links go to from now on.
    std::string arrange(const std::string& executable) {
        const auto handler = arrangeSchemeEntries(executable, {own.path(), system.path()});
        return handler ? *handler : "error: " + handler.error().description;
    }

    test::TemporaryFolder own;
    test::TemporaryFolder system;
};

} // namespace

TEST_F(SchemeHandler, ABuiltProgramTakesLinksUnderANameThatNoPackageHas) {
    EXPECT_EQ(arrange("/a build/quillmoth"), kOwnName);
    EXPECT_EQ(own.names(), Names{kOwnName});
    const std::string entry = test::contentOf(own.path(kOwnName));
    // Desktops pass over an entry whose program has gone.
    EXPECT_NE(entry.find("\nTryExec=/a build/quillmoth\nExec=\"/a build/quillmoth\" %U\n"), std::string::npos)
        << entry;
    EXPECT_EQ(arrange("/a build/quillmoth"), "") << "nothing is to be done at the next start";
    EXPECT_EQ(arrange("/other/quillmoth"), kOwnName);
    EXPECT_NE(test::contentOf(own.path(kOwnName)).find("TryExec=/other/quillmoth\n"), std::string::npos);
}

TEST_F(SchemeHandler, AnInstalledProgramGetsTheLinksBack) {
    arrange("/build/quillmoth");
    test::setContent(system.path(kInstalledName), kPackaged);
    EXPECT_EQ(arrange("/build/quillmoth"), kInstalledName);
    EXPECT_EQ(own.names(), Names());
    EXPECT_EQ(arrange("/usr/bin/quillmoth"), "");
}

TEST_F(SchemeHandler, AFormerEntryUnderTheInstalledNameGoesAndAnInstalledOneStays) {
    // A start from a build folder wrote its entry under the installed name once.
    arrange("/gone/build/quillmoth");
    std::filesystem::rename(own.path(kOwnName), own.path(kInstalledName));
    EXPECT_EQ(arrange("/build/quillmoth"), kOwnName);
    EXPECT_EQ(own.names(), Names{kOwnName});
    test::setContent(own.path(kInstalledName), kPackaged);
    EXPECT_EQ(arrange("/build/quillmoth"), kInstalledName) << "installed for this user alone";
    EXPECT_EQ(test::contentOf(own.path(kInstalledName)), kPackaged);
    EXPECT_EQ(own.names(), Names{kInstalledName});
}

TEST_F(SchemeHandler, AFolderThatCannotBeWrittenIsAnErrorInWords) {
    test::setContent(own.path("file"), "");
    const auto handler = arrangeSchemeEntries("/build/quillmoth", {own.path("file/applications")});
    ASSERT_FALSE(handler);
    EXPECT_NE(handler.error().description.find("quillmoth-links.desktop"), std::string::npos);
}

} // namespace quillmoth::platform
