#pragma once

#include "Platform/Clock.h"

namespace quillmoth::platform {

/// The system's clock and its local time zone, a change of the zone while the program runs included.
class SystemClock final : public Clock {
public:
    [[nodiscard]] double secondsSince1970() const override;

    /// Empty for a moment that has no calendar date: not a number, or beyond the range of years.
    [[nodiscard]] std::string localDateAndMinute(double secondsSince1970) const override;
};

} // namespace quillmoth::platform
