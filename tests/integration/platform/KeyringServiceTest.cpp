#include "Platform/Linux/Keyring/QtKeychainStore.h"
#include "tests/integration/platform/CoreApplication.h"
#include "tests/integration/platform/TemporaryFolder.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QProcess>
#include <gtest/gtest.h>
#include <memory>

namespace quillmoth::platform {

namespace {

using State = SecretStore::State;

/// A session bus with nothing on it at first, and a home for keyrings. One for the whole program: the
/// libraries connect once.
class KeyringSession final : public testing::Environment {
public:
    void SetUp() override {
        const QByteArray home = QByteArray::fromStdString(folder_.path());
        for (const char* variable : {"HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME"})
            qputenv(variable, home);
        for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY", "XDG_CURRENT_DESKTOP", "DESKTOP_SESSION"})
            qunsetenv(variable);
        const QString address = "unix:path=" + QString::fromStdString(folder_.path("bus"));
        qputenv("DBUS_SESSION_BUS_ADDRESS", address.toUtf8());
        // Without service files the bus starts nothing by itself, a prompter with windows least of all.
        test::setContent(folder_.path("bus.conf"),
                         "<busconfig><type>session</type><listen>" + address.toStdString() +
                             "</listen><policy context='default'><allow send_destination='*' "
                             "eavesdrop='true'/><allow eavesdrop='true'/>"
                             "<allow own='*'/></policy></busconfig>");
        application_ = std::make_unique<test::CoreApplication>();
        bus_.start("timeout", {"100", "dbus-daemon", "--nofork", "--nopidfile", "--print-address=1",
                               "--config-file=" + QString::fromStdString(folder_.path("bus.conf"))});
        ASSERT_TRUE(bus_.waitForReadyRead(10'000)) << "dbus-daemon does not start";
    }

    void TearDown() override {
        end(keyring_);
        end(bus_);
        application_.reset();
    }

    /// The keyring's service, with a keyring that the password unlocks; made where there is none.
    void startKeyring() {
        keyring_.start("timeout",
                       {"100", "gnome-keyring-daemon", "--unlock", "--components=secrets", "--foreground"});
        keyring_.write("password");
        keyring_.closeWriteChannel();
        auto* bus = QDBusConnection::sessionBus().interface();
        ASSERT_TRUE(test::eventually(
            [&] { return bus->isServiceRegistered("org.freedesktop.secrets").value(); }, 10'000))
            << "gnome-keyring-daemon does not start: " << keyring_.readAllStandardError().toStdString();
    }

    void endKeyring() { end(keyring_); }

    /// Whether a file below the home holds the text.
    [[nodiscard]] bool holds(const std::string& text) const {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_.path())) {
            if (entry.is_regular_file() && test::contentOf(entry.path()).find(text) != std::string::npos)
                return true;
        }
        return false;
    }

private:
    static void end(QProcess& process) {
        process.terminate();
        process.waitForFinished(5000);
    }

    test::TemporaryFolder folder_;
    std::unique_ptr<test::CoreApplication> application_;
    QProcess bus_;
    QProcess keyring_;
};

auto* const kSession = new KeyringSession;
[[maybe_unused]] const auto* const kRegistered = testing::AddGlobalTestEnvironment(kSession);

/// What `operation` completes with.
template<class Outcome, class Operation>
Outcome outcomeOf(Operation operation) {
    std::optional<Outcome> outcome;
    operation([&](Outcome found) { outcome = std::move(found); });
    EXPECT_TRUE(test::eventually([&] { return outcome.has_value(); }, 20'000)) << "no answer";
    return outcome ? std::move(*outcome) : Outcome{};
}

struct Store {
    QtKeychainStore store;

    State state() {
        return outcomeOf<State>([this](const auto& completion) { store.lookUpState(completion); });
    }

    std::string read() {
        const auto answer =
            outcomeOf<std::shared_ptr<Result<std::optional<std::string>>>>([this](const auto& completion) {
                store.read([completion](Result<std::optional<std::string>> found) {
                    completion(std::make_shared<Result<std::optional<std::string>>>(std::move(found)));
                });
            });
        if (!answer)
            return "no answer";
        return *answer ? (**answer).value_or("none") : "failed: " + answer->error().description;
    }

    bool write(const std::string& secret) {
        return outcomeOf<bool>([&](const auto& completion) {
            store.write(secret, [completion](const Result<void>& done) { completion(bool(done)); });
        });
    }

    bool remove() {
        return outcomeOf<bool>([&](const auto& completion) {
            store.remove([completion](const Result<void>& done) { completion(bool(done)); });
        });
    }
};

/// From here on reading needs the password.
void lockKeyring() {
    auto call = QDBusMessage::createMethodCall("org.freedesktop.secrets", "/org/freedesktop/secrets",
                                               "org.freedesktop.Secret.Service", "Lock");
    call << QVariant::fromValue(
        QList<QDBusObjectPath>{QDBusObjectPath("/org/freedesktop/secrets/collection/login")});
    EXPECT_EQ(QDBusConnection::sessionBus().call(call).type(), QDBusMessage::ReplyMessage);
}

} // namespace

TEST(KeyringService, KeepsOneSecretAndTellsWhetherItIsLockedWithoutAsking) {
    Store store;
    EXPECT_EQ(store.state(), State::absent);
    ASSERT_NO_FATAL_FAILURE(kSession->startKeyring());
    EXPECT_EQ(store.state(), State::unlocked);
    EXPECT_EQ(store.read(), "none");
    EXPECT_TRUE(store.remove()) << "nothing to remove";
    for (const char* secret : {"sk-moth-1", "sk-moth-ü🦋"}) {
        EXPECT_TRUE(store.write(secret));
        EXPECT_EQ(store.read(), secret);
        EXPECT_FALSE(kSession->holds(secret)) << "a file holds it as it is";
    }
    lockKeyring();
    EXPECT_EQ(store.state(), State::locked);
    // Nobody is there to type the password.
    EXPECT_NE(store.read(), "sk-moth-ü🦋");
    EXPECT_EQ(store.state(), State::locked);
    kSession->endKeyring();
    EXPECT_EQ(store.state(), State::absent);
    ASSERT_NO_FATAL_FAILURE(kSession->startKeyring());
    EXPECT_TRUE(store.read().starts_with("failed: ")) << "its session has ended";
    EXPECT_EQ(store.read(), "sk-moth-ü🦋");
    EXPECT_TRUE(store.remove());
    EXPECT_EQ(store.read(), "none");
}

} // namespace quillmoth::platform
