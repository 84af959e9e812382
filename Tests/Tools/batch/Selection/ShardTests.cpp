#include "Source/Tools/batch/Selection/Shard.h"

#include <gtest/gtest.h>
#include <vector>

namespace qrv::batch {
namespace {

TEST(Shard, EveryPathIsInOneShard) {
    for (const std::uint64_t count : {1, 2, 3, 8, 64}) {
        std::vector<int> sizes(count);
        for (int i = 0; i < 2000; ++i) {
            const std::string pdf = "folder/" + std::to_string(i) + ".pdf";
            int holders = 0;
            for (std::uint64_t index = 0; index < count; ++index) {
                if (!Shard{index, count}.holds(pdf)) continue;
                ++holders;
                ++sizes[index];
            }
            ASSERT_EQ(holders, 1) << pdf;
        }
        for (const int size : sizes) EXPECT_GT(size, 1000 / static_cast<int>(count)) << count;
    }
}

TEST(Shard, DependsOnThePathAlone) {
    // Written down: a run that goes on after an update must find its part again.
    EXPECT_TRUE((Shard{3, 8}.holds("a.pdf")));
    EXPECT_TRUE((Shard{6, 8}.holds("b/c.pdf")));
    EXPECT_TRUE((Shard{4, 8}.holds("é.pdf")));
}

TEST(Shard, IsReadFromText) {
    const auto shard = shardOfText("3/8");
    ASSERT_TRUE(shard);
    EXPECT_EQ(shard->index, 3u);
    EXPECT_EQ(shard->count, 8u);
    EXPECT_TRUE(shardOfText("0/1"));
    for (const char* text : {"", "/", "8/8", "9/8", "-1/8", "1/", "/8", "1", "1/8/", " 1/8", "1 /8", "0/0",
                             "a/b", "+1/8", "1/18446744073709551616"})
        EXPECT_FALSE(shardOfText(text)) << text;
}

TEST(Shard, NamesItsFiles) {
    EXPECT_EQ(Shard().suffix(), "");
    EXPECT_EQ((Shard{3, 8}.suffix()), ".3-of-8");
}

} // namespace
} // namespace qrv::batch
