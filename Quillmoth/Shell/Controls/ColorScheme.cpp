#include "Quillmoth/Shell/Controls/ColorScheme.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

namespace quillmoth {

namespace {

const auto kService = QStringLiteral("org.freedesktop.portal.Desktop");
const auto kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const auto kInterface = QStringLiteral("org.freedesktop.portal.Settings");
const auto kGroup = QStringLiteral("org.freedesktop.appearance");
const auto kKey = QStringLiteral("color-scheme");

constexpr unsigned kPreferDark = 1;
constexpr unsigned kPreferLight = 2;

} // namespace

ColorScheme::ColorScheme(std::optional<bool> fixed)
    : isDark_(fixed.value_or(false)), isFixed_(fixed.has_value()) {
    if (isFixed_)
        return;
    refresh();
    qApp->installEventFilter(this);
    askPortal();
}

void ColorScheme::askPortal() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    // From any sender: the name may be taken by the portal only later.
    bus.connect(QString(), kPath, kInterface, QStringLiteral("SettingChanged"), this,
                SLOT(takeSignal(QDBusMessage)));
    QDBusMessage question =
        QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("Read"));
    question << kGroup << kKey;
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (!reply.isError())
            takeSetting(kGroup, kKey, reply.value());
        watcher->deleteLater();
    });
}

void ColorScheme::takeSignal(const QDBusMessage& message) {
    const QVariantList values = message.arguments();
    if (values.size() == 3)
        takeSetting(values[0].toString(), values[1].toString(), values[2].value<QDBusVariant>());
}

void ColorScheme::takeSetting(const QString& group, const QString& key, const QDBusVariant& value) {
    if (group != kGroup || key != kKey)
        return;
    QVariant inner = value.variant();
    // "Read" wraps its answer in one variant more than the signal does.
    if (inner.canConvert<QDBusVariant>())
        inner = inner.value<QDBusVariant>().variant();
    take(inner.toUInt());
}

void ColorScheme::take(unsigned preference) {
    preference_.reset();
    if (preference == kPreferDark || preference == kPreferLight)
        preference_ = preference == kPreferDark;
    refresh();
}

bool ColorScheme::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange && watched == qApp)
        refresh();
    return false;
}

void ColorScheme::refresh() {
    const bool dark =
        preference_.value_or(QGuiApplication::palette().color(QPalette::Window).lightness() < 128);
    if (dark == isDark_)
        return;
    isDark_ = dark;
    changed_.emit();
}

} // namespace quillmoth
