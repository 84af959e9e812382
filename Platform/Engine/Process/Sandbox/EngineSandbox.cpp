#include "Platform/Engine/Process/Sandbox/EngineSandbox.h"

#include "Platform/Engine/Process/Sandbox/EngineFiles.h"
#include "Platform/Engine/Process/Sandbox/EngineKind.h"
#include "Platform/Engine/Process/Sandbox/IdentityMap.h"

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <random>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <system_error>
#include <unistd.h>
#include <utility>

// Everything that a child calls here is async-signal-safe: another thread of the parent may have held any
// lock, the allocator's included, during the fork. Identities are set by bare system calls, because the
// library's functions synchronise threads that a forked child does not have.

namespace qrv::engine {

namespace {

constexpr unsigned nobody = 65534;
constexpr const char* sharedMemoryFolder = "/dev/shm";
constexpr unsigned ownNamespaces = CLONE_NEWPID | CLONE_NEWNS | CLONE_NEWNET | CLONE_NEWIPC;

bool becomeNobody() {
    return ::syscall(SYS_setgroups, 0, nullptr) == 0 &&
           ::syscall(SYS_setresgid, nobody, nobody, nobody) == 0 &&
           ::syscall(SYS_setresuid, nobody, nobody, nobody) == 0;
}

/// What no browser needs and an engine in foreign hands might use.
void refuseCalls(SystemCallFilter& filter) {
    // It can make sockets, too, and open files.
    filter.refuse({SYS_io_uring_setup, SYS_io_uring_enter, SYS_io_uring_register}, ENOSYS);
    filter.refuse({SYS_mount, SYS_umount2, SYS_pivot_root, SYS_move_mount, SYS_open_tree, SYS_fsopen,
                   SYS_fsconfig, SYS_fsmount, SYS_fspick, SYS_mount_setattr, SYS_setns,
                   SYS_open_by_handle_at},
                  EPERM);
    filter.refuse({SYS_ptrace, SYS_process_vm_readv, SYS_process_vm_writev, SYS_pidfd_getfd, SYS_kcmp},
                  EPERM);
    filter.refuse({SYS_add_key, SYS_request_key, SYS_keyctl}, EPERM);
    filter.refuse({SYS_bpf, SYS_perf_event_open, SYS_userfaultfd, SYS_init_module, SYS_finit_module,
                   SYS_delete_module, SYS_kexec_load, SYS_swapon, SYS_swapoff, SYS_acct, SYS_quotactl,
                   SYS_syslog, SYS_fanotify_init},
                  EPERM);
}

/// The connection to the tool is there already, and pairs of sockets can still be made, but for those by
/// which messages could be sent to others.
void refuseSockets(SystemCallFilter& filter, EngineKind kind) {
    constexpr unsigned types = 0xf; // above them are flags
    for (const int type : {SOCK_DGRAM, SOCK_RAW})
        filter.refuseWhere(SYS_socketpair, 1, types, static_cast<unsigned>(type), EACCES);
    if (kind == EngineKind::headlessShell) return filter.refuse({SYS_socket}, EACCES);
    // A browser does not start without a socket on which others of its profile could speak to it. With
    // nothing but that it can reach nobody.
    filter.refuseUnless(SYS_socket, 0, AF_UNIX, EACCES);
    filter.refuseUnless(SYS_socket, 1, SOCK_STREAM, EACCES);
    filter.refuse({SYS_connect}, EACCES);
}

/// A folder in the caller's temporary one, under a name that nobody guesses.
std::string newFolderName() {
    std::random_device random;
    return callersTemporaryFolder() + "/web2pdf-" + std::to_string(random()) + std::to_string(random());
}

} // namespace

EngineSandbox::Surroundings::Surroundings(const std::string& program, std::vector<std::string> environment_,
                                          const std::string& temporaryFolder)
    : environment(std::move(environment_)), files(engineFiles(program, environment, temporaryFolder)) {
    environment.push_back("TMPDIR=" + temporaryFolder);
    environment.push_back("XDG_CONFIG_HOME=" + temporaryFolder); // where a full browser has its profile
}

EngineSandbox::EngineSandbox(const std::string& program, const std::vector<std::string>& environment)
    : user_(::geteuid()), group_(::getegid()), folder_(newFolderName()),
      mounted_(program, environment, sharedMemoryFolder), unmounted_(program, environment, folder_) {
    refuseSockets(filter_, engineKind(program));
    refuseCalls(filter_);
    filter_.compile();
}

pid_t EngineSandbox::fork(const LaunchReporter& reporter) {
    const unsigned user = user_ == 0 ? 0 : CLONE_NEWUSER;
    for (unsigned namespaces : {ownNamespaces | user, ownNamespaces | CLONE_NEWUSER}) {
        namespaces_ = namespaces;
        // A bare call: the library's has no such flags, and handlers for forks, such as that of the thread
        // sanitizer, may start threads, which bar the child from user namespaces.
        const auto child = static_cast<pid_t>(
            ::syscall(SYS_clone, namespaces | SIGCHLD, nullptr, nullptr, nullptr, nullptr));
        if (child >= 0) return child;
    }
    lacks(LaunchStep::Kind::namespaces, reporter);
    namespaces_ = 0;
    return ::_Fork();
}

bool EngineSandbox::enter(const LaunchReporter& reporter) {
    if ((namespaces_ & CLONE_NEWUSER) && !mapIdentity(user_, group_))
        lacks(LaunchStep::Kind::identityMap, reporter);
    if (namespaces_ & CLONE_NEWNS) mount(reporter);
    if (!dropIdentity(reporter)) return false;
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) return false;
    if (!hasMounts_) ::mkdir(folder_.c_str(), 0700); // without it the engine has nowhere to write
    if (!(hasMounts_ ? mounted_ : unmounted_).files.enforce()) lacks(LaunchStep::Kind::fileRules, reporter);
    if (filter_.install()) return true;
    reporter.report(LaunchStep::Kind::systemCallFilter, errno);
    return false;
}

/// Makes sure that the child is not root, nor has root's rights after it has executed a program.
bool EngineSandbox::dropIdentity(const LaunchReporter& reporter) {
    if (user_ != 0 || (namespaces_ & CLONE_NEWUSER) || becomeNobody()) return true;
    // If only root's identity is known here, a user namespace still has another one.
    const int error = errno;
    if (::unshare(CLONE_NEWUSER) != 0) {
        reporter.report(LaunchStep::Kind::identity, error);
        return false;
    }
    if (!mapIdentity(user_, group_)) lacks(LaunchStep::Kind::identityMap, reporter);
    return true;
}

/// Shared memory that is bounded and gone with the engine, which has its temporary files there, too; and no
/// sight of other processes.
void EngineSandbox::mount(const LaunchReporter& reporter) {
    constexpr unsigned long flags = MS_NOSUID | MS_NODEV | MS_NOEXEC;
    const bool isPrivate = ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    hasMounts_ = isPrivate && ::mount("tmpfs", sharedMemoryFolder, "tmpfs", flags, "size=2g,mode=1777") == 0;
    if (!hasMounts_) lacks(LaunchStep::Kind::temporaryFolder, reporter);
    if (!isPrivate || ::mount("proc", "/proc", "proc", flags, nullptr) != 0)
        lacks(LaunchStep::Kind::processFolder, reporter);
}

void EngineSandbox::lacks(LaunchStep::Kind kind, const LaunchReporter& reporter) {
    reporter.report(kind, errno);
    hasAll_ = false;
}

void EngineSandbox::removeFolder() const {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

} // namespace qrv::engine
