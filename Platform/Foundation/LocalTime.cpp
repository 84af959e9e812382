#include "Platform/Foundation/LocalTime.h"

#include <atomic>
#include <cmath>

namespace qrv {

namespace {

/// Lines come many in a second, and the calendar call takes longer than all else. The thread's last second,
/// as long as nobody has read TZ anew. Plain data, which lasts until the thread's very end.
struct LastSecond {
    unsigned readings = 0; // of TZ; 0 for none
    std::time_t second = 0;
    std::tm parts{};
};

std::atomic<unsigned> readingsOfZone = 1;

const std::tm& partsOf(std::time_t second) {
    thread_local LastSecond last;
    const unsigned readings = readingsOfZone;
    if (last.readings != readings || last.second != second) {
        last = {readings, second, {}};
        ::localtime_r(&second, &last.parts);
    }
    return last.parts;
}

} // namespace

void readTimeZone() {
    ::tzset();
    ++readingsOfZone;
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
    local.parts = partsOf(whole);
    return local;
}

} // namespace qrv
