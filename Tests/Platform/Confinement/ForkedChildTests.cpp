#include "Platform/Confinement/ForkedChild.h"
#include "Platform/Foundation/SignalsBlocked.h"

#include <csignal>
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

TEST(ForkedChildTests, SaysHowAProcessEnded) {
    EXPECT_EQ(endOf([] { ::_exit(7); }), "exited with status 7");
    EXPECT_EQ(endOf([] { ::kill(::getpid(), SIGKILL); }), "was ended by signal 9 (Killed)");
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
