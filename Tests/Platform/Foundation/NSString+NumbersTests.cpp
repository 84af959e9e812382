#include "Platform/Foundation/NSString.h"

#include "Tests/Platform/Foundation/Printing.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace qrv {

struct IntegerReading {
    const char16_t* text;
    long long value;
};

void PrintTo(const IntegerReading& reading, std::ostream* out) {
    *out << printed(reading.text);
}

class NSStringIntegerValue : public testing::TestWithParam<IntegerReading> {};

TEST_P(NSStringIntegerValue, IsTheLeadingDecimalNumberHeldToTheRange) {
    EXPECT_EQ(NSString(GetParam().text).integerValue(), GetParam().value);
}

using Limits = std::numeric_limits<long long>;
INSTANTIATE_TEST_SUITE_P(Readings, NSStringIntegerValue,
                         testing::Values(IntegerReading{u"", 0}, IntegerReading{u"12", 12},
                                         IntegerReading{u" \t\n-12x", -12}, IntegerReading{u"+7", 7},
                                         IntegerReading{u"+-7", 0}, IntegerReading{u"x1", 0},
                                         IntegerReading{u"1.9", 1}, IntegerReading{u"0x10", 0},
                                         IntegerReading{u"007", 7}, IntegerReading{u"\u00A0\u30003", 3},
                                         IntegerReading{u"-", 0},
                                         IntegerReading{u"9223372036854775807", Limits::max()},
                                         IntegerReading{u"9223372036854775808", Limits::max()},
                                         IntegerReading{u"-9223372036854775807", Limits::min() + 1},
                                         IntegerReading{u"-9223372036854775808", Limits::min()},
                                         IntegerReading{u"-9223372036854775809", Limits::min()},
                                         IntegerReading{u"9223372036854775799", 9223372036854775799},
                                         IntegerReading{u"99999999999999999999999", Limits::max()},
                                         IntegerReading{u"-99999999999999999999999", Limits::min()}));

struct DoubleReading {
    const char16_t* text;
    double value;
};

void PrintTo(const DoubleReading& reading, std::ostream* out) {
    *out << printed(reading.text);
}

class NSStringDoubleValue : public testing::TestWithParam<DoubleReading> {};

TEST_P(NSStringDoubleValue, IsTheLeadingDecimalNumber) {
    EXPECT_EQ(NSString(GetParam().text).doubleValue(), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Readings, NSStringDoubleValue,
    testing::Values(DoubleReading{u"", 0}, DoubleReading{u"1.5", 1.5}, DoubleReading{u"  -1.5e2x", -150},
                    DoubleReading{u"+.5", .5}, DoubleReading{u"5.", 5}, DoubleReading{u".", 0},
                    DoubleReading{u"1e", 1}, DoubleReading{u"1e+", 1}, DoubleReading{u"1.2.3", 1.2},
                    DoubleReading{u"inf", 0}, DoubleReading{u"nan", 0}, DoubleReading{u"0x10", 0},
                    DoubleReading{u"--1", 0}, DoubleReading{u"1,5", 1}, DoubleReading{u"1e999", HUGE_VAL},
                    DoubleReading{u"-1e999", -HUGE_VAL}, DoubleReading{u"1e-999", 0},
                    DoubleReading{u"12345678901234567890e-10", 1234567890.1234567890}));

struct BooleanReading {
    const char16_t* text;
    bool value;
};

void PrintTo(const BooleanReading& reading, std::ostream* out) {
    *out << printed(reading.text);
}

class NSStringBoolValue : public testing::TestWithParam<BooleanReading> {};

TEST_P(NSStringBoolValue, LooksAtTheFirstCharacterThatCounts) {
    EXPECT_EQ(NSString(GetParam().text).boolValue(), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(Readings, NSStringBoolValue,
                         testing::Values(BooleanReading{u"", false}, BooleanReading{u"YES", true},
                                         BooleanReading{u"yes", true}, BooleanReading{u"true", true},
                                         BooleanReading{u"T", true}, BooleanReading{u"no", false},
                                         BooleanReading{u"1", true}, BooleanReading{u"9", true},
                                         BooleanReading{u"0", false}, BooleanReading{u"00", false},
                                         BooleanReading{u" -0001", true}, BooleanReading{u" +0y", true},
                                         BooleanReading{u"on", false}, BooleanReading{u"--1", false}));

TEST(NSStringGeometry, PrintsRangesPointsSizesAndRects) {
    EXPECT_EQ(NSStringFromRange({1, 2}), NSString(u"{1, 2}"));
    EXPECT_EQ(NSStringFromRange({NSNotFound, 0}), NSString(u"{9223372036854775807, 0}"));
    EXPECT_EQ(NSStringFromPoint({0.5, -2}), NSString(u"{0.5, -2}"));
    EXPECT_EQ(NSStringFromSize({612, 792}), NSString(u"{612, 792}"));
    EXPECT_EQ(NSStringFromRect({{1, 2}, {3, 4}}), NSString(u"{{1, 2}, {3, 4}}"));
}

struct SizeReading {
    const char16_t* text;
    NSSize size;
};

void PrintTo(const SizeReading& reading, std::ostream* out) {
    *out << printed(reading.text);
}

class NSSizeReading : public testing::TestWithParam<SizeReading> {};

TEST_P(NSSizeReading, TakesTwoNumbersWidthFirst) {
    EXPECT_EQ(NSSizeFromString(GetParam().text), GetParam().size);
}

INSTANTIATE_TEST_SUITE_P(Readings, NSSizeReading,
                         testing::Values(SizeReading{u"{36, 72.5}", {36, 72.5}},
                                         SizeReading{u"10 20 30", {10, 20}}, SizeReading{u"", {0, 0}},
                                         SizeReading{u"width", {0, 0}}, SizeReading{u"{7}", {7, 0}},
                                         SizeReading{u"{-1, +2}", {-1, 2}}, SizeReading{u"+.-.e5", {5, 0}},
                                         SizeReading{nullptr, {0, 0}}));

TEST(NSSizeReading, ManyCharactersThatAlmostStartANumberAreReadInLinearTime) {
    EXPECT_EQ(NSSizeFromString(std::u16string(10'000'000, u'.')), (NSSize{0, 0}));
    EXPECT_EQ(NSSizeFromString(std::u16string(10'000'000, u'-')), (NSSize{0, 0}));
}

TEST(NSRect, IsEmptyWithoutAnArea) {
    EXPECT_TRUE((NSRect{{0, 0}, {0, 5}}).isEmpty());
    EXPECT_TRUE((NSRect{{0, 0}, {5, std::nan("")}}).isEmpty());
    EXPECT_FALSE((NSRect{{-9, -9}, {1, 1}}).isEmpty());
}

} // namespace qrv
