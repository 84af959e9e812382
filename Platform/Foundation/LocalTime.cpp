#include "Platform/Foundation/LocalTime.h"

#include <cmath>

namespace qrv {

void readTimeZone() {
    ::tzset();
}

LocalTime localTime(double secondsSince1970) {
    constexpr double endOfCalendar = 1e15; // beyond these years the calendar call fails
    LocalTime local;
    if (!(std::fabs(secondsSince1970) < endOfCalendar)) return local;
    const double seconds = std::floor(secondsSince1970);
    constexpr double microseconds = 1e6;
    const auto rest = static_cast<long>(std::round((secondsSince1970 - seconds) * microseconds));
    const auto whole = static_cast<std::time_t>(seconds) + rest / 1'000'000;
    local.milliseconds = static_cast<int>(rest % 1'000'000 / 1000);
    ::localtime_r(&whole, &local.parts);
    return local;
}

} // namespace qrv
