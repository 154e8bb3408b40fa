#include "Platform/Linux/KWin/KWinHotKeyCenter.h"

#include "Foundation/Log.h"
#include "Platform/Linux/KWin/SessionBus.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMetaType>
#include <algorithm>
#include <array>
#include <utility>

namespace quillmoth::platform {

/// A sequence of key presses as the service takes it: of one, here.
struct KDEKeySequence {
    std::array<int, 4> keys{};
};

QDBusArgument& operator<<(QDBusArgument& argument, const KDEKeySequence& sequence) {
    argument.beginStructure();
    argument.beginArray(QMetaType::fromType<int>());
    for (const int key : sequence.keys)
        argument << key;
    argument.endArray();
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, KDEKeySequence& sequence) {
    argument.beginStructure();
    argument.beginArray();
    for (std::size_t place = 0; !argument.atEnd(); ++place) {
        int key = 0;
        argument >> key;
        if (place < sequence.keys.size())
            sequence.keys[place] = key;
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

namespace {

constexpr OSStatus kKDEParameterError = -50;
constexpr OSStatus kKDEHotKeyExistsError = -9878;
constexpr OSStatus kKDEHotKeyInvalidError = -9879;

constexpr int kRetryMilliseconds = 2000;

const QString kKeyService = QStringLiteral("org.kde.kglobalaccel");
/// The service takes a name that ends in ".desktop" for an entry that it starts by itself.
const QString kComponent = QStringLiteral("org.quillmoth.Quillmoth");

/// To be in force from now on, whatever the service remembers of former ones.
constexpr uint kPresentAndAsGiven = 2 | 4;

using KDEKeys = QList<KDEKeySequence>;

QStringList actionNamed(const QString& name) {
    return {kComponent, name, QStringLiteral("Quillmoth"), QStringLiteral("Show or Hide the Panel")};
}

QString actionOf(HotKeyCenter::Handle handle) {
    return QStringLiteral("hot-key-%1").arg(handle);
}

std::optional<QVariantList> askKeyService(const char* method, const QVariantList& arguments) {
    return askOnBus({kKeyService, QStringLiteral("/kglobalaccel"), QStringLiteral("org.kde.KGlobalAccel")},
                    QLatin1String(method), arguments);
}

void unbind(const QString& action) {
    [[maybe_unused]] const auto answer = askKeyService("unregister", {kComponent, action});
}

KDEKeySequence sequenceOf(int key) {
    return {{key}};
}

/// The component and the action that have the key, each by its name and by what its users call it; empty
/// where nobody has it.
QStringList holderOf(int key) {
    const auto answer = askKeyService("actionList", {QVariant::fromValue(sequenceOf(key))});
    const QStringList holder =
        answer && !answer->isEmpty() ? answer->constFirst().toStringList() : QStringList();
    return holder.size() == 4 ? holder : QStringList();
}

} // namespace

KDEKeySignals::KDEKeySignals(Told told) : told_(std::move(told)) {
    auto bus = QDBusConnection::sessionBus();
    const QString interface = QStringLiteral("org.kde.kglobalaccel.Component");
    bus.connect(kKeyService, QString(), interface, QStringLiteral("globalShortcutPressed"), this,
                SLOT(pressed(QString, QString)));
    bus.connect(kKeyService, QString(), interface, QStringLiteral("globalShortcutReleased"), this,
                SLOT(released(QString, QString)));
}

KWinHotKeyCenter::KWinHotKeyCenter(KeysOf keysOf)
    : keysOf_(std::move(keysOf)),
      signals_([this](const QString& component, const QString& action, bool isPress) {
          if (component == kComponent)
              handle(action, isPress);
      }),
      service_(kKeyService, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForRegistration) {
    qDBusRegisterMetaType<KDEKeySequence>();
    qDBusRegisterMetaType<KDEKeys>();
    retry_.setSingleShot(true);
    retry_.setInterval(kRetryMilliseconds);
    QObject::connect(&retry_, &QTimer::timeout, &signals_, [this] { bindAnew(); });
    QObject::connect(&service_, &QDBusServiceWatcher::serviceRegistered, &signals_, [this] { bindAnew(); });
}

KWinHotKeyCenter::~KWinHotKeyCenter() {
    for (const auto& [handle, registration] : registrations_)
        unbind(actionOf(handle));
}

KWinHotKeyCenter::Binding KWinHotKeyCenter::bind(Handle handle, const Registration& registration) {
    const QStringList action = actionNamed(actionOf(handle));
    KDEKeys keys;
    for (const int key : registration.keys)
        keys.push_back(sequenceOf(key));
    if (!askKeyService("doRegister", {action}))
        return Binding::unanswered;
    const auto answer =
        askKeyService("setShortcutKeys", {action, QVariant::fromValue(keys), kPresentAndAsGiven});
    if (!answer || answer->isEmpty())
        return Binding::unanswered;
    const auto given = qdbus_cast<KDEKeys>(answer->constFirst());
    const bool isGiven = std::any_of(given.begin(), given.end(), [&](const KDEKeySequence& sequence) {
        return sequence.keys.front() == registration.keys.front();
    });
    return isGiven ? Binding::made : Binding::refused;
}

OSStatus KWinHotKeyCenter::registerEventHotKey(std::uint32_t keyCode, std::uint32_t carbonModifiers,
                                               EventHotKeyID id, Handle& handle) {
    Registration registration{.identifier = id, .keys = keysOf_(keyCode, carbonModifiers)};
    if (registration.keys.empty())
        return kKDEParameterError;
    Handle place = 1;
    while (registrations_.contains(place))
        ++place;
    obstacle_.clear();
    Binding binding = bind(place, registration);
    const QStringList former =
        binding == Binding::refused ? holderOf(registration.keys.front()) : QStringList();
    // A start that did not come to its end has left it behind.
    if (!former.empty() && former[0] == kComponent && former[1] != actionOf(place)) {
        unbind(former[1]);
        binding = bind(place, registration);
    }
    if (binding == Binding::refused) {
        unbind(actionOf(place));
        tellRefused(registration.keys);
        return kKDEHotKeyExistsError;
    }
    if (binding == Binding::unanswered) {
        logLine("KDE's service for hot keys does not answer; it will be asked again.");
        retry_.start();
    }
    handle = place;
    registrations_[place] = std::move(registration);
    return noErr;
}

void KWinHotKeyCenter::tellRefused(const std::vector<int>& keys) {
    const QStringList holder = holderOf(keys.front());
    const std::string program = holder.empty() ? "another program" : "“" + holder[2].toStdString() + "”";
    const bool isNamed = !holder.empty() && holder[3] != holder[2];
    obstacle_ =
        "The hot key does not work: " + program + " has it" +
        (isNamed ? " for “" + holder[3].toStdString() + "”" : "") +
        ". Choose another one, or take it away there in KDE’s System Settings, under Shortcuts, and start "
        "Quillmoth again.";
    logLine(obstacle_);
}

void KWinHotKeyCenter::bindAnew() {
    for (const auto& [handle, registration] : registrations_) {
        const Binding binding = bind(handle, registration);
        if (binding == Binding::unanswered)
            return retry_.start();
        if (binding == Binding::refused)
            tellRefused(registration.keys);
    }
}

OSStatus KWinHotKeyCenter::unregisterEventHotKey(Handle handle) {
    if (registrations_.erase(handle) == 0)
        return kKDEHotKeyInvalidError;
    unbind(actionOf(handle));
    if (pressed_ == handle)
        pressed_ = 0;
    return noErr;
}

OSStatus KWinHotKeyCenter::installEventHandler(Handler handler) {
    handler_ = std::move(handler);
    return noErr;
}

bool KWinHotKeyCenter::isTakenElsewhere(std::uint32_t keyCode, std::uint32_t carbonModifiers) {
    return !holder(keyCode, carbonModifiers).empty();
}

std::string KWinHotKeyCenter::holder(std::uint32_t keyCode, std::uint32_t carbonModifiers) const {
    const auto keys = keysOf_(keyCode, carbonModifiers);
    const QStringList holder = keys.empty() ? QStringList() : holderOf(keys.front());
    if (holder.empty() || holder[0] == kComponent)
        return {};
    return (holder[2].isEmpty() ? holder[0] : holder[2]).toStdString();
}

void KWinHotKeyCenter::handle(const QString& action, bool isPress) {
    const auto found = std::find_if(registrations_.begin(), registrations_.end(),
                                    [&action](const auto& entry) { return actionOf(entry.first) == action; });
    if (found == registrations_.end())
        return;
    // The repeats of a held key come as presses too.
    if (isPress && std::exchange(pressed_, found->first) == found->first)
        return;
    if (!isPress)
        pressed_ = 0;
    // A copy: the handler may be replaced while it runs.
    const auto handler = handler_;
    const HotKeyEvent told = {.kind = isPress ? kEventHotKeyPressed : kEventHotKeyReleased,
                              .hotKeyID = found->second.identifier};
    if (handler)
        handler(&told);
}

} // namespace quillmoth::platform
