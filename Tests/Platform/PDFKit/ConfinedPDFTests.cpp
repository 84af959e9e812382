#include "Platform/PDFKit/ConfinedPDF.h"

#include "Platform/PDFKit/PDFFile.h"
#include "Platform/PDFKit/PDFWriting.h"
#include "Tests/Platform/PDFKit/SamplePDF.h"

#include <functional>
#include <gmock/gmock.h>
#include <pthread.h>

namespace qrv {
namespace {

using testing::HasSubstr;
using testing::StartsWith;
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
    EXPECT_EQ(workOnPDF("the work", 0, [](std::string&) { return NSData("made"); })->bytes(), "made");
    const auto nothing = workOnPDF("the work", 0, [](std::string&) { return NSData(); });
    ASSERT_TRUE(nothing);
    EXPECT_TRUE(nothing->isNil());
}

TEST(ConfinedPDF, FailuresAndNotesAreLogged) {
    CaptureStderr();
    const auto failed = workOnPDF("the work", 0, [](std::string&) -> NSData { __builtin_trap(); });
    EXPECT_FALSE(failed);
    EXPECT_THAT(GetCapturedStderr(), HasSubstr("the work was ended by signal 4 (Illegal instruction)\n"));
    CaptureStderr();
    workOnPDF("the work", 0, [](std::string& notes) {
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

int forks = 0;

/// How many children an operation starts.
int forksDuring(const std::function<void()>& operation) {
    static const int isCounting = ::pthread_atfork(
        nullptr, [] { ++forks; }, nullptr);
    EXPECT_EQ(isCounting, 0);
    forks = 0;
    operation();
    return forks;
}

std::string titled(const std::string& title) {
    return makePDF({"<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[3 0 R]/Count 1>>",
                    "<</Type/Page/Parent 2 0 R/MediaBox[0 0 9 9]>>", "<</Title(" + title + ")>>"},
                   "/Info 4 0 R");
}

NSString titleOf(const std::optional<PDFEnding>& ending) {
    return ending ? as<NSString>(ending->attributes.objectForKey(NSString(u"Title"))) : NSString();
}

TEST(ConfinedPDF, AsksAChildForAnEnding) {
    EXPECT_EQ(forksDuring([] { EXPECT_EQ(titleOf(endingOfPDF(NSData(titled("A")))), NSString(u"A")); }), 1);
    EXPECT_EQ(forksDuring([] { EXPECT_FALSE(endingOfPDF(NSData("<html>"))); }), 1);
}

TEST(ConfinedPDF, KnowsTheEndingOfWhatItHasMade) {
    const NSData source(titled("B"));
    NSData made;
    EXPECT_EQ(forksDuring([&] {
                  made = makeFromPDF("making", source.length(), [&](std::string& notes, PDFEnding& ending) {
                      notes = "made";
                      return serializePDF(*openPDF(source), {}, &ending);
                  });
                  EXPECT_EQ(titleOf(endingOfPDF(NSData(std::string(made.bytes())))), NSString(u"B"));
              }),
              1);
    EXPECT_THAT(std::string(made.bytes()), StartsWith("%PDF-1.5"));
    EXPECT_EQ(titleOf(endingOfPDF(NSData(titled("C")))), NSString(u"C"));
}

TEST(ConfinedPDF, MakesNothingOfWorkThatFailsOrHasNoResult) {
    const auto make = [](const PDFMaking& making) { return makeFromPDF("making", 1, making); };
    CaptureStderr();
    EXPECT_TRUE(make([](std::string&, PDFEnding&) { return NSData(); }).isNil());
    EXPECT_EQ(GetCapturedStderr(), "");
    CaptureStderr();
    EXPECT_TRUE(make([](std::string&, PDFEnding&) -> NSData { __builtin_trap(); }).isNil());
    EXPECT_THAT(GetCapturedStderr(), HasSubstr("making was ended by signal 4 (Illegal instruction)\n"));
}

TEST(ConfinedPDF, KnowsWhatItHasLookedAt) {
    const NSData file(titled("D"));
    const NSData damaged(titled("E").substr(0, titled("E").size() - 20));
    EXPECT_EQ(forksDuring([&] {
                  EXPECT_TRUE(mayBeReadablePDF(file));
                  EXPECT_EQ(titleOf(endingOfPDF(file)), NSString(u"D"));
              }),
              1);
    EXPECT_EQ(forksDuring([&] {
                  EXPECT_TRUE(mayBeReadablePDF(damaged)); // which readers mend
                  EXPECT_FALSE(endingOfPDF(damaged));
              }),
              1);
}

} // namespace
} // namespace qrv
