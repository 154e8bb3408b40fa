#pragma once

#include <QObject>

#include <functional>
#include <utility>

namespace quillmoth {

/// Sees the application's events before the application does, from start until it is dropped.
class LocalEventMonitor final : public QObject {
public:
    /// True swallows the event.
    using Callback = std::function<bool(QObject* receiver, QEvent& event)>;

    explicit LocalEventMonitor(Callback callback) : callback_(std::move(callback)) {}

    LocalEventMonitor& start();

    bool eventFilter(QObject* receiver, QEvent* event) override;

private:
    Callback callback_;
};

} // namespace quillmoth
