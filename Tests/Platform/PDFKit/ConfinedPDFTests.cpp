#include "Platform/PDFKit/ConfinedPDF.h"

#include "Tests/Platform/PDFKit/SamplePDF.h"

#include <gmock/gmock.h>

namespace qrv {
namespace {

using testing::HasSubstr;
using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

std::string pageTree(const std::string& kids) {
    return makePDF({"<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[" + kids + "]/Count 1>>",
                    "<</Type/Page/Parent 2 0 R/MediaBox[0 0 612 792]>>"});
}

/// A page below more nodes than the stack has room for.
std::string deepTree() {
    constexpr int depth = 200'000;
    std::vector<std::string> objects{"<</Type/Catalog/Pages 2 0 R>>"};
    for (int number = 2; number <= depth; ++number)
        objects.push_back("<</Type/Pages/Count 1/Kids[" + std::to_string(number + 1) + " 0 R]>>");
    objects.emplace_back("<</Type/Page/MediaBox[0 0 612 792]>>");
    return makePDF(objects);
}

TEST(ConfinedPDF, LimitsGoWithTheLength) {
    const ConfinedLimits empty = limitsForPDF(0);
    const ConfinedLimits small = limitsForPDF(100 << 10);
    const ConfinedLimits large = limitsForPDF(100 << 20);
    EXPECT_LT(small.memory + small.result, 900U << 20);
    EXPECT_LT(empty.memory, small.memory);
    EXPECT_GE(large.memory, 1ULL << 30);
    EXPECT_GE(large.result, 200U << 20);
    EXPECT_GT(large.processorTime, small.processorTime);
    EXPECT_GE(large.time, large.processorTime);
    EXPECT_EQ(limitsForPDF(10ULL << 30).time, std::chrono::minutes(10));
    EXPECT_EQ(limitsForPDF(10ULL << 30).processorTime, std::chrono::minutes(10));
}

TEST(ConfinedPDF, WorkGivesWhatItReturns) {
    EXPECT_EQ(workOnPDF("the work", {}, [](std::string&) { return NSData("made"); })->bytes(), "made");
    const auto nothing = workOnPDF("the work", {}, [](std::string&) { return NSData(); });
    ASSERT_TRUE(nothing);
    EXPECT_TRUE(nothing->isNil());
}

TEST(ConfinedPDF, FailuresAndNotesAreLogged) {
    CaptureStderr();
    const auto failed = workOnPDF("the work", {}, [](std::string&) -> NSData { __builtin_trap(); });
    EXPECT_FALSE(failed);
    EXPECT_THAT(GetCapturedStderr(), HasSubstr("the work was ended by signal 4 (Illegal instruction)\n"));
    CaptureStderr();
    workOnPDF("the work", {}, [](std::string& notes) {
        notes = "first\nsecond\n";
        return NSData();
    });
    const std::string log = GetCapturedStderr();
    EXPECT_THAT(log, HasSubstr("] first\n"));
    EXPECT_THAT(log, HasSubstr("] second\n"));
}

TEST(ConfinedPDF, SaysWhichFilesReadersMayTake) {
    CaptureStderr();
    EXPECT_TRUE(mayBeReadablePDF(NSData(pageTree("3 0 R"))));
    EXPECT_FALSE(mayBeReadablePDF(NSData(pageTree(""))));
    EXPECT_FALSE(mayBeReadablePDF(NSData("<html>")));
    EXPECT_FALSE(mayBeReadablePDF({}));
    EXPECT_EQ(GetCapturedStderr(), "");
}

TEST(ConfinedPDF, ReadersMayTakeWhatIsTooMuchForTheLibrary) {
    const NSData deep(deepTree());
    CaptureStderr();
    EXPECT_TRUE(mayBeReadablePDF(deep));
    EXPECT_THAT(GetCapturedStderr(),
                HasSubstr("looking at a stored PDF was ended by signal 11 (Segmentation fault)\n"));
}

} // namespace
} // namespace qrv
