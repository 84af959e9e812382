#include "Platform/Confinement/SystemCallFilter.h"

#include "Tests/Support/ErrorBehind.h"

#include <cerrno>
#include <functional>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <system_error>
#include <unistd.h>

namespace qrv {
namespace {

/// What `call` returns in a child behind the filter: 0, or the errno value.
int errorBehind(const SystemCallFilter& filter, const std::function<int()>& call) {
    return qrv::errorBehind([&] { return filter.install(); }, call);
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

TEST(SystemCallFilterTests, GoesByAnArgument) {
    auto filter = SystemCallFilter::allowingAll();
    filter.refuseUnless(SYS_socket, 0, AF_UNIX, EACCES);
    filter.refuseWhere(SYS_socketpair, 1, 0xf, SOCK_DGRAM, EPERM);
    filter.compile();
    int ends[2];
    EXPECT_EQ(errorBehind(filter, makeSocket), 0);
    EXPECT_EQ(errorBehind(filter, [] { return ::socket(AF_INET, SOCK_STREAM, 0); }), EACCES);
    EXPECT_EQ(errorBehind(filter, makePair), 0);
    EXPECT_EQ(errorBehind(filter, [&] { return ::socketpair(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0, ends); }),
              EPERM);
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
