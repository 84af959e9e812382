#include "Source/Tools/batch/Report/Quantities.h"

#include <gtest/gtest.h>
#include <limits>

namespace qrv::batch {
namespace {

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();

TEST(Quantities, CountsHaveGroups) {
    EXPECT_EQ(countText(0), "0");
    EXPECT_EQ(countText(999), "999");
    EXPECT_EQ(countText(1000), "1,000");
    EXPECT_EQ(countText(123'456), "123,456");
    EXPECT_EQ(countText(1'234'567), "1,234,567");
    EXPECT_EQ(countText(largest), "9,223,372,036,854,775,807");
    EXPECT_EQ(countText(smallest), "0");
}

TEST(Quantities, CountsOfThings) {
    EXPECT_EQ(countOf(0, "page"), "0 pages");
    EXPECT_EQ(countOf(1, "page"), "1 page");
    EXPECT_EQ(countOf(1234, "page"), "1,234 pages");
}

TEST(Quantities, Durations) {
    EXPECT_EQ(durationText(0), "0 ms");
    EXPECT_EQ(durationText(999), "999 ms");
    EXPECT_EQ(durationText(1000), "1.0 s");
    EXPECT_EQ(durationText(2449), "2.4 s");
    EXPECT_EQ(durationText(10'000), "10 s");
    EXPECT_EQ(durationText(65'000), "1 min 05 s");
    EXPECT_EQ(durationText(smallest), "0 ms");
}

} // namespace
} // namespace qrv::batch
