#include "Platform/Foundation/NSDate.h"

#include "Tests/Platform/Foundation/Printing.h"

#include <cmath>
#include <ctime>
#include <gtest/gtest.h>

namespace qrv {

TEST(NSDate, CountsFromTheReferenceDate) {
    const NSDate date = NSDate::dateWithTimeIntervalSinceReferenceDate(12.5);
    EXPECT_EQ(date.timeIntervalSinceReferenceDate(), 12.5);
    EXPECT_EQ(NSDate().timeIntervalSinceReferenceDate(), 0.0);
}

TEST(NSDate, NowIsByTheWallClock) {
    const double before = static_cast<double>(std::time(nullptr)) - NSTimeIntervalSince1970;
    const double now = NSDate::date().timeIntervalSinceReferenceDate();
    EXPECT_GE(now, before - 1);
    EXPECT_LE(now, before + 60);
}

TEST(NSDate, TheClockCanBeReplacedAndRestored) {
    NSDate::setClockForTesting([] { return 1000.0; });
    EXPECT_EQ(NSDate::date().timeIntervalSinceReferenceDate(), 1000.0);
    EXPECT_EQ(NSDate::dateWithTimeIntervalSinceNow(-5).timeIntervalSinceReferenceDate(), 995.0);
    NSDate::setClockForTesting(nullptr);
    EXPECT_GT(NSDate::date().timeIntervalSinceReferenceDate(), 700000000.0);
}

TEST(NSDate, ComparesByTime) {
    const NSDate early = NSDate::dateWithTimeIntervalSinceReferenceDate(1);
    const NSDate late = NSDate::dateWithTimeIntervalSinceReferenceDate(2);
    EXPECT_EQ(early.compare(late), NSOrderedAscending);
    EXPECT_EQ(late.compare(early), NSOrderedDescending);
    EXPECT_EQ(early.compare(early), NSOrderedSame);
    EXPECT_EQ(NSDate().compare(early), NSOrderedAscending);
    EXPECT_EQ(early, NSDate::dateWithTimeIntervalSinceReferenceDate(1));
    EXPECT_EQ(early.hash(), NSDate::dateWithTimeIntervalSinceReferenceDate(1).hash());
    EXPECT_FALSE(early == late);
}

TEST(NSDate, DescribesItselfInUTC) {
    EXPECT_EQ(NSDate::dateWithTimeIntervalSinceReferenceDate(0).description(),
              NSString(u"2001-01-01 00:00:00 +0000"));
    EXPECT_EQ(NSDate::dateWithTimeIntervalSinceReferenceDate(-0.5).description(),
              NSString(u"2000-12-31 23:59:59 +0000"));
}

TEST(NSDate, DescribesMomentsNoCalendarReaches) {
    EXPECT_EQ(NSDate::dateWithTimeIntervalSinceReferenceDate(1e30).description(), NSString(u"1e+30"));
    EXPECT_EQ(NSDate::dateWithTimeIntervalSinceReferenceDate(-HUGE_VAL).description(), NSString(u"-inf"));
    EXPECT_FALSE(NSDate::dateWithTimeIntervalSinceReferenceDate(std::nan("")).description().isNil());
}

} // namespace qrv
