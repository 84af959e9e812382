#include "Platform/PDFKit/PDFDate.h"

#include <gtest/gtest.h>
#include <limits>

namespace qrv {

namespace {

double unixSeconds(const char* text) {
    const NSDate date = dateFromPDFText(text);
    EXPECT_TRUE(date) << text;
    return date.timeIntervalSinceReferenceDate() + NSTimeIntervalSince1970;
}

NSDate dateOfUnixSeconds(double seconds) {
    return NSDate::dateWithTimeIntervalSinceReferenceDate(seconds - NSTimeIntervalSince1970);
}

} // namespace

TEST(PDFDate, ReadsEveryKindOfTimeZone) {
    EXPECT_EQ(unixSeconds("D:19700101000000Z"), 0);
    EXPECT_EQ(unixSeconds("D:20240229123456"), 1709210096);
    EXPECT_EQ(unixSeconds("D:20240229123456+00'00'"), 1709210096);
    EXPECT_EQ(unixSeconds("D:20240229123456+01'30'"), 1709210096 - 5400);
    EXPECT_EQ(unixSeconds("D:20240229123456-08'00'"), 1709210096 + 8 * 3600);
}

TEST(PDFDate, RefusesWhatIsNoMoment) {
    for (const char* text :
         {"", "D:", "yesterday", "D:2024", "20240229123456", "D:20230229000000Z", "D:20241301000000Z",
          "D:20240100000000Z", "D:20240101240000Z", "D:20240101006000Z", "D:20240101000000Z and more"}) {
        EXPECT_TRUE(dateFromPDFText(text).isNil()) << text;
    }
    EXPECT_TRUE(dateFromPDFText("D:" + std::string(1 << 20, '0')).isNil());
}

TEST(PDFDate, WritesUniversalTime) {
    EXPECT_EQ(pdfTextFromDate(dateOfUnixSeconds(1709210096.9)), "D:20240229123456Z");
    EXPECT_EQ(pdfTextFromDate(dateOfUnixSeconds(-1)), "D:19691231235959Z");
}

TEST(PDFDate, HasNoTextOutsideFourDigitYears) {
    EXPECT_EQ(pdfTextFromDate({}), "");
    EXPECT_EQ(pdfTextFromDate(dateOfUnixSeconds(253402300799.0)), "D:99991231235959Z");
    EXPECT_EQ(pdfTextFromDate(dateOfUnixSeconds(253402300800.0)), "");
    EXPECT_EQ(pdfTextFromDate(dateOfUnixSeconds(-1e12)), "");
    EXPECT_EQ(pdfTextFromDate(dateOfUnixSeconds(std::numeric_limits<double>::quiet_NaN())), "");
    EXPECT_EQ(pdfTextFromDate(dateOfUnixSeconds(std::numeric_limits<double>::infinity())), "");
}

} // namespace qrv
