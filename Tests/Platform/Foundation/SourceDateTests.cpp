#include "Platform/Foundation/SourceDate.h"

#include "Tests/Support/Variable.h"

#include <gmock/gmock.h>

namespace qrv {

namespace {

std::string dateOf(const char* value) {
    const Variable variable("SOURCE_DATE_EPOCH", value);
    const NSDate date = sourceDate();
    return date ? date.description().utf8() : "";
}

} // namespace

TEST(SourceDate, IsTheMomentOfTheEnvironment) {
    EXPECT_EQ(dateOf("1709210096"), "2024-02-29 12:34:56 +0000");
    EXPECT_EQ(dateOf("0"), "1970-01-01 00:00:00 +0000");
    EXPECT_EQ(dateOf("253402300799"), "9999-12-31 23:59:59 +0000");
}

TEST(SourceDate, IsNilWhereNoneIsToldWhichIsNoFault) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(dateOf(nullptr), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(SourceDate, IsNilForAnythingElseWhichIsLogged) {
    for (const char* value :
         {"", "-1", "1.5", " 1", "1 ", "today", "253402300800", "99999999999999999999", "+1"}) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(dateOf(value), "") << value;
        EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("SOURCE_DATE_EPOCH")) << value;
    }
}

} // namespace qrv
