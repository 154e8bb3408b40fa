#include "Platform/Posix/SystemClock.h"
#include "Platform/Qt/QtMainQueue.h"
#include "Platform/Qt/QtUUIDSource.h"
#include "Platform/Qt/QtWorkspace.h"
#include "Platform/Qt/ResourceBundle.h"
#include "tests/integration/ScopedVariable.h"
#include "tests/integration/platform/CoreApplication.h"
#include "tests/support/TemporaryFolder.h"

#include <QRegularExpression>
#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <set>
#include <span>
#include <thread>

namespace quillmoth::platform {

TEST(QtUUIDSource, GivesDifferentVersion4UUIDsToAllThreads) {
    QtUUIDSource source;
    std::vector<std::string> all(4000);
    {
        std::vector<std::jthread> threads;
        for (const std::size_t first : {0U, 1000U, 2000U, 3000U})
            threads.emplace_back([&, mine = std::span(all).subspan(first, 1000)] {
                std::generate(mine.begin(), mine.end(), [&] { return source.makeUUID(); });
            });
    }
    EXPECT_EQ(std::set<std::string>(all.begin(), all.end()).size(), all.size());
    const QRegularExpression form("^[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}$");
    for (const auto& uuid : all)
        ASSERT_TRUE(form.match(QString::fromStdString(uuid)).hasMatch()) << uuid;
}

TEST(SystemClock, WritesTheLocalDateAndMinuteAlsoAfterTheZoneHasChanged) {
    const SystemClock clock;
    const test::ScopedVariable utc("TZ", "UTC0");
    EXPECT_EQ(clock.localDateAndMinute(1'700'000'059.9), "2023-11-14 22:14");
    EXPECT_EQ(clock.localDateAndMinute(-0.5), "1969-12-31 23:59");
    const test::ScopedVariable other("TZ", "XYZ-5:30");
    EXPECT_EQ(clock.localDateAndMinute(1'700'000'059.9), "2023-11-15 03:44");
    EXPECT_EQ(clock.localDateAndMinute(std::numeric_limits<double>::quiet_NaN()), "");
    EXPECT_EQ(clock.localDateAndMinute(1e300), "");
    EXPECT_GT(clock.secondsSince1970(), 1.7e9);
}

TEST(ResourceBundle, TellsWhatTheProgramIsAndReadsWhatShipsWithIt) {
    const test::CoreApplication application;
    const ResourceBundle bundle;
    EXPECT_EQ(bundle.info("CFBundleIdentifier"), "org.quillmoth.Quillmoth");
    const QRegularExpression version("^[0-9]+\\.[0-9]+\\.[0-9]+$");
    const auto shown = bundle.info("CFBundleShortVersionString").value_or("");
    EXPECT_TRUE(version.match(QString::fromStdString(shown)).hasMatch()) << shown;
    EXPECT_FALSE(bundle.info("CFBundleVersion").value_or("").empty());
    EXPECT_EQ(bundle.info("CFBundleSomething"), std::nullopt);
    EXPECT_EQ(bundle.urlForResource("missing.json"), std::nullopt);
    EXPECT_FALSE(bundle.read("missing.json"));
    EXPECT_EQ(bundle.urlForResource("../bundle/prompt.json"), std::nullopt);
#ifdef QUILLMOTH_PROMPT_FILE
    const auto url = bundle.urlForResource("prompt.json");
    ASSERT_TRUE(url);
    const auto content = bundle.read(*url);
    ASSERT_TRUE(content);
    EXPECT_EQ(*content, test::contentOf(QUILLMOTH_PROMPT_FILE));
#endif
}

TEST(QtWorkspace, GivesOwnURLsToTheProgramInALaterTurnAndIsNeverInFrontItself) {
    const test::CoreApplication application;
    QtMainQueue queue;
    std::optional<std::int64_t> front = 12;
    QtWorkspace workspace(queue, {.process = [&] { return front; }});
    std::vector<std::string> opened;
    EXPECT_FALSE(workspace.openURL("quillmoth://promptEditor"));
    workspace.setOwnURLHandler([&](const auto& urls) { opened = urls; });
    EXPECT_TRUE(workspace.openURL("QuillMoth://promptEditor"));
    EXPECT_TRUE(opened.empty());
    QCoreApplication::processEvents();
    EXPECT_EQ(opened, std::vector<std::string>{"quillmoth://promptEditor"});
    EXPECT_FALSE(workspace.openURL("no URL"));
    EXPECT_FALSE(workspace.openURL(""));
    EXPECT_EQ(workspace.frontmostApplicationProcessIdentifier(), 12);
    front = QCoreApplication::applicationPid();
    EXPECT_EQ(workspace.frontmostApplicationProcessIdentifier(), std::nullopt);
}

} // namespace quillmoth::platform
