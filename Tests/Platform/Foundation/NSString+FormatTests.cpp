#include "Platform/Foundation/NSString.h"

#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSNumber.h"
#include "Tests/Platform/Foundation/Printing.h"
#include "Tests/Support/TemporaryFolder.h"

#include <clocale>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace qrv {

namespace {

template <class... Arguments>
std::string formatted(const char16_t* format, const Arguments&... arguments) {
    return NSString::stringWithFormat(format, arguments...).utf8();
}

/// What the C library prints.
template <class... Arguments>
std::string printed(const char* format, Arguments... arguments) {
    char text[512];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"
    std::snprintf(text, sizeof text, format, arguments...);
#pragma GCC diagnostic pop
    return text;
}

} // namespace

TEST(NSStringFormat, ObjectsShowTheirDescriptionAndNilShowsAsNull) {
    EXPECT_EQ(formatted(u"%@ and %@", NSString(u"é"), NSNumber::numberWithInteger(5)), "é and 5");
    EXPECT_EQ(formatted(u"%@ %@", NSString(), nullptr), "(null) (null)");
    EXPECT_EQ(formatted(u"%5@|%-5@|", NSString(u"ab"), NSString(u"ab")), "   ab|ab   |");
}

TEST(NSStringFormat, PrecisionCutsObjectsAndTexts) {
    EXPECT_EQ(formatted(u"%.2@|%5.1@|%.9@|%.0@|", NSString(u"abc"), NSString(u"abc"), NSString(u"abc"),
                        NSString(u"abc")),
              "ab|    a|abc||");
    EXPECT_EQ(formatted(u"%.3@", NSString()), "(nu");
    EXPECT_EQ(formatted(u"%.2@|%.3@|", NSString(u"a\U0001F600"), NSString(u"a\U0001F600")), "a|a\U0001F600|");
    EXPECT_EQ(formatted(u"%.1S|%.2S|", u"\U0001F600", u"\U0001F600"), "|\U0001F600|");
}

TEST(NSStringFormat, FlagForGroupsGroupsNothing) {
    EXPECT_EQ(formatted(u"%'d|%'08u|%-'9.2f|", 1234567, 1234567U, 1234.5), "1234567|01234567|1234.50  |");
}

TEST(NSStringFormat, PlainTextAndPercentSigns) {
    EXPECT_EQ(formatted(u"100%% of é"), "100% of é");
    EXPECT_EQ(formatted(u""), "");
    EXPECT_EQ(formatted(u"cut %"), "cut %");
    EXPECT_EQ(formatted(u"cut %-08.3l"), "cut %-08.3l");
    EXPECT_TRUE(NSString::stringWithFormat(NSString()).isNil());
}

TEST(NSStringFormat, IntegersPrintAsPrintfDoes) {
    EXPECT_EQ(formatted(u"%d|%5d|%-5d|%05d|%+d|% d", -1, 42, 42, 42, 42, 42),
              printed("%d|%5d|%-5d|%05d|%+d|% d", -1, 42, 42, 42, 42, 42));
    EXPECT_EQ(formatted(u"%x %X %#x %o %#o", 255, 255, 255, 8, 8),
              printed("%x %X %#x %o %#o", 255, 255, 255, 8, 8));
    EXPECT_EQ(formatted(u"%.5d|%8.3d", 42, 7), printed("%.5d|%8.3d", 42, 7));
    EXPECT_EQ(formatted(u"%ld %lu %lld %llu", std::numeric_limits<long>::min(),
                        std::numeric_limits<unsigned long>::max(), std::numeric_limits<long long>::max(),
                        std::numeric_limits<unsigned long long>::max()),
              "-9223372036854775808 18446744073709551615 9223372036854775807 18446744073709551615");
}

