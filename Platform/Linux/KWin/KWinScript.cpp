#include "Platform/Linux/KWin/KWinScript.h"

#include "Foundation/Log.h"
#include "Platform/Linux/KWin/SessionBus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDir>
#include <unistd.h>
#include <utility>

namespace quillmoth::platform {

namespace {

const QString kScriptInterface = QStringLiteral("org.kde.kwin.Scripting");
const QString kScriptPath = QStringLiteral("/Scripting");

constexpr int kScriptLimitMilliseconds = 2000;

} // namespace

KWinScript::KWinScript(const QString& name)
    : name_(QStringLiteral("quillmoth-%1-%2").arg(getpid()).arg(name)) {}

KWinScript::~KWinScript() {
    if (owner_.isEmpty() || !file_)
        return;
    [[maybe_unused]] const auto answer =
        askOnBus({owner_, kScriptPath, kScriptInterface}, QStringLiteral("unloadScript"), {name_});
}

void KWinScript::run(const QString& owner, const QString& text) {
    owner_ = owner;
    if (owner_.isEmpty())
        return;
    // One of that name is taken away first; where there is none, nothing happens.
    send("unloadScript", {name_}, [this, text](const QDBusPendingCallWatcher&) { load(text); });
}

void KWinScript::load(const QString& text) {
    file_ = std::make_unique<QTemporaryFile>(qEnvironmentVariable("XDG_RUNTIME_DIR", QDir::tempPath()) +
                                             QStringLiteral("/quillmoth-XXXXXX.js"));
    const QByteArray bytes = text.toUtf8();
    if (!file_->open() || file_->write(bytes) != bytes.size() || !file_->flush())
        return logLine("KWin is not told what to do: no file for its script can be written.");
    send("loadScript", {file_->fileName(), name_}, [this](const QDBusPendingCallWatcher& call) {
        const QDBusPendingReply<int> answer = call;
        if (answer.isError() || answer.value() < 0)
            return logLine("KWin does not run a script: " + answer.error().message().toStdString());
        // All that do not run yet.
        send("start", {}, [](const QDBusPendingCallWatcher&) {});
    });
}

void KWinScript::send(const char* method, const QVariantList& arguments,
                      std::function<void(const QDBusPendingCallWatcher&)> answered) {
    auto call = QDBusMessage::createMethodCall(owner_, kScriptPath, kScriptInterface, QLatin1String(method));
    call.setArguments(arguments);
    auto* watcher = new QDBusPendingCallWatcher(
        QDBusConnection::sessionBus().asyncCall(call, kScriptLimitMilliseconds), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [answered = std::move(answered), watcher] {
        answered(*watcher);
        watcher->deleteLater();
    });
}

} // namespace quillmoth::platform
