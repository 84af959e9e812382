#include "Platform/Engine/Process/EngineWatch.h"

#include "Tests/Platform/Engine/Process/ProcessFolder.h"

#include <gtest/gtest.h>

namespace qrv::engine {
namespace {

using Fault = EngineWatch::Fault;

class EngineWatchTest : public ::testing::Test {
protected:
    static constexpr std::size_t limit = std::size_t{100} << 20;

    EngineWatchTest() {
        folder_.add(10, 1, {});
        folder_.add(20, 10, zygote);
        folder_.add(21, 20, zygote);
        folder_.add(22, 10, zygote);
    }

    /// What enough looks find; a single one must not find an absence.
    std::optional<Fault> lookLong() {
        for (int looks = 1; looks < EngineWatch::looksToBelieve; ++looks)
            EXPECT_EQ(watch_.look(hasAnswered_), std::nullopt);
        return watch_.look(hasAnswered_);
    }

    static inline const ProcessFolder::Process zygote{.commandLine = "engine --type=zygote"};
    static inline const ProcessFolder::Process page{.commandLine = "engine --type=renderer"};

    bool hasAnswered_ = true;
    ProcessFolder folder_;
    EngineWatch watch_{10, limit, folder_.path()};
};

TEST_F(EngineWatchTest, AnEngineThatHasNoPageYetIsWell) {
    EXPECT_EQ(lookLong(), std::nullopt);
}

TEST_F(EngineWatchTest, AnEngineWithAPageIsWell) {
    folder_.add(30, 21, page);
    EXPECT_EQ(lookLong(), std::nullopt);
}

TEST_F(EngineWatchTest, AZygoteThatWasSeenIsMissed) {
    EXPECT_EQ(watch_.look(hasAnswered_), std::nullopt);
    folder_.remove(20);
    EXPECT_EQ(lookLong(), Fault::zygoteLost);
}

TEST_F(EngineWatchTest, AZygoteThatWasLostWithItsPageBeforeTheFirstLookIsMissed) {
    folder_.remove(20);
    folder_.remove(21);
    EXPECT_EQ(lookLong(), Fault::zygoteLost);
}

TEST_F(EngineWatchTest, AnEngineThatStartsMayHaveOneZygote) {
    folder_.remove(22);
    hasAnswered_ = false;
    EXPECT_EQ(lookLong(), std::nullopt);
    hasAnswered_ = true;
    EXPECT_EQ(lookLong(), Fault::zygoteLost);
}

TEST_F(EngineWatchTest, AnEngineThatNeverHadZygotesIsWell) {
    for (const int process : {20, 21, 22}) folder_.remove(process);
    EXPECT_EQ(lookLong(), std::nullopt);
}

TEST_F(EngineWatchTest, AZygoteThatWasLostBeforeTheFirstLookIsMissedWhenThereIsAPage) {
    hasAnswered_ = false;
    folder_.remove(22);
    EXPECT_EQ(lookLong(), std::nullopt);
    folder_.add(30, 21, page);
    EXPECT_EQ(lookLong(), Fault::zygoteLost);
}

TEST_F(EngineWatchTest, AZombieOfAZygoteIsMissed) {
    EXPECT_EQ(watch_.look(hasAnswered_), std::nullopt);
    folder_.add(20, 10, {.commandLine = "", .state = "Z (zombie)"});
    EXPECT_EQ(lookLong(), Fault::zygoteLost);
}

TEST_F(EngineWatchTest, WhatAZygoteForksHasItsNameAtFirst) {
    folder_.add(30, 21, zygote);
    EXPECT_EQ(watch_.look(hasAnswered_), std::nullopt);
    folder_.remove(30);
    EXPECT_EQ(lookLong(), std::nullopt);
}

TEST_F(EngineWatchTest, TheLastPageIsMissed) {
    folder_.add(30, 21, page);
    folder_.add(31, 21, page);
    EXPECT_EQ(watch_.look(hasAnswered_), std::nullopt);
    folder_.remove(30);
    EXPECT_EQ(lookLong(), std::nullopt);
    folder_.remove(31);
    EXPECT_EQ(lookLong(), Fault::pageLost);
}

TEST_F(EngineWatchTest, APageMayTakeAnotherProcess) {
    folder_.add(30, 21, page);
    EXPECT_EQ(watch_.look(hasAnswered_), std::nullopt);
    folder_.remove(30);
    EXPECT_EQ(watch_.look(hasAnswered_), std::nullopt);
    folder_.add(31, 21, page);
    EXPECT_EQ(watch_.look(hasAnswered_), std::nullopt);
    folder_.remove(31);
    EXPECT_EQ(lookLong(), Fault::pageLost); // counted from the start
}

TEST_F(EngineWatchTest, AnEngineThatIsAZombieHasEnded) {
    folder_.add(10, 1, {.commandLine = "", .state = "Z (zombie)"});
    EXPECT_EQ(lookLong(), Fault::ended);
}

TEST_F(EngineWatchTest, AnEngineThatIsGoneHasEnded) {
    folder_.remove(10);
    EXPECT_EQ(lookLong(), Fault::ended);
}

TEST_F(EngineWatchTest, TheMemoryOfAllCountsAtOnce) {
    constexpr int half = 50 << 10;
    folder_.add(30, 21, {.commandLine = page.commandLine, .anonymousKiB = half});
    folder_.add(31, 21, {.commandLine = page.commandLine, .sharedKiB = half});
    EXPECT_EQ(watch_.look(hasAnswered_), std::nullopt);
    folder_.add(32, 21, {.commandLine = page.commandLine, .anonymousKiB = 1});
    EXPECT_EQ(watch_.look(hasAnswered_), Fault::memoryExceeded);
}

} // namespace
} // namespace qrv::engine
