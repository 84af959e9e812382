#include "Source/Tools/batch/Report/Totals.h"

#include <gtest/gtest.h>
#include <limits>

namespace qrv::batch {
namespace {

Record converted(std::int64_t pages, std::int64_t size, std::int64_t milliseconds, std::int64_t missing = 0) {
    Record record;
    record.pages = pages;
    record.pdfSize = size;
    record.milliseconds = milliseconds;
    record.missingCount = missing;
    return record;
}

Record failed(std::int64_t milliseconds) {
    Record record;
    record.error = ConversionError{"Domain", 1, "Text"};
    record.milliseconds = milliseconds;
    return record;
}

Totals totalsOf(const std::vector<Record>& records) {
    Totals totals;
    for (const Record& record : records) totals.add(record);
    return totals;
}

TEST(Totals, OfNothing) {
    const Totals totals = totalsOf({});
    EXPECT_EQ(totals.archives, 0);
    EXPECT_EQ(totals.size, 0);
    EXPECT_EQ(totals.finished, "");
}

TEST(Totals, AreSums) {
    const Totals totals = totalsOf({converted(2, 1000, 10), converted(3, 500, 20, 4), failed(7)});
    EXPECT_EQ(totals.archives, 3);
    EXPECT_EQ(totals.complete, 1);
    EXPECT_EQ(totals.incomplete, 1);
    EXPECT_EQ(totals.failed, 1);
    EXPECT_EQ(totals.missing, 4);
    EXPECT_EQ(totals.pages, 5);
    EXPECT_EQ(totals.size, 1500);
    EXPECT_EQ(totals.milliseconds, 37);
}

TEST(Totals, FailedIsFailedWhateverIsMissing) {
    Record record = failed(1);
    record.missingCount = 2;
    EXPECT_EQ(verdictOf(record), Verdict::failed);
    EXPECT_EQ(totalsOf({record}).incomplete, 0);
}

TEST(Totals, PagesThatNobodyCountedAreNone) {
    Record record = converted(1, 1, 1);
    record.pages.reset();
    EXPECT_EQ(totalsOf({record, converted(4, 1, 1)}).pages, 4);
}

TEST(Totals, TellWhenTheLastWasDone) {
    Record first = failed(1);
    Record last = failed(1);
    first.finished = "2026-11-23T10:05:00Z";
    last.finished = "2026-11-23T11:00:00Z";
    EXPECT_EQ(totalsOf({last, first}).finished, last.finished);
}

TEST(Totals, DamagedNumbersDoNoHarm) {
    constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
    const Totals totals = totalsOf({converted(-5, largest, -1), converted(2, largest, 3)});
    EXPECT_EQ(totals.pages, 2);
    EXPECT_EQ(totals.size, largest);
    EXPECT_EQ(totals.milliseconds, 3);
}

} // namespace
} // namespace qrv::batch
