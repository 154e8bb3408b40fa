#include "Platform/Linux/AtSpi/RestartNeeds.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace quillmoth::platform {
namespace {

namespace fs = std::filesystem;

class RestartNeeds : public testing::Test {
protected:
    RestartNeeds() {
        write("engine/chrome_100_percent.pak", "");
        write("usr/plain", "");
    }

    void write(const std::string& path, const std::string& text) {
        fs::create_directories((root_ / path).parent_path());
        quillmoth::test::setContent(root_ / path, text);
    }

    void addProcess(const std::string& number, const std::string& name, const std::string& program,
                    const std::string& maps, const std::string& arguments = {},
                    const std::string& display = ":1") {
        write("proc/" + number + "/comm", name + "\n");
        write("proc/" + number + "/maps", maps);
        write("proc/" + number + "/cmdline", arguments);
        write("proc/" + number + "/environ", std::string("HOME=/") + '\0' + "DISPLAY=" + display + '\0');
        fs::create_symlink(root_ / program, root_ / "proc" / number / "exe");
    }

    const quillmoth::test::TemporaryFolder folder_;
    const fs::path root_ = folder_.path();
};

} // namespace

TEST_F(RestartNeeds, NamesWhatLooksAtItsStartOnlyAndEachOnce) {
    const std::string qt6 = "7f00-7f01 r-xp 0 fe:00 1  /usr/lib/x86_64-linux-gnu/libQt6Gui.so.6.4.2\n";
    addProcess("10", "notes", "usr/plain", qt6);
    addProcess("11", "notes", "usr/plain", qt6);
    addProcess("12", "editor", "usr/plain", "7f00-7f01 r-xp 0 fe:00 1  /usr/lib/libQt5Gui.so.5\n");
    addProcess("13", "browser", "engine/browser", "");
    addProcess("14", "renderer", "engine/browser", "", std::string("browser") + '\0' + "--type=renderer");
    addProcess("15", "web-view", "engine/view", "", std::string("view") + '\0' + "--type=gpu");
    addProcess("16", "elsewhere", "usr/plain", qt6, {}, ":2");
    write("usr/a-name-that-is-cut", "");
    addProcess("17", "a-name-that-is-", "usr/a-name-that-is-cut", qt6, {}, ":1.0");
    addProcess("self", "not-a-process", "engine/browser", "");
    EXPECT_EQ(programsToRestart(":1", root_ / "proc"),
              (std::vector<std::string>{"a-name-that-is-cut", "browser", "notes"}));
    EXPECT_TRUE(programsToRestart(":1", root_ / "nowhere").empty());
}

} // namespace quillmoth::platform
