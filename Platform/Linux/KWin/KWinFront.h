#pragma once

#include "Foundation/Subscription.h"
#include "Platform/Linux/KWin/KWinScript.h"

#include <QDBusContext>
#include <QDBusServiceWatcher>
#include <QObject>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace quillmoth::platform {

/// Knows which window of another program is in front, or was before this program's own: a script in KWin
/// tells of each window that is activated. KWin sends that before the hot keys that are pressed behind it, on
/// the same connection. KWin that starts anew is given the script again. Main thread; no call waits.
class KWinFront final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.quillmoth.Front")

public:
    struct Window {
        std::int64_t process = 0;
        /// The application's own name for itself: its Wayland app_id, or the class of its X11 window.
        std::string application = {};
        /// KWin's own name of the window.
        QString identifier = {};
    };

    KWinFront();
    ~KWinFront() override;

    /// None where no window has the focus, or none has been told of so far.
    [[nodiscard]] std::optional<Window> window() const { return isEmpty_ ? std::nullopt : last_; }

    /// Whether the script has told anything.
    [[nodiscard]] bool hasBeenTold() const { return hasBeenTold_; }

    /// Has KWin give that window the focus, a moment later.
    void activate();

    /// Called when another program's window has got the focus.
    Subscription onChange(std::function<void()> subscriber) {
        return changed_.subscribe(std::move(subscriber));
    }

public Q_SLOTS:
    /// What the script calls; of nobody else it is heard. Empty texts stand for no window.
    Q_SCRIPTABLE void activated(const QString& process, const QString& application,
                                const QString& identifier);

private:
    void follow(const QString& owner);

    QDBusServiceWatcher service_;
    KWinScript teller_{QStringLiteral("front")};
    KWinScript activator_{QStringLiteral("activate")};
    /// KWin's unique name on the bus; empty where it is not there.
    QString owner_;
    std::optional<Window> last_;
    bool isEmpty_ = true;
    bool hasBeenTold_ = false;
    Signal<> changed_;
};

} // namespace quillmoth::platform
