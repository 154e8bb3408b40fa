#include "Platform/Fake/FakeClock.h"

#include <chrono>
#include <cmath>
#include <cstdio>

namespace quillmoth::platform {

std::string FakeClock::localDateAndMinute(double secondsSince1970) const {
    using namespace std::chrono;
    const sys_seconds moment{seconds(static_cast<std::int64_t>(std::floor(secondsSince1970)))};
    const auto day = floor<days>(moment);
    const year_month_day date(day);
    const hh_mm_ss time(moment - day);
    char text[32];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u %02d:%02d", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()));
    return text;
}

} // namespace quillmoth::platform
