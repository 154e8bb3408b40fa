#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QString>

#include <cstdint>
#include <functional>

struct xcb_connection_t;

namespace quillmoth::platform {

/// Whether the desktop has a tray, and the moment at which it gets one: a StatusNotifierHost on the session
/// bus (freedesktop StatusNotifierItem) or the owner of the selection _NET_SYSTEM_TRAY_S<n> (freedesktop
/// System Tray Protocol). Main thread.
///
/// Asked before the first QSystemTrayIcon is made: Qt looks for a host once in the life of a process.
class TrayWatcher final : public QObject, private QAbstractNativeEventFilter {
    Q_OBJECT

public:
    TrayWatcher();
    ~TrayWatcher() override;

    [[nodiscard]] bool isTrayAvailable() const;

    /// Calls `appeared` once, when there is a tray.
    void waitForTray(std::function<void()> appeared);

private Q_SLOTS:
    void look();

private:
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
    void watchBus();
    void watchRootWindow();

    std::function<void()> appeared_;
    xcb_connection_t* connection_ = nullptr;
    std::uint32_t rootWindow_ = 0;
    std::uint32_t selectionAtom_ = 0;
    std::uint32_t managerAtom_ = 0;
};

} // namespace quillmoth::platform