TEST(NSStringFormat, NarrowArgumentsArePromoted) {
    const unsigned char u8 = 255;
    const signed char i8 = -1;
    const unsigned short u16 = 65535;
    const short i16 = -2;
    EXPECT_EQ(formatted(u"%d %u %hhu %hhd %ld", u8, u8, u8, u8, u8), "255 255 255 -1 255");
    EXPECT_EQ(formatted(u"%d %u %hhu %hhd", i8, i8, i8, i8), "-1 4294967295 255 -1");
    EXPECT_EQ(formatted(u"%d %u %hu %hd", u16, u16, u16, u16), "65535 65535 65535 -1");
    EXPECT_EQ(formatted(u"%d %hu %hi %i", i16, i16, i16, true), "-2 65534 -2 1");
    EXPECT_EQ(formatted(u"%d %x", char16_t(0xFFFF), char32_t(0x1F600)), "65535 1f600");
}

TEST(NSStringFormat, NegativeNumbersUnderUnsignedConversionsKeepTheirOwnWidth) {
    EXPECT_EQ(formatted(u"%u %x", -1, -1), "4294967295 ffffffff");
    EXPECT_EQ(formatted(u"%lu %llx", -1L, -1LL), "18446744073709551615 ffffffffffffffff");
    EXPECT_EQ(formatted(u"%lu", -1), "4294967295");
}

TEST(NSStringFormat, WideNumbersUnderNarrowConversionsAreCut) {
    EXPECT_EQ(formatted(u"%d", 0x1'0000'0001LL), "1");
    EXPECT_EQ(formatted(u"%d", 0xFFFFFFFFU), "-1");
    EXPECT_EQ(formatted(u"%u", -1LL), "4294967295");
    EXPECT_EQ(formatted(u"%hd %hhd", 65537, 257), "1 1");
    EXPECT_EQ(formatted(u"%ld", 0xFFFFFFFFU), "4294967295");
    EXPECT_EQ(formatted(u"%zu %td %jd %qd", std::size_t(1) << 40, std::ptrdiff_t(-5), 5L, 6LL),
              "1099511627776 -5 5 6");
    EXPECT_EQ(formatted(u"%D %U %O", -1L, 5L, 8L), "-1 5 10");
}

TEST(NSStringFormat, FloatingPointPrintsAsPrintfDoes) {
    EXPECT_EQ(formatted(u"%f %.2f %10.3f|%-10.1e|%g %G", 1.5, 2.345, 3.0, 1e10, 1e-10, 1e20),
              printed("%f %.2f %10.3f|%-10.1e|%g %G", 1.5, 2.345, 3.0, 1e10, 1e-10, 1e20));
    EXPECT_EQ(formatted(u"%f %F %f", HUGE_VAL, -HUGE_VAL, std::nan("")), "inf -INF nan");
    EXPECT_EQ(formatted(u"%a %A", 1.0, 0.5), printed("%a %A", 1.0, 0.5));
    EXPECT_EQ(formatted(u"%Lf %f %f", 1.5L, 2.5L, 0.25F), "1.500000 2.500000 0.250000");
    EXPECT_EQ(formatted(u"%f", 1e300), printed("%f", 1e300));
}

TEST(NSStringFormat, CharactersIncludingNul) {
    EXPECT_EQ(NSString::stringWithFormat(u"%c%c", 'a', 0), NSString(std::u16string_view(u"a\0", 2)));
    EXPECT_EQ(formatted(u"%C%c", char16_t(0x20AC), 0xE9), "€é");
    EXPECT_EQ(formatted(u"%3c|%-3c|", 'x', 'y'), "  x|y  |");
}

TEST(NSStringFormat, TextsAndPointers) {
    EXPECT_EQ(formatted(u"%s %S", "\xC3\xA9", u"ü"), "é ü");
    EXPECT_EQ(formatted(u"%.2s|%.1S|%4s|", "abc", u"xyz", "q"), "ab|x|   q|");
    EXPECT_EQ(formatted(u"%s", static_cast<const char*>(nullptr)), "(null)");
    EXPECT_EQ(formatted(u"%S", static_cast<const char16_t*>(nullptr)), "(null)");
    EXPECT_EQ(formatted(u"%s", "\xFF"), "\xEF\xBF\xBD");
    int place = 0;
    const void* address = &place;
    EXPECT_EQ(formatted(u"%p", address), printed("%p", address));
    EXPECT_EQ(formatted(u"%p", static_cast<const void*>(nullptr)), "0x0");
    const NSString text = u"a";
    EXPECT_EQ(formatted(u"%p", text), printed("%p", static_cast<const void*>(text.shared().get())));
}

