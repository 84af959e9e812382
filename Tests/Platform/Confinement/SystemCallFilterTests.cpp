#include "Platform/Confinement/SystemCallFilter.h"

#include <cerrno>
#include <functional>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace qrv {
namespace {

constexpr int notInstalled = 100;

/// What `call` returns in a child behind the filter: 0, or the errno value.
int errorBehind(const SystemCallFilter& filter, const std::function<int()>& call) {
    const pid_t child = ::fork();
    if (child == 0) {
        if (!filter.install()) ::_exit(notInstalled);
        ::_exit(call() < 0 ? errno : 0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

int makeSocket() {
    return ::socket(AF_UNIX, SOCK_STREAM, 0);
}

int makePair() {
    int pair[2];
    return ::socketpair(AF_UNIX, SOCK_STREAM, 0, pair);
}

TEST(SystemCallFilterTests, RefusesWhatItIsTold) {
    auto filter = SystemCallFilter::allowingAll();
    filter.refuse({SYS_socket}, EACCES);
    filter.compile();
    EXPECT_EQ(errorBehind(filter, makeSocket), EACCES);
    EXPECT_EQ(errorBehind(filter, makePair), 0);
}

TEST(SystemCallFilterTests, AllowsOnlyWhatItIsTold) {
    auto filter = SystemCallFilter::refusingAll(EPERM);
    filter.allow({SYS_exit_group, SYS_socketpair});
    filter.allow({SYS_sigaltstack}); // a sanitizer asks for it before a process ends
    filter.compile();
    EXPECT_EQ(errorBehind(filter, makeSocket), EPERM);
    EXPECT_EQ(errorBehind(filter, makePair), 0);
}

TEST(SystemCallFilterTests, IsInheritedAndStays) {
    auto outer = SystemCallFilter::allowingAll();
    outer.refuse({SYS_socket}, EACCES);
    outer.compile();
    auto inner = SystemCallFilter::allowingAll();
    inner.compile();
    const auto behindBoth = [&] {
        errno = errorBehind(inner, makeSocket);
        return errno == 0 ? 0 : -1;
    };
    EXPECT_EQ(errorBehind(outer, behindBoth), EACCES);
}

#if defined(__x86_64__)
TEST(SystemCallFilterTests, RefusesCallsOfTheOtherDataModel) {
    constexpr int otherModel = 0x40000000;
    auto filter = SystemCallFilter::allowingAll();
    filter.refuse({SYS_socket}, EACCES);
    filter.compile();
    EXPECT_EQ(
        errorBehind(
            filter,
            [] { return static_cast<int>(::syscall(SYS_socket | otherModel, AF_UNIX, SOCK_STREAM, 0)); }),
        ENOSYS);
}
#endif

TEST(SystemCallFilterTests, ThrowsForNumbersThatAreNoCall) {
    auto filter = SystemCallFilter::allowingAll();
    EXPECT_THROW(filter.refuse({-1}, EACCES), std::system_error);
}

} // namespace
} // namespace qrv
