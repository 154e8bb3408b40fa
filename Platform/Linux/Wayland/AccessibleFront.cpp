#include "Platform/Linux/Wayland/AccessibleFront.h"

#include <QGuiApplication>
#include <QWindow>
#include <utility>

namespace quillmoth::platform {

namespace {

/// Until the window that is in front then has told the bus so.
constexpr std::chrono::milliseconds kFrontTellingTime{500};

} // namespace

AccessibleFront::AccessibleFront(ActiveProcess activeProcess) : activeProcess_(std::move(activeProcess)) {
    QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, &context_,
                     [this](const QWindow* focused) {
                         if (focused == nullptr)
                             lostFocus_ = std::chrono::steady_clock::now();
                     });
}

bool AccessibleFront::isOwnWindowInFront() const {
    return QGuiApplication::focusWindow() != nullptr ||
           std::chrono::steady_clock::now() - lostFocus_ < kFrontTellingTime;
}

std::optional<std::int64_t> AccessibleFront::process() {
    if (const auto active = activeProcess_())
        last_ = active;
    else if (!isOwnWindowInFront())
        last_.reset();
    return last_;
}

} // namespace quillmoth::platform
