#include "Platform/Engine/Process/Sandbox/SandboxProbe.h"

#include "Platform/Foundation/FileDescriptor.h"
#include "Tests/Platform/Engine/EngineTestSupport.h"

#include <cerrno>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace qrv::engine {
namespace {

using Kind = LaunchStep::Kind;

/// Probes; zero when exactly this is found, with this step reported. In a child process.
int probeFinds(int expected, Kind missing = {}) {
    int ends[2];
    if (::pipe2(ends, O_NONBLOCK | O_CLOEXEC) != 0) return 1;
    const FileDescriptor steps(ends[0]);
    const FileDescriptor end(ends[1]);
    const int error = engineSandboxError(LaunchReporter(end.get()));
    LaunchStep step{};
    const bool reported = ::read(steps.get(), &step, sizeof step) == static_cast<ssize_t>(sizeof step);
    if (error != expected) return 2;
    if (reported != (expected != 0)) return 3;
    return reported && (step.kind != missing || step.error != error) ? 4 : 0;
}

TEST(SandboxProbe, FindsNothingWhereNothingIsRefused) {
    EXPECT_EQ(inChildProcess([] { return probeFinds(0); }), 0);
    EXPECT_EQ(inChildProcess([] {
                  becomeOrdinaryUser();
                  return probeFinds(0);
              }),
              0);
}

TEST(SandboxProbe, FindsThatNamespacesAreRefused) {
    for (const Refused refused : {Refused::userNamespaces, Refused::allNamespaces})
        EXPECT_EQ(inChildProcess([refused] {
                      refuseNamespaces(refused);
                      return probeFinds(EPERM, Kind::sandboxNamespaces);
                  }),
                  0);
}

TEST(SandboxProbe, FindsThatASecondUserNamespaceIsRefused) {
    EXPECT_EQ(inChildProcess([] {
                  refuseCall(SYS_unshare);
                  return probeFinds(EPERM, Kind::sandboxNamespaces);
              }),
              0);
}

TEST(SandboxProbe, FindsThatTheRootFolderIsRefused) {
    EXPECT_EQ(inChildProcess([] {
                  refuseCall(SYS_chroot);
                  return probeFinds(EPERM, Kind::sandboxRoot);
              }),
              0);
}

TEST(SandboxProbe, LeavesTheProcessAsItWas) {
    EXPECT_EQ(inChildProcess([] {
                  const auto user = ::geteuid();
                  if (probeFinds(0) != 0) return 1;
                  return ::geteuid() == user && ::access("/etc/passwd", R_OK) == 0 ? 0 : 2;
              }),
              0);
}

} // namespace
} // namespace qrv::engine
