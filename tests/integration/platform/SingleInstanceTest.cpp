#include "Platform/Linux/Desktop/SingleInstance.h"
#include "Platform/Linux/Desktop/HandOver.h"
#include "Platform/Linux/Desktop/InstanceRequest.h"
#include "tests/integration/platform/CoreApplication.h"
#include "tests/support/TemporaryFolder.h"

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

} // namespace

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
    std::vector<InstanceRequest> requests;
    SingleInstance instance([&](const InstanceRequest& request) { requests.push_back(request); });
    ASSERT_EQ(instance.claim(), SingleInstance::Claim::owner);
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
    EXPECT_EQ(requests,
              (std::vector<InstanceRequest>{
                  {Kind::getStarted}, {Kind::promptEditor}, {Kind::open, {"quillmoth://promptEditor"}}}));
    EXPECT_EQ(qgetenv("XDG_ACTIVATION_TOKEN"), "token-2");
    qunsetenv("XDG_ACTIVATION_TOKEN");
    QDBusConnection::disconnectFromBus("launcher");
}

} // namespace quillmoth::platform
