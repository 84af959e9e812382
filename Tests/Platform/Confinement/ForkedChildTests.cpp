#include "Platform/Confinement/ForkedChild.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qrv {
namespace {

/// How a child ends that does this.
template <class Work>
std::string endOf(Work work) {
    const pid_t child = ::fork();
    if (child == 0) {
        work();
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return endText(status);
}

bool isBlocked(int signal) {
    sigset_t blocked;
    ::pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
    return ::sigismember(&blocked, signal) == 1;
}

TEST(ForkedChildTests, SaysHowAProcessEnded) {
    EXPECT_EQ(endOf([] { ::_exit(7); }), "exited with status 7");
    EXPECT_EQ(endOf([] { ::kill(::getpid(), SIGKILL); }), "was ended by signal 9 (Killed)");
}

TEST(ForkedChildTests, SignalsAreBlockedForATime) {
    {
        const SignalsBlocked blocked;
        EXPECT_TRUE(isBlocked(SIGTERM));
    }
    EXPECT_FALSE(isBlocked(SIGTERM));
}

TEST(ForkedChildTests, ResettingLetsSignalsEndTheProcess) {
    EXPECT_EQ(endOf([] {
                  const SignalsBlocked blocked;
                  ::signal(SIGTERM, SIG_IGN);
                  resetSignals();
                  ::kill(::getpid(), SIGTERM);
              }),
              "was ended by signal 15 (Terminated)");
}

} // namespace
} // namespace qrv