TEST(NSStringFormat, PositionsWidthsAndPrecisionsFromArguments) {
    EXPECT_EQ(formatted(u"%2$@ %1$@", NSString(u"a"), NSString(u"b")), "b a");
    EXPECT_EQ(formatted(u"%*d|%-*d|", 5, 42, 5, 42), "   42|42   |");
    EXPECT_EQ(formatted(u"%*d|", -5, 42), "42   |");
    EXPECT_EQ(formatted(u"%.*f %.*f", 1, 2.55, -1, 2.5), printed("%.*f %.*f", 1, 2.55, -1, 2.5));
    EXPECT_EQ(formatted(u"%3$d %0$d", 1, 2, 3), "3 1");
}

TEST(NSStringFormat, AMissingOrUnfittingArgumentShowsAMarker) {
    EXPECT_EQ(formatted(u"%d %@", 1), "1 <%@: missing>");
    EXPECT_EQ(formatted(u"%9$@", 1), "<%9$@: missing>");
    EXPECT_EQ(formatted(u"%d", NSString(u"a")), "<%d: wrong type>");
    EXPECT_EQ(formatted(u"%@", 5), "<%@: wrong type>");
    EXPECT_EQ(formatted(u"%f", 5), "<%f: wrong type>");
    EXPECT_EQ(formatted(u"%s", 5), "<%s: wrong type>");
    EXPECT_EQ(formatted(u"%S", "narrow"), "<%S: wrong type>");
    EXPECT_EQ(formatted(u"%s", u"wide"), "<%s: wrong type>");
    EXPECT_EQ(formatted(u"%c", 1.5), "<%c: wrong type>");
    EXPECT_EQ(formatted(u"%p", 1.5), "<%p: wrong type>");
    EXPECT_EQ(formatted(u"%n", 5), "<%n: wrong type>");
    EXPECT_EQ(formatted(u"%*d", 1.5, 2), "2");
    EXPECT_EQ(formatted(u"%*d"), "<%*d: missing>");
}

TEST(NSStringFormat, AWidthBeyondReasonIsCut) {
    EXPECT_EQ(formatted(u"%99999999999999d", 1).size(), 4096u);
    EXPECT_EQ(formatted(u"%*d", std::numeric_limits<int>::min(), 1).size(), 4096u);
}

TEST(NSStringFormat, PackedArgumentsOutliveWhatTheyWereMadeFrom) {
    FormatArguments arguments = [] {
        const std::string text = "gone by then";
        return FormatArguments(text.c_str(), NSString(u"kept"), 7);
    }();
    EXPECT_EQ(NSString::stringWithFormat_arguments(u"%s %@ %d", arguments), NSString(u"gone by then kept 7"));
}

TEST(NSStringFormat, ADecimalCommaOfTheProgramsLocaleIsNotUsed) {
    const TemporaryFolder folder;
    folder.write("source",
                 "LC_NUMERIC\ndecimal_point \",\"\nthousands_sep \"\"\ngrouping -1\nEND LC_NUMERIC\n");
    const std::string base = folder.path().string();
    const std::string make =
        "localedef --no-archive -c -i " + base + "/source " + base + "/comma 2>/dev/null";
    // It warns of the categories left out; what counts is asked for next.
    static_cast<void>(std::system(make.c_str())); // NOLINT: a fixed text
    ::setenv("LOCPATH", base.c_str(), 1);
    ASSERT_NE(std::setlocale(LC_NUMERIC, "comma"), nullptr);
    EXPECT_EQ(printed("%.1f", 1.5), "1,5");
    EXPECT_EQ(formatted(u"%.1f %g", 1.5, 0.25), "1.5 0.25");
    EXPECT_EQ(NSString(u"1.5").doubleValue(), 1.5);
    EXPECT_EQ(NSNumber::numberWithDouble(1.5).description(), NSString(u"1.5"));
    EXPECT_EQ(printed("%.1f", 1.5), "1,5") << "the program's own locale is as before";
    std::setlocale(LC_NUMERIC, "C");
    ::unsetenv("LOCPATH");
}

} // namespace qrv
