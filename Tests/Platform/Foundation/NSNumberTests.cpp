#include "Platform/Foundation/NSNumber.h"

#include "Tests/Platform/Foundation/Printing.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace qrv {

namespace {

constexpr long long maximum = std::numeric_limits<long long>::max();
constexpr long long minimum = std::numeric_limits<long long>::min();
constexpr unsigned long long unsignedMaximum = std::numeric_limits<unsigned long long>::max();
constexpr long long precise = 9007199254740992; // 2^53, from which on doubles have gaps

NSNumber integer(long long value) {
    return NSNumber::numberWithInteger(value);
}

NSNumber real(double value) {
    return NSNumber::numberWithDouble(value);
}

NSNumber natural(unsigned long long value) {
    return NSNumber::numberWithUnsignedInteger(value);
}

} // namespace

TEST(NSNumber, EqualityAndHashAreByValueWhateverTheKind) {
    const std::vector<NSNumber> ones = {integer(1), natural(1), real(1.0), NSNumber::numberWithBool(true)};
    for (const NSNumber& a : ones) {
        for (const NSNumber& b : ones) {
            EXPECT_EQ(a, b);
            EXPECT_EQ(a.hash(), b.hash());
        }
    }
    EXPECT_EQ(real(0.0), real(-0.0));
    EXPECT_EQ(real(0.0).hash(), real(-0.0).hash());
    EXPECT_FALSE(integer(1) == id(NSString(u"1")));
}

TEST(NSNumber, BigIntegersAndDoublesAreComparedExactly) {
    EXPECT_EQ(integer(precise), real(9007199254740992.0));
    EXPECT_FALSE(integer(precise + 1) == real(9007199254740992.0));
    EXPECT_FALSE(integer(precise + 1) == integer(precise));
    EXPECT_FALSE(integer(maximum) == real(9223372036854775808.0));
    EXPECT_EQ(natural(1ULL << 63), real(9223372036854775808.0));
    EXPECT_FALSE(natural(unsignedMaximum) == real(18446744073709551616.0));
    EXPECT_EQ(integer(maximum).compare(real(9223372036854775808.0)), NSOrderedAscending);
    EXPECT_EQ(natural(unsignedMaximum).compare(integer(-1)), NSOrderedDescending);
}

TEST(NSNumber, EqualNumbersHaveEqualHashesAndOrderIsTotal) {
    const std::vector<NSNumber> all = {integer(minimum),
                                       integer(minimum + 1),
                                       integer(-1),
                                       real(-0.5),
                                       integer(0),
                                       real(-0.0),
                                       real(0.5),
                                       NSNumber::numberWithBool(true),
                                       integer(precise),
                                       integer(precise + 1),
                                       real(9007199254740992.0),
                                       integer(maximum),
                                       natural(1ULL << 63),
                                       real(9223372036854775808.0),
                                       natural(unsignedMaximum),
                                       real(18446744073709551616.0),
                                       real(HUGE_VAL),
                                       real(-HUGE_VAL),
                                       real(std::nan("")),
                                       real(-std::nan(""))};
    for (const NSNumber& a : all) {
        for (const NSNumber& b : all) {
            EXPECT_EQ(a == b, a.compare(b) == NSOrderedSame);
            EXPECT_EQ(a.compare(b), -b.compare(a));
            if (a == b) {
                EXPECT_EQ(a.hash(), b.hash());
            }
            for (const NSNumber& c : all) {
                if (a == b && b == c) {
                    EXPECT_EQ(a, c);
                }
            }
        }
    }
}

TEST(NSNumber, NotANumberIsEqualToItselfAndStandsFirst) {
    EXPECT_EQ(real(std::nan("1")), real(std::nan("2")));
    EXPECT_EQ(real(std::nan("")).compare(real(-HUGE_VAL)), NSOrderedAscending);
}

