#include "Platform/Engine/Process/LookUntil.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace qrv::engine {
namespace {

using namespace std::chrono_literals;

TEST(LookUntilTest, DoesNotRestWhenItIsSoAlready) {
    EXPECT_TRUE(lookUntil([] { return true; }, 1, std::chrono::hours(1)));
}

TEST(LookUntilTest, GivesUpAfterAllLooks) {
    int looks = 0;
    EXPECT_FALSE(lookUntil([&] { return ++looks > 10; }, 10, 1us));
    EXPECT_EQ(looks, 10);
    EXPECT_TRUE(lookUntil([&] { return --looks == 0; }, 10, 1us));
}

TEST(LookUntilTest, MachineThatStandsStillUsesUpOneLook) {
    int looks = 0;
    const auto isSo = [&] {
        if (++looks == 1) std::this_thread::sleep_for(100ms); // a hundred times as long as all rests
        return looks == 3;
    };
    EXPECT_TRUE(lookUntil(isSo, 10, 100us));
}

} // namespace
} // namespace qrv::engine
