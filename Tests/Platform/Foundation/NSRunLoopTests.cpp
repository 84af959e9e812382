#include "Platform/Foundation/NSRunLoop.h"

#include "Platform/Foundation/NSDate.h"

#include <cerrno>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace qrv {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

class NSRunLoopTest : public ::testing::Test {
protected:
    NSRunLoopTest() {
        EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, ends_), 0);
    }

    ~NSRunLoopTest() override {
        for (int end : ends_) ::close(end);
    }

    void write(const std::string& text) const {
        ASSERT_EQ(::write(ends_[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

    std::string read() const {
        char buffer[256];
        ssize_t count = ::read(ends_[0], buffer, sizeof buffer);
        return count > 0 ? std::string(buffer, static_cast<std::size_t>(count)) : std::string();
    }

    bool runUntil(const std::function<bool()>& predicate) {
        return loop_.runUntil(predicate, Clock::now() + 20s);
    }

    void soon(NSRunLoop::Handler handler) { posted_.push_back(loop_.performSoon(std::move(handler))); }

    NSRunLoop loop_;
    std::vector<NSRunLoop::Posted> posted_;
    int ends_[2];
};

TEST_F(NSRunLoopTest, TheCurrentLoopIsOnePerThread) {
    NSRunLoop* here = &NSRunLoop::currentRunLoop();
    NSRunLoop* there = nullptr;
    std::thread([&there] { there = &NSRunLoop::currentRunLoop(); }).join();
    EXPECT_EQ(&NSRunLoop::currentRunLoop(), here);
    EXPECT_NE(there, here);
}

TEST_F(NSRunLoopTest, ASubstituteStandsInOnItsThreadOnly) {
    struct Scripted : NSRunLoop {
        void runUntilDate(const NSDate&) override { ++runs; }

        int runs = 0;
    } scripted;

    NSRunLoop::setCurrentRunLoopForTesting(&scripted);
    NSRunLoop* there = nullptr;
    std::thread([&there] { there = &NSRunLoop::currentRunLoop(); }).join();
    NSRunLoop::currentRunLoop().runUntilDate(NSDate::dateWithTimeIntervalSinceNow(3600));
    NSRunLoop::setCurrentRunLoopForTesting(nullptr);
    EXPECT_EQ(scripted.runs, 1);
    EXPECT_NE(there, &scripted);
    EXPECT_NE(&NSRunLoop::currentRunLoop(), &scripted);
}

TEST_F(NSRunLoopTest, RunUntilDateReturnsAtTheDateAndNotBefore) {
    auto start = Clock::now();
    loop_.runUntilDate(NSDate::dateWithTimeIntervalSinceNow(0.05));
    EXPECT_GE(Clock::now() - start, 49ms);
}

TEST_F(NSRunLoopTest, RunUntilDateProcessesWhatArrivesBeforeTheDate) {
    std::string order;
    auto timer = loop_.scheduleTimer(10ms, [&] {
        order += "t";
        soon([&] { order += "p"; });
    });
    loop_.runUntilDate(NSDate::dateWithTimeIntervalSinceNow(0.3));
    EXPECT_EQ(order, "tp");
}

TEST_F(NSRunLoopTest, ADateInThePastRunsWhatIsReadyAndDoesNotBlock) {
    std::string order;
    soon([&] { order += "p"; });
    write("x");
    auto readable = loop_.watchReadable(ends_[0], [&] { order += read(); });
    auto due = loop_.scheduleTimer(0ns, [&] { order += "t"; });
    auto later = loop_.scheduleTimer(1h, [&] { order += "never"; });
    loop_.runUntilDate(NSDate::dateWithTimeIntervalSinceNow(-5));
    EXPECT_EQ(order.size(), 3u) << order;
    EXPECT_NE(order.find('p'), std::string::npos);
    EXPECT_NE(order.find('t'), std::string::npos);
    EXPECT_NE(order.find('x'), std::string::npos);
}

TEST_F(NSRunLoopTest, ADateInThePastEndsThoughHandlersPostThemselvesAgain) {
    int runs = 0;
    std::function<void()> again = [&] {
        ++runs;
        soon(again);
    };
    soon(again);
    loop_.runUntilDate(NSDate());
    EXPECT_GE(runs, 1);
    EXPECT_LE(runs, 3);
}

TEST_F(NSRunLoopTest, ANilDateIsInThePast) {
    bool ran = false;
    soon([&] { ran = true; });
    loop_.runUntilDate(NSDate());
    EXPECT_TRUE(ran);
}

TEST_F(NSRunLoopTest, RunUntilAsksBeforeItRuns) {
    bool ran = false;
    soon([&] { ran = true; });
    EXPECT_TRUE(loop_.runUntil([] { return true; }, Clock::now() + 20s));
    EXPECT_FALSE(ran);
}

TEST_F(NSRunLoopTest, RunUntilStopsRightAfterTheEventThatMakesThePredicateHold) {
    int count = 0;
    for (int i = 0; i < 5; ++i) soon([&] { ++count; });
    EXPECT_TRUE(runUntil([&] { return count == 2; }));
    EXPECT_EQ(count, 2);
}

TEST_F(NSRunLoopTest, RunUntilGivesUpAtTheDeadline) {
    auto start = Clock::now();
    EXPECT_FALSE(loop_.runUntil([] { return false; }, start + 50ms));
    EXPECT_GE(Clock::now() - start, 50ms);
}

TEST_F(NSRunLoopTest, RunUntilWithADeadlineInThePastRunsWhatIsReady) {
    bool ran = false;
    soon([&] { ran = true; });
    EXPECT_TRUE(loop_.runUntil([&] { return ran; }, Clock::now() - 1s));
}

TEST_F(NSRunLoopTest, AWatchFiresAsLongAsThereIsSomethingToRead) {
    std::string got;
    auto watch = loop_.watchReadable(ends_[0], [&] {
        char one;
        if (::read(ends_[0], &one, 1) == 1) got += one;
    });
    write("abc");
    EXPECT_TRUE(runUntil([&] { return got == "abc"; }));
    write("d");
    EXPECT_TRUE(runUntil([&] { return got == "abcd"; }));
}

TEST_F(NSRunLoopTest, AWatchFiresAtTheEndOfTheFile) {
    bool ended = false;
    auto watch = loop_.watchReadable(ends_[0], [&] {
        char one;
        ended = ::read(ends_[0], &one, 1) == 0;
    });
    ::shutdown(ends_[1], SHUT_RDWR);
    EXPECT_TRUE(runUntil([&] { return ended; }));
}

TEST_F(NSRunLoopTest, OneDescriptorIsWatchedForReadingAndWritingAtOnce) {
    bool readable = false;
    bool writable = false;
    write("x");
    auto reading = loop_.watchReadable(ends_[0], [&] { readable = true; });
    auto writing = loop_.watchWritable(ends_[0], [&] { writable = true; });
    EXPECT_TRUE(runUntil([&] { return readable && writable; }));
}

TEST_F(NSRunLoopTest, AWritableWatchWaitsWhileTheBufferIsFull) {
    std::string block(65536, 'x');
    while (::write(ends_[1], block.data(), block.size()) > 0) {
    }
    ASSERT_EQ(errno, EAGAIN);
    bool writable = false;
    auto watch = loop_.watchWritable(ends_[1], [&] { writable = true; });
    loop_.runUntilDate(NSDate());
    EXPECT_FALSE(writable);
    while (::read(ends_[0], block.data(), block.size()) > 0) {
    }
    EXPECT_TRUE(runUntil([&] { return writable; }));
}

TEST_F(NSRunLoopTest, ACancelledWatchIsSilentThoughItsEventIsAlreadyQueued) {
    int fired = 0;
    NSRunLoop::Watch watch;
    soon([&] { watch.cancel(); });
    watch = loop_.watchReadable(ends_[0], [&] { ++fired; });
    write("x");
    loop_.runUntilDate(NSDate());
    loop_.runUntilDate(NSDate());
    EXPECT_EQ(fired, 0);
}

TEST_F(NSRunLoopTest, AWatchMayCancelItselfInItsHandler) {
    auto alive = std::make_shared<int>(0);
    NSRunLoop::Watch watch;
    watch = loop_.watchReadable(ends_[0], [&watch, alive] {
        watch.cancel();
        ++*alive; // the handler outlives its cancelling
    });
    write("x");
    loop_.runUntilDate(NSDate());
    loop_.runUntilDate(NSDate());
    EXPECT_EQ(*alive, 1);
    EXPECT_EQ(alive.use_count(), 1);
}

TEST_F(NSRunLoopTest, WatchingWhatIsNotOpenThrows) {
    EXPECT_THROW(const auto watch = loop_.watchReadable(-1, [] {}), std::system_error);
}

TEST_F(NSRunLoopTest, TimersFireOnceInTheOrderOfTheirTimes) {
    std::string order;
    auto third = loop_.scheduleTimer(40ms, [&] { order += "3"; });
    auto first = loop_.scheduleTimer(1ms, [&] { order += "1"; });
    auto second = loop_.scheduleTimer(20ms, [&] { order += "2"; });
    EXPECT_TRUE(runUntil([&] { return order.size() == 3; }));
    loop_.runUntilDate(NSDate::dateWithTimeIntervalSinceNow(0.05));
    EXPECT_EQ(order, "123");
}

TEST_F(NSRunLoopTest, ADestroyedTimerIsSilent) {
    bool fired = false;
    {
        auto timer = loop_.scheduleTimer(0ns, [&] { fired = true; });
    }
    loop_.runUntilDate(NSDate());
    EXPECT_FALSE(fired);
}

TEST_F(NSRunLoopTest, PerformSoonKeepsTheOrderAndNeverRunsAtOnce) {
    std::string order;
    soon([&] {
        soon([&] { order += "c"; });
        order += "a";
    });
    soon([&] { order += "b"; });
    EXPECT_EQ(order, "");
    EXPECT_TRUE(runUntil([&] { return order.size() == 3; }));
    EXPECT_EQ(order, "abc");
}

TEST_F(NSRunLoopTest, APostedFunctionRunsOnce) {
    int runs = 0;
    const auto posted = loop_.performSoon([&] { ++runs; });
    loop_.runUntilDate(NSDate());
    loop_.runUntilDate(NSDate());
    EXPECT_EQ(runs, 1);
}

TEST_F(NSRunLoopTest, APostedFunctionIsSilentAfterItsRegistration) {
    std::string order;
    {
        const auto destroyed = loop_.performSoon([&] { order += "d"; });
    }
    auto cancelled = loop_.performSoon([&] { order += "c"; });
    auto replaced = loop_.performSoon([&] { order += "r"; });
    auto moved = loop_.performSoon([&] { order += "m"; });
    cancelled.cancel();
    replaced = loop_.performSoon([&] { order += "R"; });
    const auto there = std::move(moved);
    loop_.runUntilDate(NSDate());
    EXPECT_EQ(order, "mR");
}

TEST_F(NSRunLoopTest, AnEarlierFunctionMayCancelALaterOne) {
    bool ran = false;
    NSRunLoop::Posted later;
    const auto earlier = loop_.performSoon([&] { later.cancel(); });
    later = loop_.performSoon([&] { ran = true; });
    loop_.runUntilDate(NSDate());
    loop_.runUntilDate(NSDate());
    EXPECT_FALSE(ran);
}

TEST_F(NSRunLoopTest, AnOwnerMayBeDestroyedBeforeItsFunctionsRunAndByThem) {
    struct Owner {
        explicit Owner(NSRunLoop& loop) : loop_(loop) {}

        void post(const NSRunLoop::Handler& handler) { posted_.push_back(loop_.performSoon(handler)); }

        NSRunLoop& loop_;
        std::vector<NSRunLoop::Posted> posted_;
    };

    std::string order;
    auto first = std::make_unique<Owner>(loop_);
    auto second = std::make_unique<Owner>(loop_);
    first->post([&, kept = std::string("kept alive")] {
        order += "1";
        second.reset();
        first.reset();
        order += kept;
    });
    first->post([&] { order += "2"; });
    second->post([&] { order += "3"; });
    loop_.runUntilDate(NSDate());
    loop_.runUntilDate(NSDate());
    EXPECT_EQ(order, "1kept alive");
}

TEST_F(NSRunLoopTest, AFunctionMayPutAnotherInItsPlace) {
    std::string order;
    NSRunLoop::Posted posted;
    const auto alive = std::make_shared<int>(0);
    posted = loop_.performSoon([&, alive] {
        posted = loop_.performSoon([&] { order += "b"; });
        order += alive ? "a" : "gone";
    });
    EXPECT_TRUE(runUntil([&] { return order.size() == 2; }));
    EXPECT_EQ(order, "ab");
    EXPECT_EQ(alive.use_count(), 1);
}

TEST_F(NSRunLoopTest, AFunctionThatHasRunHoldsNothing) {
    const auto held = std::make_shared<int>(0);
    const auto posted = loop_.performSoon([held] {});
    EXPECT_EQ(held.use_count(), 2);
    loop_.runUntilDate(NSDate());
    EXPECT_EQ(held.use_count(), 1);
}

TEST_F(NSRunLoopTest, AHandlerMayRunTheLoopAgain) {
    std::string order;
    auto watch = loop_.watchReadable(ends_[0], [&] { order += read(); });
    soon([&] {
        order += "(";
        soon([&] { order += "p"; });
        auto timer = loop_.scheduleTimer(1ms, [&] { write("r"); });
        EXPECT_TRUE(runUntil([&] { return order == "(pr"; }));
        order += ")";
    });
    EXPECT_TRUE(runUntil([&] { return order.ends_with(")"); }));
    EXPECT_EQ(order, "(pr)");
}

TEST_F(NSRunLoopTest, AWatchFiresInALoopRunByItsOwnHandler) {
    int depth = 0;
    int deepest = 0;
    std::string got;
    auto watch = loop_.watchReadable(ends_[0], [&] {
        std::string text = read();
        if (text.empty()) return;
        got += text;
        deepest = std::max(deepest, ++depth);
        if (got == "a") {
            write("b");
            EXPECT_TRUE(runUntil([&] { return got == "ab"; }));
        }
        --depth;
    });
    write("a");
    EXPECT_TRUE(runUntil([&] { return got == "ab" && depth == 0; }));
    EXPECT_EQ(deepest, 2);
}

TEST_F(NSRunLoopTest, AnExceptionOfAHandlerEndsTheRunAndLeavesTheLoopUsable) {
    bool ran = false;
    soon([] { throw std::runtime_error("from the handler"); });
    soon([&] { ran = true; });
    EXPECT_THROW(loop_.runUntilDate(NSDate::dateWithTimeIntervalSinceNow(5)), std::runtime_error);
    EXPECT_FALSE(ran);
    EXPECT_TRUE(runUntil([&] { return ran; }));
}

TEST_F(NSRunLoopTest, AWatchWhoseHandlerThrewStillWatches) {
    int calls = 0;
    auto watch = loop_.watchReadable(ends_[0], [&] {
        if (read().empty()) return;
        if (++calls == 1) throw std::runtime_error("once");
    });
    write("x");
    EXPECT_THROW(runUntil([] { return false; }), std::runtime_error);
    write("y");
    EXPECT_TRUE(runUntil([&] { return calls == 2; }));
}

TEST_F(NSRunLoopTest, ARegistrationMayOutliveItsLoop) {
    NSRunLoop::Timer timer;
    NSRunLoop::Watch watch;
    NSRunLoop::Posted posted;
    bool fired = false;
    {
        NSRunLoop shortLived;
        timer = shortLived.scheduleTimer(0ns, [&] { fired = true; });
        posted = shortLived.performSoon([&] { fired = true; });
        watch = shortLived.watchReadable(ends_[0], [&] { fired = true; });
    }
    timer.cancel();
    watch.cancel();
    posted.cancel();
    EXPECT_FALSE(fired);
}

} // namespace
} // namespace qrv
