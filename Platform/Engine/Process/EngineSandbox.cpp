#include "Platform/Engine/Process/EngineSandbox.h"

#include "Platform/Foundation/FileDescriptor.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <fcntl.h>
#include <grp.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

// Everything that a child calls here is async-signal-safe: another thread of the parent may have held any
// lock, the allocator's included, during the fork. Identities are set by bare system calls, because the
// library's functions synchronise threads that a forked child does not have.

namespace qrv::engine {

namespace {

constexpr unsigned nobody = 65534;

bool writeFile(const char* path, const char* text) {
    const FileDescriptor file(::open(path, O_WRONLY | O_CLOEXEC));
    auto size = static_cast<ssize_t>(std::strlen(text));
    return file && ::write(file.get(), text, static_cast<std::size_t>(size)) == size;
}

char* appendNumber(char* at, unsigned number) {
    char digits[16];
    int count = 0;
    do digits[count++] = static_cast<char>('0' + number % 10);
    while ((number /= 10) > 0);
    while (count > 0) *at++ = digits[--count];
    return at;
}

/// Maps one identity: "inside outside 1".
bool writeMap(const char* path, unsigned inside, unsigned outside) {
    char line[48];
    char* end = appendNumber(line, inside);
    *end++ = ' ';
    end = appendNumber(end, outside);
    std::memcpy(end, " 1\n", 4);
    return writeFile(path, line);
}

/// Root is never mapped to root, which would restore its rights.
unsigned identityInside(unsigned outside) {
    return outside == 0 ? nobody : outside;
}

bool mapIdentity(unsigned user, unsigned group) {
    ::prctl(PR_SET_DUMPABLE, 1, 0, 0, 0); // a change of identity makes /proc/self inaccessible to the process
    return writeFile("/proc/self/setgroups", "deny") &&
           writeMap("/proc/self/uid_map", identityInside(user), user) &&
           writeMap("/proc/self/gid_map", identityInside(group), group);
}

/// Enters a network namespace in a new user namespace. Even if its identity cannot be mapped, the process is
/// barred from the network, but the engine's own sandbox will not work there.
bool enterUserNamespace(const LaunchReporter& reporter) {
    unsigned user = ::geteuid();
    unsigned group = ::getegid();
    if (::unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0) return false;
    if (!mapIdentity(user, group)) reporter.report(LaunchStep::Kind::identityMap, errno);
    return true;
}

bool becomeNobody() {
    return ::syscall(SYS_setgroups, 0, nullptr) == 0 &&
           ::syscall(SYS_setresgid, nobody, nobody, nobody) == 0 &&
           ::syscall(SYS_setresuid, nobody, nobody, nobody) == 0;
}

#if defined(__x86_64__)
constexpr unsigned nativeArchitecture = AUDIT_ARCH_X86_64;
constexpr unsigned foreignCallBit = 0x40000000; // calls of the 32-bit data model are numbered separately
#elif defined(__aarch64__)
constexpr unsigned nativeArchitecture = AUDIT_ARCH_AARCH64;
constexpr unsigned foreignCallBit = 0x80000000; // no call has it
#else
#error "The system call filter is not written for this architecture"
#endif

/// Allows only local sockets and those that query the kernel's network interfaces.
bool filterSockets() {
    constexpr auto argument =
        static_cast<unsigned>(offsetof(seccomp_data, args)); // its low half, in little-endian order
    sock_filter program[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, arch)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, nativeArchitecture, 1, 0),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSYS),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, foreignCallBit, 1, 0),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_io_uring_setup, 0, 1), // it can create sockets, too
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSYS),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_socket, 1, 0),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, argument),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, AF_UNIX, 2, 0),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, AF_NETLINK, 1, 0),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EACCES),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    sock_fprog filter{static_cast<unsigned short>(sizeof program / sizeof program[0]), program};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter, 0, 0) == 0;
}

const char* sentence(LaunchStep::Kind kind) {
    switch (kind) {
    case LaunchStep::Kind::networkNamespace:
        return "no network namespace of its own for the engine";
    case LaunchStep::Kind::userNamespace:
        return "no user namespace for the engine; a system call filter keeps it from the network instead";
    case LaunchStep::Kind::identityMap:
        return "the engine's identity can not be mapped into its user namespace";
    case LaunchStep::Kind::engineSandbox:
        return "the engine's own sandbox can not work here; it runs without, cut off from the network";
    case LaunchStep::Kind::identity:
        return "the engine can not be started without the rights of root";
    case LaunchStep::Kind::networkBarrier:
        return "the engine can not be cut off from the network";
    case LaunchStep::Kind::descriptors:
        return "the engine's descriptors can not be set up";
    case LaunchStep::Kind::execution:
        return "the engine can not be executed";
    }
    return "";
}

} // namespace

std::string LaunchStep::text() const {
    return std::string(sentence(kind)) + " (" + std::strerror(error) + ")";
}

void LaunchReporter::report(LaunchStep::Kind kind, int error) const {
    LaunchStep step{kind, error};
    while (::write(descriptor_, &step, sizeof step) < 0 && errno == EINTR) {
    }
}

bool enterSandbox(const LaunchReporter& reporter) {
    using Kind = LaunchStep::Kind;
    bool barred = false;
    if (::geteuid() == 0) {
        barred = ::unshare(CLONE_NEWNET) == 0;
        if (!barred) reporter.report(Kind::networkNamespace, errno);
        if (!becomeNobody()) {
            // If only root's identity is known here, a user namespace still has another one.
            int error = errno;
            barred = enterUserNamespace(reporter);
            if (!barred) {
                reporter.report(Kind::identity, error);
                return false;
            }
        }
    }
    if (!barred && !enterUserNamespace(reporter)) {
        reporter.report(Kind::userNamespace, errno);
        if (!filterSockets()) {
            reporter.report(Kind::networkBarrier, errno);
            return false;
        }
    }
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0;
}

/// Tries, in a process of its own, the namespaces from which the engine builds its sandbox.
bool canUseEngineSandbox(const LaunchReporter& reporter) {
    unsigned user = ::geteuid();
    unsigned group = ::getegid();
    pid_t probe = ::_Fork();
    if (probe == 0) {
        bool usable = ::unshare(CLONE_NEWUSER | CLONE_NEWPID | CLONE_NEWNET) == 0 && mapIdentity(user, group);
        ::_exit(usable ? 0 : errno);
    }
    int error = probe > 0 ? 0 : errno;
    if (probe > 0) {
        int status = 0;
        while (::waitpid(probe, &status, 0) < 0 && errno == EINTR) {
        }
        error = WIFEXITED(status) ? WEXITSTATUS(status) : ECHILD;
    }
    if (error == 0) return true;
    reporter.report(LaunchStep::Kind::engineSandbox, error);
    return false;
}

} // namespace qrv::engine
