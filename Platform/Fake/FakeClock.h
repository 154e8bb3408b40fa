#pragma once

#include "Platform/Clock.h"

namespace quillmoth::platform {

/// A clock that stands still; its time zone is UTC.
class FakeClock final : public Clock {
public:
    [[nodiscard]] double secondsSince1970() const override { return now; }

    [[nodiscard]] std::string localDateAndMinute(double secondsSince1970) const override;

    /// 2023-11-14 22:13:20.25 UTC.
    double now = 1700000000.25;
};

} // namespace quillmoth::platform
