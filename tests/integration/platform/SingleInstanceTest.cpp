#include "Platform/Linux/Desktop/SingleInstance.h"
#include "Platform/Linux/Desktop/HandOver.h"
#include "Platform/Linux/Desktop/InstanceRequest.h"
#include "tests/integration/platform/CoreApplication.h"
#include "tests/integration/platform/TemporaryFolder.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusVirtualObject>
#include <QProcess>
#include <QVariantMap>
#include <gtest/gtest.h>
#include <memory>

namespace quillmoth::platform {

namespace {

using Kind = InstanceRequest::Kind;

/// A session bus of the test's own, under the variable that the bus library reads. One for the whole program:
/// Qt connects once.
class PrivateBus final : public testing::Environment {
public:
    void SetUp() override {
        application_ = std::make_unique<test::CoreApplication>();
        const QString address = "unix:path=" + QString::fromStdString(folder_.path("bus"));
        daemon_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        daemon_.start("timeout", {"100", "dbus-daemon", "--session", "--nofork", "--nopidfile",
                                  "--address=" + address, "--print-address=1"});
        ASSERT_TRUE(daemon_.waitForReadyRead(10'000)) << "dbus-daemon does not start";
        qputenv("DBUS_SESSION_BUS_ADDRESS", address.toUtf8());
    }

    void TearDown() override {
        daemon_.terminate();
        daemon_.waitForFinished(5000);
        application_.reset();
    }

private:
    test::TemporaryFolder folder_;
    std::unique_ptr<test::CoreApplication> application_;
    QProcess daemon_;
};

[[maybe_unused]] const auto* const kPrivateBus = testing::AddGlobalTestEnvironment(new PrivateBus);

struct Ended {
    int exitCode = -1;
    std::string output;
    std::string errors;
};

/// Runs a start of the program to its end; this process goes on answering the bus.
Ended start(const QStringList& arguments, const QProcessEnvironment& environment = {}) {
    QProcess process;
    if (!environment.isEmpty())
        process.setProcessEnvironment(environment);
    process.start("timeout", QStringList{"20", SECOND_START_PROGRAM} + arguments);
    EXPECT_TRUE(test::eventually([&] { return process.state() == QProcess::NotRunning; }, 20'000));
    return {process.exitCode(), process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
}

struct RunningInstance {
    std::vector<InstanceRequest> requests;
    SingleInstance instance{[this](const InstanceRequest& request) { requests.push_back(request); }};

    RunningInstance() { EXPECT_EQ(instance.claim(), SingleInstance::Claim::owner); }
};

constexpr int kBecomesTheProgram = 100;

} // namespace

TEST(SingleInstance, ASecondStartHandsItsCommandOverAndEndsWell) {
    RunningInstance running;
    const std::vector<std::pair<QStringList, InstanceRequest>> cases{
        {{}, {Kind::activate}},
        {{"--toggle"}, {Kind::toggle}},
        {{"--settings"}, {Kind::settings}},
        {{"--quit"}, {Kind::quit}},
        {{"quillmoth://promptEditor", "quillmoth:?data=a%20b"},
         {Kind::open, {"quillmoth://promptEditor", "quillmoth:?data=a%20b"}}},
    };
    for (const auto& [arguments, expected] : cases) {
        running.requests.clear();
        const auto ended = start(arguments);
        EXPECT_EQ(ended.exitCode, 0) << ended.errors;
        EXPECT_EQ(ended.output + ended.errors, "");
        EXPECT_EQ(running.requests, std::vector{expected});
    }
}

TEST(SingleInstance, WithNoneRunningAStartGoesOnAndQuitSaysSo) {
    auto withoutBus = QProcessEnvironment::systemEnvironment();
    withoutBus.insert("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere/bus");
    for (const auto& environment : {QProcessEnvironment(), withoutBus}) {
        EXPECT_EQ(start({}, environment).exitCode, kBecomesTheProgram);
        const auto toggle = start({"--toggle"}, environment);
        EXPECT_EQ(toggle.exitCode, kBecomesTheProgram);
        EXPECT_EQ(toggle.output, "first request " + std::to_string(static_cast<int>(Kind::toggle)) + "\n");
        const auto quit = start({"--quit"}, environment);
        EXPECT_EQ(quit.exitCode, 1);
        EXPECT_EQ(quit.errors, "quillmoth: Quillmoth is not running.\n");
    }
}

TEST(SingleInstance, WrongUseHelpAndVersionNeedNoInstance) {
    const auto wrong = start({"--tggle"});
    EXPECT_EQ(wrong.exitCode, 2);
    EXPECT_EQ(wrong.output, "");
    EXPECT_NE(wrong.errors.find("\"--tggle\""), std::string::npos);
    EXPECT_EQ(start({"--version"}).output, "Quillmoth 1.2.3\n");
    const auto help = start({"--help"});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_NE(help.output.find("--toggle"), std::string::npos);
}

TEST(SingleInstance, TheNameBelongsToTheFirstAndIsFreeAgainAfterIt) {
    auto other = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "other process");
    ASSERT_TRUE(other.registerService(kInstanceService));
    SingleInstance instance([](const InstanceRequest&) {});
    EXPECT_EQ(instance.claim(), SingleInstance::Claim::taken);
    EXPECT_TRUE(other.unregisterService(kInstanceService));
    EXPECT_EQ(instance.claim(), SingleInstance::Claim::owner);
    EXPECT_FALSE(other.registerService(kInstanceService));
    QDBusConnection::disconnectFromBus("other process");
}

TEST(SingleInstance, AnInstanceThatHangsIsReportedAndNotWaitedForLong) {
    auto other = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "hung process");
    ASSERT_TRUE(other.registerService(kInstanceService));

    struct Silent final : QDBusVirtualObject {
        QString introspect(const QString&) const override { return {}; }

        bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override {
            message.setDelayedReply(true);
            return true;
        }
    } silent;

    ASSERT_TRUE(other.registerVirtualObject(kInstancePath, &silent));
    EXPECT_EQ(handOver({Kind::toggle}, std::chrono::milliseconds(50)), HandOver::failed);
    QDBusConnection::disconnectFromBus("hung process");
}

TEST(SingleInstance, LaunchersReachEachActionAndHearOfUnknownOnes) {
    RunningInstance running;
    auto launcher = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "launcher");
    QVariantMap platformData{{"desktop-startup-id", "token-1"}};
    const auto call = [&](const char* method, const QVariantList& arguments) {
        auto message = QDBusMessage::createMethodCall(kInstanceService, kInstancePath,
                                                      "org.freedesktop.Application", method);
        message.setArguments(arguments);
        message << platformData;
        const auto pending = launcher.asyncCall(message, 5000);
        EXPECT_TRUE(test::eventually([&] { return pending.isFinished(); }));
        QCoreApplication::processEvents();
        return pending.reply().type() == QDBusMessage::ReplyMessage;
    };
    const auto action = [&](const char* name) { return call("ActivateAction", {name, QVariantList()}); };
    EXPECT_TRUE(action("get-started"));
    EXPECT_EQ(qgetenv("XDG_ACTIVATION_TOKEN"), "token-1");
    platformData["activation-token"] = "token-2";
    EXPECT_TRUE(action("prompt-editor"));
    EXPECT_FALSE(action("no-such-action"));
    EXPECT_TRUE(call("Open", {QStringList{"QuillMoth://promptEditor", "other://x"}}));
    EXPECT_EQ(running.requests,
              (std::vector<InstanceRequest>{
                  {Kind::getStarted}, {Kind::promptEditor}, {Kind::open, {"quillmoth://promptEditor"}}}));
    EXPECT_EQ(qgetenv("XDG_ACTIVATION_TOKEN"), "token-2");
    qunsetenv("XDG_ACTIVATION_TOKEN");
    QDBusConnection::disconnectFromBus("launcher");
}

} // namespace quillmoth::platform
