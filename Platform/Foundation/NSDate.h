#pragma once

// Moments in time, in seconds since 2001-01-01 00:00:00 UTC (the reference date).

#include "Platform/Foundation/NSString.h"

namespace qrv {

/// Seconds from 1970-01-01 to the reference date (`kCFAbsoluteTimeIntervalSince1970`).
inline constexpr double NSTimeIntervalSince1970 = 978307200.0;

class QRV_EXPORT NSDate : public Handle<NSDate> {
public:
    using Handle::Handle;
    static const ClassInfo& classInfo();
    static bool accepts(const Object& payload);

    // + date
    /// The current time of the wall clock.
    static NSDate date();
    /// The present moment, in seconds since the reference date.
    static double secondsOfNow();
    // + dateWithTimeIntervalSinceNow:
    static NSDate dateWithTimeIntervalSinceNow(double seconds);
    // + dateWithTimeIntervalSinceReferenceDate:
    static NSDate dateWithTimeIntervalSinceReferenceDate(double seconds);

    // - timeIntervalSinceReferenceDate
    /// 0 for nil.
    double timeIntervalSinceReferenceDate() const;
    // - compare:
    NSComparisonResult compare(const NSDate& other) const;

    /// The earlier one is less; nil comes before every date.
    friend std::weak_ordering operator<=>(const NSDate& a, const NSDate& b) {
        if (a.isNil() || b.isNil()) return !a.isNil() <=> !b.isNil();
        return static_cast<long>(a.compare(b)) <=> 0L;
    }

    friend bool operator==(const NSDate& a, const NSDate& b) { return id(a) == id(b); }

    /// Replaces the wall clock by a test's own clock, in seconds since the reference date. Null restores it.
    using Clock = double (*)();
    static void setClockForTesting(Clock clock);
};

} // namespace qrv
