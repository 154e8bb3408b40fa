#pragma once

#include <string>

namespace quillmoth::platform {

/// The wall clock. Any thread.
class Clock {
public:
    virtual ~Clock() = default;

    /// Seconds since 1970-01-01 00:00 UTC, with fraction.
    [[nodiscard]] virtual double secondsSince1970() const = 0;

    /// That moment in the local time zone as "yyyy-MM-dd HH:mm", in the Gregorian calendar.
    [[nodiscard]] virtual std::string localDateAndMinute(double secondsSince1970) const = 0;
};

} // namespace quillmoth::platform
