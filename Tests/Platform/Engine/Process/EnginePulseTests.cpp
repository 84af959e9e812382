#include "Platform/Engine/Process/EnginePulse.h"

#include "Platform/Foundation/NSDate.h"
#include "Tests/Platform/Engine/EngineTestSupport.h"
#include "Tests/Platform/Engine/ScriptedTransport.h"

#include <gtest/gtest.h>
#include <memory>
#include <thread>

namespace qrv::engine {
namespace {

using std::chrono::milliseconds;

class EnginePulseTest : public ::testing::Test {
protected:
    EnginePulseTest() {
        pulse_ = std::make_unique<EnginePulse>(
            client_, loop_, [this] { ++stopped_; },
            EnginePulse::Limits{.interval = milliseconds(1), .patience = 20});
    }

    bool runUntil(const std::function<bool()>& predicate) {
        return loop_.runUntil(predicate, std::chrono::steady_clock::now() + patience);
    }

    /// Longer than the pulse waits.
    void linger() {
        loop_.runUntil([] { return false; }, std::chrono::steady_clock::now() + milliseconds(200));
    }

    ScriptedTransport transport_;
    NSRunLoop loop_;
    DevToolsClient client_{transport_, loop_};
    int stopped_ = 0;
    std::unique_ptr<EnginePulse> pulse_;
};

TEST_F(EnginePulseTest, TellsOnceOfAnEngineThatDoesNotAnswer) {
    EXPECT_TRUE(runUntil([&] { return stopped_ > 0; }));
    linger();
    EXPECT_EQ(stopped_, 1);
    ASSERT_EQ(transport_.sent.size(), 1u);
    EXPECT_EQ(transport_.sent[0]["method"].string(), "Browser.getVersion");
}

TEST_F(EnginePulseTest, AsksAgainOnceItWasAnswered) {
    for (std::size_t asked = 1; asked <= 40; ++asked) {
        ASSERT_TRUE(runUntil([&] { return transport_.sent.size() == asked; }));
        transport_.reply(transport_.sent.back()["id"].integer(), {});
    }
    EXPECT_EQ(stopped_, 0);
    EXPECT_TRUE(runUntil([&] { return stopped_ > 0; }));
}

TEST_F(EnginePulseTest, OtherMessagesAreNoAnswer) {
    const auto timer =
        loop_.scheduleTimer(milliseconds(5), [this] { transport_.emit("", "Some.event", {}); });
    EXPECT_TRUE(runUntil([&] { return stopped_ > 0; }));
}

TEST_F(EnginePulseTest, TimeInWhichTheLoopDidNotRunDoesNotCount) {
    ASSERT_TRUE(runUntil([&] { return transport_.sent.size() == 1; }));
    std::this_thread::sleep_for(milliseconds(100));
    loop_.runUntilDate({});
    EXPECT_EQ(stopped_, 0);
}

TEST_F(EnginePulseTest, AConnectionThatHasEndedIsNotAsked) {
    client_.disconnect("the end");
    linger();
    EXPECT_EQ(stopped_, 0);
    EXPECT_TRUE(transport_.sent.empty());
}

TEST_F(EnginePulseTest, TheAnswerMayComeWhenItIsGone) {
    ASSERT_TRUE(runUntil([&] { return transport_.sent.size() == 1; }));
    pulse_.reset();
    transport_.reply(1, {});
    linger();
    EXPECT_EQ(transport_.sent.size(), 1u);
}

TEST_F(EnginePulseTest, ItsHandlerMayDestroyIt) {
    pulse_ = std::make_unique<EnginePulse>(
        client_, loop_,
        [this] {
            pulse_.reset();
            ++stopped_;
        },
        EnginePulse::Limits{.interval = milliseconds(1), .patience = 2});
    EXPECT_TRUE(runUntil([&] { return stopped_ > 0; }));
}

} // namespace
} // namespace qrv::engine