TEST(NSNumber, ConvertsHeldToTheRange) {
    EXPECT_EQ(real(-1.9).integerValue(), -1);
    EXPECT_EQ(real(1e30).integerValue(), maximum);
    EXPECT_EQ(real(-1e30).integerValue(), minimum);
    EXPECT_EQ(real(std::nan("")).integerValue(), 0);
    EXPECT_EQ(real(9223372036854775808.0).integerValue(), maximum);
    EXPECT_EQ(real(-9223372036854775808.0).integerValue(), minimum);
    EXPECT_EQ(natural(unsignedMaximum).unsignedIntegerValue(), unsignedMaximum);
    EXPECT_EQ(integer(-1).unsignedIntegerValue(), unsignedMaximum);
    EXPECT_EQ(real(1e19).unsignedIntegerValue(), 10000000000000000000ULL);
    EXPECT_EQ(real(1e30).unsignedIntegerValue(), unsignedMaximum);
    EXPECT_EQ(real(-1.5).unsignedIntegerValue(), unsignedMaximum);
    EXPECT_EQ(real(std::nan("")).unsignedIntegerValue(), 0u);
    EXPECT_EQ(integer(3).doubleValue(), 3.0);
}

TEST(NSNumber, BoolValueIsNotZero) {
    EXPECT_TRUE(integer(-1).boolValue());
    EXPECT_TRUE(real(0.1).boolValue());
    EXPECT_FALSE(integer(0).boolValue());
    EXPECT_FALSE(real(-0.0).boolValue());
}

TEST(NSNumber, KnowsItsKind) {
    EXPECT_TRUE(NSNumber::numberWithBool(false).isBoolean());
    EXPECT_FALSE(integer(1).isBoolean());
    EXPECT_TRUE(real(1).isFloatingPoint());
    EXPECT_FALSE(integer(1).isFloatingPoint());
    EXPECT_TRUE(natural(1ULL << 63).isBeyondSigned());
    EXPECT_FALSE(natural(5).isBeyondSigned());
}

TEST(NSNumber, NilIsZeroAndStandsFirst) {
    const NSNumber nothing;
    EXPECT_FALSE(nothing.boolValue());
    EXPECT_EQ(nothing.integerValue(), 0);
    EXPECT_EQ(nothing.unsignedIntegerValue(), 0u);
    EXPECT_EQ(nothing.doubleValue(), 0.0);
    EXPECT_FALSE(nothing.isBoolean() || nothing.isFloatingPoint() || nothing.isBeyondSigned());
    EXPECT_EQ(nothing.compare(integer(minimum)), NSOrderedAscending);
    EXPECT_EQ(integer(0).compare(nothing), NSOrderedDescending);
    EXPECT_EQ(nothing.compare(nothing), NSOrderedSame);
}

struct NumberText {
    NSNumber number;
    const char16_t* text;
};

void PrintTo(const NumberText& test, std::ostream* out) {
    *out << printed(test.text);
}

class NSNumberDescription : public testing::TestWithParam<NumberText> {};

TEST_P(NSNumberDescription, IsTheNumber) {
    EXPECT_EQ(GetParam().number.description(), NSString(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(
    Texts, NSNumberDescription,
    testing::Values(NumberText{integer(-5), u"-5"}, NumberText{NSNumber::numberWithBool(true), u"1"},
                    NumberText{NSNumber::numberWithBool(false), u"0"},
                    NumberText{integer(minimum), u"-9223372036854775808"},
                    NumberText{natural(unsignedMaximum), u"18446744073709551615"}, NumberText{real(1), u"1"},
                    NumberText{real(0.1), u"0.1"}, NumberText{real(-0.0), u"-0"},
                    NumberText{real(1.0 / 3), u"0.3333333333333333"},
                    NumberText{real(0.1 + 0.2), u"0.3000000000000000"
                                                "4"},
                    NumberText{real(1e100), u"1e+100"}, NumberText{real(1e15), u"1000000000000000"},
                    NumberText{real(HUGE_VAL), u"inf"}, NumberText{real(-HUGE_VAL), u"-inf"},
                    NumberText{real(std::nan("")), u"nan"}, NumberText{real(-std::nan("")), u"nan"}));

} // namespace qrv
