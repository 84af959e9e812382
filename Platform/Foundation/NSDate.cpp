#include "Platform/Foundation/NSDate.h"

#include <atomic>
#include <chrono>
#include <cmath>
#include <ctime>
#include <typeinfo>

namespace qrv {

namespace {

const ClassInfo dateClassInfo{"NSDate", &Object::classInfo};

class DateObject final : public Object, public NSCoding {
public:
    explicit DateObject(double seconds) : seconds_(seconds) {}

    const ClassInfo& objectClass() const override { return dateClassInfo; }

    bool isEqual(const Object& other) const override {
        const auto* o = dynamic_cast<const DateObject*>(&other);
        return o && o->seconds_ == seconds_;
    }

    std::size_t hash() const override { return std::hash<double>{}(seconds_); }

    /// "2001-01-01 00:00:00 +0000", in UTC.
    NSString description() const override {
        const double unixSeconds = std::floor(seconds_ + NSTimeIntervalSince1970);
        std::tm parts{};
        // Beyond these years the calendar call fails; the bare number is better than nothing.
        if (!(std::fabs(unixSeconds) < 1e15)) return NSString::stringWithFormat(u"%g", seconds_);
        const auto time = static_cast<std::time_t>(unixSeconds);
        gmtime_r(&time, &parts);
        char text[64];
        std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S +0000", &parts);
        return NSString::stringWithUTF8String(text);
    }

    double seconds() const { return seconds_; }

private:
    const double seconds_;
};

double wallClock() {
    const std::chrono::duration<double> sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return sinceEpoch.count() - NSTimeIntervalSince1970;
}

std::atomic<NSDate::Clock> currentClock{&wallClock};

} // namespace

const ClassInfo& NSDate::classInfo() {
    return dateClassInfo;
}

bool NSDate::accepts(const Object& payload) {
    return typeid(payload) == typeid(DateObject);
}

NSDate NSDate::date() {
    return dateWithTimeIntervalSinceNow(0);
}

NSDate NSDate::dateWithTimeIntervalSinceNow(double seconds) {
    return dateWithTimeIntervalSinceReferenceDate(currentClock.load()() + seconds);
}

NSDate NSDate::dateWithTimeIntervalSinceReferenceDate(double seconds) {
    return NSDate(std::make_shared<DateObject>(seconds));
}

double NSDate::timeIntervalSinceReferenceDate() const {
    return isNil() ? 0 : static_cast<const DateObject&>(*shared()).seconds();
}

NSComparisonResult NSDate::compare(const NSDate& other) const {
    const double a = timeIntervalSinceReferenceDate();
    const double b = other.timeIntervalSinceReferenceDate();
    return a < b ? NSOrderedAscending : a > b ? NSOrderedDescending : NSOrderedSame;
}

void NSDate::setClockForTesting(Clock clock) {
    currentClock = clock ? clock : &wallClock;
}

} // namespace qrv
