#include "Platform/Engine/PDF/SourceDate.h"

#include "Platform/PDFKit/PDFDate.h"
#include "Tests/Support/Variable.h"

#include <gmock/gmock.h>

namespace qrv::engine {

namespace {

std::string dateOf(const char* value) {
    const Variable variable("SOURCE_DATE_EPOCH", value);
    return pdfTextFromDate(sourceDate());
}

} // namespace

TEST(SourceDate, IsTheMomentOfTheEnvironment) {
    EXPECT_EQ(dateOf("1709210096"), "D:20240229123456Z");
    EXPECT_EQ(dateOf("0"), "D:19700101000000Z");
    EXPECT_EQ(dateOf("253402300799"), "D:99991231235959Z");
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

} // namespace qrv::engine
