#include "Platform/Engine/Process/Sandbox/SandboxProbe.h"

#include "Platform/Engine/Process/Sandbox/IdentityMap.h"

#include <cerrno>
#include <csignal>
#include <sched.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qrv::engine {

namespace {

int reportedError(LaunchStep::Kind missing, const LaunchReporter& reporter) {
    const int error = errno;
    reporter.report(missing, error);
    return error;
}

struct Identity {
    unsigned user = ::geteuid();
    unsigned group = ::getegid();

    bool map() const { return mapIdentity(user, group); }
};

/// In new namespaces already. The calls are the engine's: its own process gives up what it is there for
/// another user namespace, in which it may change its root folder.
int buildSandbox(const Identity& outside, const LaunchReporter& reporter) {
    using Kind = LaunchStep::Kind;
    if (!outside.map()) return reportedError(Kind::identityMap, reporter);
    const Identity inside;
    if (::unshare(CLONE_NEWUSER) != 0) return reportedError(Kind::sandboxNamespaces, reporter);
    if (!inside.map()) return reportedError(Kind::identityMap, reporter);
    if (::chroot("/proc/self/fdinfo/") != 0) return reportedError(Kind::sandboxRoot, reporter);
    return 0;
}

} // namespace

int engineSandboxError(const LaunchReporter& reporter) {
    const Identity outside;
    constexpr unsigned long namespaces = CLONE_NEWUSER | CLONE_NEWPID | CLONE_NEWNET;
    const auto probe =
        static_cast<pid_t>(::syscall(SYS_clone, namespaces | SIGCHLD, nullptr, nullptr, nullptr, nullptr));
    if (probe == 0) ::_exit(buildSandbox(outside, reporter));
    if (probe < 0) return reportedError(LaunchStep::Kind::sandboxNamespaces, reporter);
    int status = 0;
    while (::waitpid(probe, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : ECHILD;
}

} // namespace qrv::engine
