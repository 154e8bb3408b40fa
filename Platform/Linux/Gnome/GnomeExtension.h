#pragma once

#include "Foundation/Subscription.h"
#include "Platform/PanelPlacement.h"

#include <QDBusConnection>
#include <QObject>
#include <QVariantList>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quillmoth::platform {

/// A key goes down or up.
struct KeyStep {
    /// As in the kernel's table (linux/input-event-codes.h).
    std::uint32_t key = 0;
    bool isDown = false;
};

/// A window's process, and its class in the words of the shell.
struct GnomeWindow {
    std::int64_t process = 0;
    std::string windowClass;
};

/// This program's extension of GNOME Shell (packaging/gnome-extension), over the session bus. A call waits
/// for a quarter of a second at most; one that fails says that nothing was done. Main thread.
class GnomeExtension final : public QObject, public PanelPlacement {
    Q_OBJECT

public:
    GnomeExtension();

    /// Whether the shell runs it now, in the version that this program knows.
    [[nodiscard]] bool isThere() const { return isThere_; }

    /// The window in front, one of this program never counted; an outer none where the shell does not answer.
    [[nodiscard]] std::optional<std::optional<GnomeWindow>> front();

    /// An accelerator as GTK writes it. False where something else has it.
    bool grabKey(const std::string& accelerator);
    void releaseKey(const std::string& accelerator);

    /// Waits first until no modifier is held that the keys do not press themselves, for 400 ms at most.
    bool sendKeys(const std::vector<KeyStep>& steps);

    void place(const DesktopArea& wanted) override;
    [[nodiscard]] std::optional<DesktopArea> area() override;
    [[nodiscard]] std::optional<DesktopArea> pointer() override;

    /// Called when a grabbed key goes down or up.
    Subscription onKey(std::function<void(const std::string& accelerator, bool isDown)> subscriber) {
        return keys_.subscribe(std::move(subscriber));
    }

    /// Called when a window of another program has got the focus, or none has it.
    Subscription onFrontChange(std::function<void()> subscriber) {
        return frontChanges_.subscribe(std::move(subscriber));
    }

    /// Called when the shell has begun to run it, as after a lock of the screen, or has ceased.
    Subscription onPresenceChange(std::function<void()> subscriber) {
        return presenceChanges_.subscribe(std::move(subscriber));
    }

private Q_SLOTS:
    void keyChanged(const QString& accelerator, bool isDown);
    void frontChanged();
    void ownerChanged(const QString& name, const QString& before, const QString& now);

private:
    void look();
    [[nodiscard]] std::optional<QVariantList> ask(const char* method, const QVariantList& arguments,
                                                  int milliseconds);

    QDBusConnection bus_;
    Signal<const std::string&, bool> keys_;
    Signal<> frontChanges_;
    Signal<> presenceChanges_;
    bool isThere_ = false;
};

} // namespace quillmoth::platform
