#include "Source/Tools/Deadline.h"

#include "Tests/Support/OwnMounts.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <thread>
#include <unistd.h>

namespace qrv {
namespace {

using std::chrono::steady_clock;

TEST(DeadlineText, IsAPositiveNumberOfSeconds) {
    EXPECT_EQ(Deadline::secondsFromText("20"), 20.0);
    EXPECT_EQ(Deadline::secondsFromText("0.25"), 0.25);
    EXPECT_EQ(Deadline::secondsFromText("1e300"), 1e300);
    for (const char* text : {"", "0", "-1", "soon", "3 s", " 3", "1,5", "nan", "inf", "1e999", "0x10"}) {
        EXPECT_FALSE(Deadline::secondsFromText(text)) << text;
    }
}

/// In child processes, which the deadline ends.
class DeadlineTest : public testing::Test {
protected:
    /// What the deadline's answer leaves, so that the test sees whether it was called.
    std::function<void()> answer() {
        return [this] { folder.write("answer", "too late"); };
    }

    bool hasAnswered() const { return folder.read("answer") == "too late"; }

    TemporaryFolder folder;
};

[[noreturn]] void hang() {
    for (;;) ::pause();
}

TEST_F(DeadlineTest, AnswersAndEndsTheProcessWhateverItDoes) {
    inChild([this] {
        Deadline::start(0.1, answer());
        for (volatile bool isBusy = true; isBusy;) {
        }
    });
    EXPECT_TRUE(hasAnswered());
}

TEST_F(DeadlineTest, LeavesTheAnswerToTheRunThatHasClaimedIt) {
    inChild([this] {
        Deadline::start(0.1, answer());
        Deadline::claimAnswer();
        Deadline::claimAnswer();
        hang();
    });
    EXPECT_FALSE(hasAnswered());
}

TEST_F(DeadlineTest, TheRunThatComesTooLateDoesNotAnswer) {
    inChild([this] {
        Deadline::start(0.1, [this] {
            folder.write("struck", "");
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            answer()();
        });
        while (!std::filesystem::exists(folder.path() / "struck")) std::this_thread::yield();
        Deadline::claimAnswer();
        folder.write("second answer", "");
        hang();
    });
    EXPECT_TRUE(hasAnswered());
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "second answer"));
}

TEST_F(DeadlineTest, DoesNotWaitForAnAnswerThatHangs) {
    const auto start = steady_clock::now();
    inChild([] {
        Deadline::start(0.1, [] { hang(); });
        hang();
    });
    EXPECT_LT(steady_clock::now() - start, std::chrono::seconds(10));
}

TEST_F(DeadlineTest, HasNoThreadWhileItIsSuspended) {
    inChild([this] {
        Deadline::start(0.1, answer());
        {
            const Deadline::Suspension alone;
            EXPECT_EQ(std::distance(std::filesystem::directory_iterator("/proc/self/task"), {}), 1);
            std::this_thread::sleep_for(std::chrono::milliseconds(500));
            EXPECT_FALSE(hasAnswered());
            if (HasFailure()) ::_exit(1);
        }
        hang();
    });
    EXPECT_TRUE(hasAnswered());
}

TEST_F(DeadlineTest, AFarOneDisturbsNobody) {
    inChild([this] {
        Deadline::start(1e300, answer());
        const Deadline::Suspension alone;
    });
    EXPECT_FALSE(hasAnswered());
}

TEST_F(DeadlineTest, WithoutOneNothingWaits) {
    Deadline::claimAnswer();
    const Deadline::Suspension alone;
    EXPECT_FALSE(hasAnswered());
}

} // namespace
} // namespace qrv
