#pragma once

#include <QObject>

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>

namespace quillmoth::platform {

/// The application in front by what the accessibility bus tells, which knows nothing while a window of this
/// program is in front, and for a moment behind that: the one before counts then. One that says nothing to
/// that bus is none. Main thread.
class AccessibleFront {
public:
    /// The process whose window is active, other than this one; none while there is none.
    using ActiveProcess = std::function<std::optional<std::int64_t>()>;

    explicit AccessibleFront(ActiveProcess activeProcess);

    [[nodiscard]] std::optional<std::int64_t> process();

private:
    [[nodiscard]] bool isOwnWindowInFront() const;

    ActiveProcess activeProcess_;
    std::optional<std::int64_t> last_;
    std::chrono::steady_clock::time_point lostFocus_;
    QObject context_;
};

} // namespace quillmoth::platform
