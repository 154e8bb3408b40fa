#pragma once

#include "Foundation/Subscription.h"

// In full: a slot with an incomplete type is never called.
#include <QDBusMessage>
#include <QDBusVariant>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace quillmoth {

/// Whether the desktop prefers dark windows: the key "color-scheme" of the freedesktop settings portal, else
/// the lightness of the platform's own palette. Follows changes. Main thread; asks the portal without
/// waiting.
class ColorScheme final : public QObject {
    Q_OBJECT

public:
    /// With a value for `fixed` no desktop is asked.
    explicit ColorScheme(std::optional<bool> fixed = std::nullopt);

    [[nodiscard]] bool isDark() const { return isDark_; }

    Subscription onChange(std::function<void()> subscriber) {
        return changed_.subscribe(std::move(subscriber));
    }

    bool eventFilter(QObject* watched, QEvent* event) override;

private Q_SLOTS:
    void takeSignal(const QDBusMessage& message);

private:
    void takeSetting(const QString& group, const QString& key, const QDBusVariant& value);
    void askPortal();
    void take(unsigned preference);
    void refresh();

    bool isDark_ = false;
    bool isFixed_ = false;
    std::optional<bool> preference_;
    Signal<> changed_;
};

} // namespace quillmoth
