#include "Platform/Posix/SystemClock.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>

namespace quillmoth::platform {

double SystemClock::secondsSince1970() const {
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

std::string SystemClock::localDateAndMinute(double secondsSince1970) const {
    // Some ten thousand years to either side: inside the range of time_t and of the four digits' sense.
    constexpr double kFurthest = 3e11;
    if (!(std::abs(secondsSince1970) < kFurthest))
        return {};
    const auto moment = static_cast<std::time_t>(std::floor(secondsSince1970));
    // localtime_r alone would stay with the zone that was set when it was first called.
    tzset();
    std::tm parts{};
    if (!localtime_r(&moment, &parts))
        return {};
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d", parts.tm_year + 1900, parts.tm_mon + 1,
                  parts.tm_mday, parts.tm_hour, parts.tm_min);
    return text;
}

} // namespace quillmoth::platform
