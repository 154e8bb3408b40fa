#include "Platform/Linux/Keyring/QtKeychainStore.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QLibrary>
#include <qt6keychain/keychain.h>

#include <utility>

namespace quillmoth::platform {

namespace {

// freedesktop.org Secret Service API, version 0.2.
const auto kSecretService = QStringLiteral("org.freedesktop.secrets");
const auto kSecretServicePath = QStringLiteral("/org/freedesktop/secrets");
// For a service that the bus has to start first.
constexpr int kAnswerMilliseconds = 5000;

const auto kEntryService = QStringLiteral("quillmoth");
const auto kEntryKey = QStringLiteral("openapikey");

using State = SecretStore::State;

/// Calls `finished` with the reply, which may be an error, as long as `context` lives.
template<class Finished>
void callSecretService(QObject& context, const QDBusMessage& call, Finished finished) {
    auto* watcher = new QDBusPendingCallWatcher(
        QDBusConnection::sessionBus().asyncCall(call, kAnswerMilliseconds), &context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &context,
                     [finished = std::move(finished)](QDBusPendingCallWatcher* call) {
                         call->deleteLater();
                         finished(*call);
                     });
}

void lookUpLock(QObject& context, const QDBusObjectPath& collection, std::function<void(State)> completion) {
    auto call = QDBusMessage::createMethodCall(kSecretService, collection.path(),
                                               QStringLiteral("org.freedesktop.DBus.Properties"),
                                               QStringLiteral("Get"));
    call << QStringLiteral("org.freedesktop.Secret.Collection") << QStringLiteral("Locked");
    callSecretService(context, call, [completion = std::move(completion)](const QDBusPendingCall& answer) {
        const QDBusPendingReply<QDBusVariant> reply = answer;
        if (reply.isError())
            completion(State::absent);
        else
            completion(reply.value().variant().toBool() ? State::locked : State::unlocked);
    });
}

/// QtKeychain's library holds on to a session with the service, also when that has been started anew since.
void forgetSession() {
    QLibrary library(QStringLiteral("secret-1"), 0);
    if (const auto disconnect = library.resolve("secret_service_disconnect"))
        disconnect();
}

/// Of a failed job; the next one begins from the beginning.
Error errorOf(const QKeychain::Job& job) {
    forgetSession();
    switch (job.error()) {
    case QKeychain::NoBackendAvailable:
        return {"There is no keyring on this desktop."};
    case QKeychain::AccessDeniedByUser:
    case QKeychain::AccessDenied:
        return {"The keyring refused."};
    default:
        return {job.errorString().toStdString()};
    }
}

/// Runs a job, which deletes itself.
template<class Finished>
void runJob(QKeychain::Job& job, QObject& context, Finished finished) {
    job.setKey(kEntryKey);
    QObject::connect(&job, &QKeychain::Job::finished, &context,
                     [finished = std::move(finished)](QKeychain::Job* done) { finished(*done); });
    job.start();
}

std::function<void(const QKeychain::Job&)> tellOutcome(std::function<void(Result<void>)> completion) {
    return [completion = std::move(completion)](const QKeychain::Job& job) {
        if (job.error() == QKeychain::NoError || job.error() == QKeychain::EntryNotFound)
            completion({});
        else
            completion(errorOf(job));
    };
}

} // namespace

void QtKeychainStore::lookUpState(std::function<void(State)> completion) {
    auto call = QDBusMessage::createMethodCall(kSecretService, kSecretServicePath,
                                               QStringLiteral("org.freedesktop.Secret.Service"),
                                               QStringLiteral("ReadAlias"));
    call << QStringLiteral("default");
    callSecretService(context_, call,
                      [this, completion = std::move(completion)](const QDBusPendingCall& answer) {
                          const QDBusPendingReply<QDBusObjectPath> reply = answer;
                          if (reply.isError())
                              completion(State::absent);
                          else if (reply.value().path() == QLatin1String("/"))
                              completion(State::unlocked); // none yet: nothing is kept, and nothing locked
                          else
                              lookUpLock(context_, reply.value(), completion);
                      });
}

void QtKeychainStore::read(std::function<void(Result<std::optional<std::string>>)> completion) {
    auto* reading = new QKeychain::ReadPasswordJob(kEntryService);
    runJob(*reading, context_, [completion = std::move(completion)](const QKeychain::Job& job) {
        if (job.error() == QKeychain::EntryNotFound)
            completion(std::optional<std::string>());
        else if (job.error() != QKeychain::NoError)
            completion(errorOf(job));
        else
            completion(
                std::optional(dynamic_cast<const QKeychain::ReadPasswordJob&>(job).textData().toStdString()));
    });
}

void QtKeychainStore::write(const std::string& secret, std::function<void(Result<void>)> completion) {
    auto* writing = new QKeychain::WritePasswordJob(kEntryService);
    writing->setTextData(QString::fromStdString(secret));
    runJob(*writing, context_, tellOutcome(std::move(completion)));
}

void QtKeychainStore::remove(std::function<void(Result<void>)> completion) {
    auto* removal = new QKeychain::DeletePasswordJob(kEntryService);
    runJob(*removal, context_, tellOutcome(std::move(completion)));
}

} // namespace quillmoth::platform
