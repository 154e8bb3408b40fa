#include "Foundation/Log.h"
#include "Platform/Fake/FakeDesktop.h"
#include "Platform/Fake/FakeUserDefaults.h"
#include "Platform/Linux/Desktop/XDGLoginItems.h"
#include "Quillmoth/Settings/LaunchAtLogin.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace quillmoth {
namespace {

namespace fs = std::filesystem;

constexpr const char* kIdentifier = "org.quillmoth.Quillmoth";
constexpr const char* kHelper = "org.quillmoth.Quillmoth-LaunchAtLoginHelper";

class LoginItems : public testing::Test {
protected:
    static platform::FakeBundle makeBundle() {
        platform::FakeBundle made;
        made.infos["CFBundleIdentifier"] = kIdentifier;
        return made;
    }

    [[nodiscard]] std::string pathOf(const std::string& identifier) const {
        return folder.path("autostart/" + identifier + ".desktop");
    }

    void write(const std::string& identifier, const std::string& text) {
        fs::create_directories(folder.path("autostart"));
        test::setContent(pathOf(identifier), text);
    }

    const test::TemporaryFolder folder;
    platform::FakeBundle bundle = makeBundle();
    platform::FakeUserDefaults defaults;
    platform::XDGLoginItems items{folder.path("autostart"), "/opt/my apps/50%/quill$moth"};
    LaunchAtLogin launch{items, bundle, defaults};
};

TEST_F(LoginItems, TheSwitchWritesAndRemovesAnAutostartFile) {
    int told = 0;
    const Subscription subscription = launch.objectWillChange([&](std::string_view) { ++told; });
    EXPECT_FALSE(launch.isEnabled());
    launch.setEnabled(true);
    EXPECT_TRUE(launch.isEnabled());
    EXPECT_EQ(told, 1);
    EXPECT_NE(test::contentOf(pathOf(kIdentifier)).find("Exec=\"/opt/my apps/50%%/quill\\\\$moth\"\n"),
              std::string::npos);
    launch.setEnabled(false);
    EXPECT_FALSE(launch.isEnabled());
    EXPECT_TRUE(fs::is_empty(folder.path("autostart")));
}

TEST_F(LoginItems, AFileThatASessionToolHasSwitchedOffIsNotEnabledAndIsWrittenAnew) {
    for (const char* line : {"Hidden=true", "Hidden=true \r", "X-GNOME-Autostart-enabled=false"}) {
        write(kIdentifier, std::string("[Desktop Entry]\nExec=quillmoth\n") + line + "\n");
        EXPECT_FALSE(launch.isEnabled()) << line;
        launch.setEnabled(true);
        EXPECT_TRUE(launch.isEnabled()) << line;
    }
}

TEST_F(LoginItems, AFailureIsLoggedAndSurvived) {
    test::setContent(folder.path("autostart"), "no folder");
    std::vector<std::string> log;
    const ScopedLogCapture capture([&](std::string line) { log.push_back(std::move(line)); });
    launch.setEnabled(true);
    ASSERT_EQ(log.size(), 1U);
    EXPECT_EQ(log[0].find("Failed to enable launch at login: "), 0U);
    EXPECT_FALSE(launch.isEnabled());
}

TEST_F(LoginItems, TheFormerHelperIsTakenOverOnce) {
    write(kHelper, "[Desktop Entry]\n");
    launch.migrateIfNeeded();
    EXPECT_TRUE(launch.isEnabled());
    EXPECT_FALSE(items.isEnabled(kHelper));
    EXPECT_TRUE(defaults.boolean("LaunchAtLogin__hasMigrated", false));
    launch.setEnabled(false);
    write(kHelper, "[Desktop Entry]\n");
    launch.migrateIfNeeded();
    EXPECT_FALSE(launch.isEnabled());
}

} // namespace
} // namespace quillmoth
