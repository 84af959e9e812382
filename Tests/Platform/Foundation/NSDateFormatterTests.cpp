#include "Platform/Foundation/NSDateFormatter.h"

#include "Tests/Platform/Foundation/Printing.h"

#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace qrv {

namespace {

NSDateFormatter formatter(const char16_t* pattern) {
    NSDateFormatter made;
    made.setDateFormat(pattern);
    return made;
}

NSDate at(double seconds) {
    return NSDate::dateWithTimeIntervalSinceReferenceDate(seconds);
}

/// What the C library makes of the same moment in the same zone.
std::string byTheCLibrary(double seconds, int milliseconds) {
    const auto time = static_cast<std::time_t>(seconds + NSTimeIntervalSince1970);
    std::tm parts{};
    localtime_r(&time, &parts);
    char text[64];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &parts);
    char whole[80];
    std::snprintf(whole, sizeof whole, "%s.%03d", text, milliseconds);
    return whole;
}

} // namespace

class NSDateFormatterInZone : public testing::TestWithParam<const char*> {};

TEST_P(NSDateFormatterInZone, AgreesWithTheCLibrary) {
    ::setenv("TZ", GetParam(), 1);
    const NSDateFormatter f = formatter(u"yyyy-MM-dd HH:mm:ss.SSS");
    // The same through the library for all patterns.
    const NSDateFormatter full = formatter(u"y-MM-dd HH:mm:ss.SSS");
    ::tzset();
    for (const double seconds : {0.0, 86399.0, 600000000.0, 615000000.0, 1234567890.0, -100000000.0}) {
        EXPECT_EQ(f.stringFromDate(at(seconds)).utf8(), byTheCLibrary(seconds, 0));
        EXPECT_EQ(f.stringFromDate(at(seconds + 0.75)).utf8(), byTheCLibrary(seconds, 750));
        EXPECT_EQ(full.stringFromDate(at(seconds + 0.75)).utf8(), byTheCLibrary(seconds, 750));
    }
}

TEST(NSDateFormatter, MadeAfterAChangeOfTheZoneFollowsIt) {
    for (const auto* const zones : {"CET-1CEST,M3.5.0,M10.5.0/3", "UTC+3", "<+0330>-3:30"}) {
        ::setenv("TZ", zones, 1);
        for (const char16_t* const pattern : {u"HH:mm:ss", u"kk:mm:ss"}) {
            const std::string shown = formatter(pattern).stringFromDate(at(36000)).utf8();
            EXPECT_EQ(shown, byTheCLibrary(36000, 0).substr(11, 8));
        }
    }
}

TEST(NSDateFormatter, FieldForTheZoneShowsItsDistance) {
    ::setenv("TZ", "<+0330>-3:30", 1);
    EXPECT_EQ(formatter(u"HH:mm ZZZZZ Z").stringFromDate(at(0)).utf8(), "03:30 +03:30 +0330");
}

TEST(NSDateFormatter, PlainPatternsShowWhatOthersShow) {
    ::setenv("TZ", "UTC", 1);
    const NSDateFormatter plain = formatter(u"''yyyy'y''ear'MMM dd.MM, 'HH");
    EXPECT_EQ(plain.stringFromDate(at(86400 * 40)).utf8(), "'2001y'earFeb 10.02, HH");
    // Years with other digits, and those of another calendar, which a plain pattern leaves to the library.
    for (const int year : {-1, 1500, 1599, 1600, 9999, 10000}) {
        const NSDate moment = at((year + 0.5 - 2001) * 365.2425 * 86400);
        const std::string full = formatter(u"yyyy-MM-dd|G").stringFromDate(moment).utf8();
        EXPECT_EQ(formatter(u"yyyy-MM-dd").stringFromDate(moment).utf8(), full.substr(0, full.find('|')));
    }
}

INSTANTIATE_TEST_SUITE_P(Zones, NSDateFormatterInZone,
                         testing::Values("UTC", "Europe/Berlin", "America/New_York", "Asia/Kolkata",
                                         "Pacific/Auckland", "CET-1CEST,M3.5.0,M10.5.0/3", "UTC+3",
                                         "<+0330>-3:30", ":/usr/share/zoneinfo/Europe/Paris"));

TEST(NSDateFormatter, EveryMillisecondShowsAsItself) {
    ::setenv("TZ", "UTC", 1);
    ::tzset();
    const NSDateFormatter f = formatter(u"SSS");
    for (int ms = 0; ms < 1000; ++ms) {
        char expected[8];
        std::snprintf(expected, sizeof expected, "%03d", ms);
        EXPECT_EQ(f.stringFromDate(at(700000000 + ms / 1000.0)).utf8(), expected);
    }
}

TEST(NSDateFormatter, QuotedTextStandsAsItIs) {
    EXPECT_EQ(formatter(u"'on day' D").stringFromDate(at(86400 * 1.5)).utf8().substr(0, 7), "on day ");
}

TEST(NSDateFormatter, ATextLongerThanTheFirstBufferIsWhole) {
    const std::u16string longText(500, u'x');
    NSDateFormatter f;
    f.setDateFormat(u"'" + longText + u"'");
    EXPECT_EQ(f.stringFromDate(at(0)), NSString(longText));
}

TEST(NSDateFormatter, NilDateGivesNil) {
    EXPECT_TRUE(formatter(u"yyyy").stringFromDate(NSDate()).isNil());
}

TEST(NSDateFormatter, WithoutAPatternEveryDateGivesTheEmptyText) {
    NSDateFormatter f;
    EXPECT_EQ(f.stringFromDate(at(0)), NSString(u""));
    f.setDateFormat(u"yyyy");
    f.setDateFormat(NSString());
    EXPECT_EQ(f.stringFromDate(at(0)), NSString(u""));
}

TEST(NSDateFormatter, AFieldWithoutMeaningPrintsNothingNorDoThoseAfterIt) {
    EXPECT_EQ(formatter(u"yyyy/I/yyyy").stringFromDate(at(86400)), NSString(u"2001//"));
}

TEST(NSDateFormatter, ManyThreadsShareOneFormatter) {
    ::setenv("TZ", "UTC", 1);
    ::tzset();
    const NSDateFormatter f = formatter(u"ss");
    std::vector<std::thread> threads;
    std::vector<int> wrong(4, 0);
    for (std::size_t t = 0; t < wrong.size(); ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < 500; ++i) {
                if (f.stringFromDate(at(i % 60)).integerValue() != i % 60) ++wrong[t];
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(wrong, std::vector<int>(4, 0));
}

} // namespace qrv
