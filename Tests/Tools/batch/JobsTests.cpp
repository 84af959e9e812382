#include "Source/Tools/batch/Jobs.h"

#include <gtest/gtest.h>

namespace qrv::batch {
namespace {

constexpr std::size_t gibibyte = std::size_t{1} << 30;

TEST(Jobs, KeepTheProcessorsBusy) {
    EXPECT_EQ(usualJobs({2, 64 * gibibyte}, 0), 2u);
    EXPECT_EQ(usualJobs({2, 64 * gibibyte}, 2), usualJobs({4, 64 * gibibyte}, 2) / 2);
    EXPECT_GT(usualJobs({2, 64 * gibibyte}, 2), 4u);
    EXPECT_EQ(usualJobs({0.1, 64 * gibibyte}, 0), 1u);
}

TEST(Jobs, FitTheMemory) {
    EXPECT_EQ(usualJobs({64, gibibyte}, 2), 5u);
    EXPECT_EQ(usualJobs({64, 0}, 2), 1u);
}

TEST(Jobs, MemoryIsLimitedForEach) {
    EXPECT_EQ(memoryLimitForEach(64 * gibibyte, 1), 32 * gibibyte);
    EXPECT_EQ(memoryLimitForEach(64 * gibibyte, 16), 8 * gibibyte);
    EXPECT_EQ(memoryLimitForEach(16 * gibibyte, 64), gibibyte);
    EXPECT_EQ(memoryLimitForEach(gibibyte, 64), gibibyte / 2);
}

} // namespace
} // namespace qrv::batch
