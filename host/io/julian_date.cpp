#include "host/io/julian_date.h"

#include <chrono>
#include <ctime>

JulianNow julianNow()
{
    constexpr double kSecondsADay = 86400.0, kEpoch = 2440587.5;
    const auto now = std::chrono::system_clock::now();
    const double seconds = std::chrono::duration<double>(now.time_since_epoch()).count();
    const std::time_t whole = std::chrono::system_clock::to_time_t(now);
    std::tm local{};
    localtime_r(&whole, &local);
    return {kEpoch + (seconds + static_cast<double>(local.tm_gmtoff)) / kSecondsADay, kEpoch + seconds / kSecondsADay};
}
