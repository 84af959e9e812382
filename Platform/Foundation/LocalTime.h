#pragma once

// Moments in the machine's or the user's time zone, by the C library: it is the one that knows every form of
// TZ.

#include <ctime>

namespace qrv {

struct LocalTime {
    std::tm parts{};      ///< tm_gmtoff is the distance from UTC, in seconds
    int milliseconds = 0; ///< of the second
};

/// Takes over what TZ says now, for the whole process. Any thread, as far as none changes the environment.
void readTimeZone();

/// The moment, to the nearest microsecond: binary fractions differ slightly from decimal ones, and .123 must
/// not show as .122. A moment outside the calendar gives the year 0 in parts.tm_year. Any thread.
LocalTime localTime(double secondsSince1970);

} // namespace qrv
