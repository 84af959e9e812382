#include "Platform/Engine/Process/EngineSandbox.h"

#include "Platform/Engine/Process/EngineFiles.h"
#include "Platform/Foundation/FileDescriptor.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <random>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
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

bool becomeNobody() {
    return ::syscall(SYS_setgroups, 0, nullptr) == 0 &&
           ::syscall(SYS_setresgid, nobody, nobody, nobody) == 0 &&
           ::syscall(SYS_setresuid, nobody, nobody, nobody) == 0;
}

/// What no browser needs and an engine in foreign hands might use.
void refuseCalls(SystemCallFilter& filter) {
    // The connection to the tool is there already, and pairs of sockets can still be made.
    filter.refuse({SYS_socket}, EACCES);
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

/// A folder in the caller's temporary one, under a name that nobody guesses.
std::string newFolderName() {
    std::random_device random;
    return callersTemporaryFolder() + "/web2pdf-" + std::to_string(random()) + std::to_string(random());
}

const char* sentence(LaunchStep::Kind kind) {
    switch (kind) {
    case LaunchStep::Kind::namespaces:
        return "no namespaces of its own for the engine; it is kept from sockets and files alone";
    case LaunchStep::Kind::identityMap:
        return "the engine's identity can not be mapped into its user namespace";
    case LaunchStep::Kind::temporaryFolder:
        return "no file system of its own for the engine's temporary files; they are in a folder of the "
               "caller's";
    case LaunchStep::Kind::processFolder:
        return "no list of processes of its own for the engine; it sees the machine's";
    case LaunchStep::Kind::fileRules:
        return "no file rules for the engine; it can open what its user can";
    case LaunchStep::Kind::engineSandbox:
        return "the engine's own sandbox can not work here; it runs without, cut off from the network";
    case LaunchStep::Kind::identity:
        return "the engine can not be started without the rights of root";
    case LaunchStep::Kind::requiredSandbox:
        return "the engine's own sandbox can not work here, and WEB2PDF_REQUIRE_SANDBOX is set";
    case LaunchStep::Kind::systemCallFilter:
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

EngineSandbox::Surroundings::Surroundings(const std::string& program, std::vector<std::string> environment_,
                                          const std::string& temporaryFolder)
    : environment(std::move(environment_)), files(engineFiles(program, environment, temporaryFolder)) {
    environment.push_back("TMPDIR=" + temporaryFolder);
}

EngineSandbox::EngineSandbox(const std::string& program, const std::vector<std::string>& environment)
    : user_(::geteuid()), group_(::getegid()), folder_(newFolderName()),
      mounted_(program, environment, sharedMemoryFolder), unmounted_(program, environment, folder_) {
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
    reporter.report(LaunchStep::Kind::namespaces, errno);
    namespaces_ = 0;
    return ::_Fork();
}

bool EngineSandbox::enter(const LaunchReporter& reporter) {
    if ((namespaces_ & CLONE_NEWUSER) && !mapIdentity(user_, group_))
        reporter.report(LaunchStep::Kind::identityMap, errno);
    if (namespaces_ & CLONE_NEWNS) mount(reporter);
    if (!dropIdentity(reporter)) return false;
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) return false;
    if (!hasMounts_) ::mkdir(folder_.c_str(), 0700); // without it the engine has nowhere to write
    if (!(hasMounts_ ? mounted_ : unmounted_).files.enforce())
        reporter.report(LaunchStep::Kind::fileRules, errno);
    if (filter_.install()) return true;
    reporter.report(LaunchStep::Kind::systemCallFilter, errno);
    return false;
}

/// Makes sure that the child is not root, nor has root's rights after it has executed a program.
bool EngineSandbox::dropIdentity(const LaunchReporter& reporter) const {
    if (user_ != 0 || (namespaces_ & CLONE_NEWUSER) || becomeNobody()) return true;
    // If only root's identity is known here, a user namespace still has another one.
    const int error = errno;
    if (::unshare(CLONE_NEWUSER) != 0) {
        reporter.report(LaunchStep::Kind::identity, error);
        return false;
    }
    if (!mapIdentity(user_, group_)) reporter.report(LaunchStep::Kind::identityMap, errno);
    return true;
}

/// Shared memory that is bounded and gone with the engine, which has its temporary files there, too; and no
/// sight of other processes.
void EngineSandbox::mount(const LaunchReporter& reporter) {
    constexpr unsigned long flags = MS_NOSUID | MS_NODEV | MS_NOEXEC;
    const bool isPrivate = ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    hasMounts_ = isPrivate && ::mount("tmpfs", sharedMemoryFolder, "tmpfs", flags, "size=2g,mode=1777") == 0;
    if (!hasMounts_) reporter.report(LaunchStep::Kind::temporaryFolder, errno);
    if (!isPrivate || ::mount("proc", "/proc", "proc", flags, nullptr) != 0)
        reporter.report(LaunchStep::Kind::processFolder, errno);
}

void EngineSandbox::removeFolder() const {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

/// Tries, in a process of its own, the namespaces from which the engine builds its sandbox.
int engineSandboxError() {
    unsigned user = ::geteuid();
    unsigned group = ::getegid();
    pid_t probe = ::_Fork();
    if (probe == 0) {
        bool usable = ::unshare(CLONE_NEWUSER | CLONE_NEWPID | CLONE_NEWNET) == 0 && mapIdentity(user, group);
        ::_exit(usable ? 0 : errno);
    }
    if (probe < 0) return errno;
    int status = 0;
    while (::waitpid(probe, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : ECHILD;
}

} // namespace qrv::engine
