#pragma once

#include "Platform/HotKeyCenter.h"

#include <QDBusServiceWatcher>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace quillmoth::platform {

/// Hears of the keys that KDE's service for hot keys has bound.
class KDEKeySignals final : public QObject {
    Q_OBJECT

public:
    using Told = std::function<void(const QString& component, const QString& action, bool isPress)>;

    explicit KDEKeySignals(Told told);

private Q_SLOTS:

    void pressed(const QString& component, const QString& action) { told_(component, action, true); }

    void released(const QString& component, const QString& action) { told_(component, action, false); }

private:
    Told told_;
};

/// Hot keys of KDE's service for them, org.kde.kglobalaccel, which on Wayland is KWin. They stand in the
/// system settings as this program's as long as they are registered, and are bound again where the service
/// starts anew. A key that another program or the desktop has stays there. No question to the service takes
/// more than a quarter of a second.
class KWinHotKeyCenter final : public HotKeyCenter {
public:
    /// As keysSeenByKWin.
    using KeysOf = std::function<std::vector<int>(std::uint32_t keyCode, std::uint32_t carbonModifiers)>;

    explicit KWinHotKeyCenter(KeysOf keysOf);
    ~KWinHotKeyCenter() override;
    KWinHotKeyCenter(const KWinHotKeyCenter&) = delete;
    KWinHotKeyCenter& operator=(const KWinHotKeyCenter&) = delete;

    bool hasEventTarget() const override { return true; }

    /// Where the service does not answer it is asked again later, and the key counts as registered.
    OSStatus registerEventHotKey(std::uint32_t keyCode, std::uint32_t carbonModifiers, EventHotKeyID id,
                                 Handle& handle) override;
    OSStatus unregisterEventHotKey(Handle handle) override;
    OSStatus installEventHandler(Handler handler) override;

    std::vector<SymbolicHotKey> copySymbolicHotKeys() override { return {}; }

    bool isTakenElsewhere(std::uint32_t keyCode, std::uint32_t carbonModifiers) override;

    /// What its users call the one that has it, such as "KRunner"; empty where it is free or this program's.
    [[nodiscard]] std::string holder(std::uint32_t keyCode, std::uint32_t carbonModifiers) const;

    /// Tells of the key that was refused last.
    std::string obstacle() const override { return obstacle_; }

private:
    struct Registration {
        EventHotKeyID identifier;
        std::vector<int> keys;
    };

    enum class Binding { made, refused, unanswered };

    Binding bind(Handle handle, const Registration& registration);
    void bindAnew();
    void tellRefused(const std::vector<int>& keys);
    void handle(const QString& action, bool isPress);

    KeysOf keysOf_;
    std::map<Handle, Registration> registrations_;
    Handle pressed_ = 0;
    Handler handler_;
    std::string obstacle_;
    KDEKeySignals signals_;
    QDBusServiceWatcher service_;
    QTimer retry_;
};

} // namespace quillmoth::platform
