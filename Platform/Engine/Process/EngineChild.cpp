#include "Platform/Engine/Process/EngineChild.h"

#include "Platform/Confinement/ForkedChild.h"
#include "Platform/Engine/Process/EngineMemory.h"
#include "Platform/Engine/Process/LookUntil.h"
#include "Platform/Engine/Process/Sandbox/SandboxProbe.h"
#include "Platform/Foundation/SignalsBlocked.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace qrv::engine {

namespace {

constexpr int firstFreeDescriptor = 6; // 0 to 2: /dev/null; 3 and 4: DevTools; 5: reports of steps
constexpr int stepsDescriptor = 5;
constexpr auto reapingRest = std::chrono::microseconds(200);
constexpr int mostReapingLooks = 40'000; // about 10 s; measured: 0.03, and 2 on an overloaded machine

int checked(int result, const char* what) {
    if (result < 0) throw std::system_error(errno, std::generic_category(), what);
    return result;
}

std::vector<char*> pointers(const std::vector<std::string>& strings) {
    std::vector<char*> result;
    result.reserve(strings.size() + 1);
    for (const auto& string : strings) result.push_back(const_cast<char*>(string.c_str()));
    result.push_back(nullptr);
    return result;
}

/// Everything the child needs, prepared before the fork: the child must not allocate.
struct ChildPlan {
    std::vector<char*> arguments;
    std::vector<char*> argumentsWithoutSandbox;
    std::vector<char*> environment;
    std::vector<char*> environmentWithMounts;
    EngineSandbox& sandbox;
    bool checkEngineSandbox;
    bool requireEngineSandbox;
    std::size_t memoryLimit;
    int socket;
    int steps;
};

// From here to runChild: between fork and exec, async-signal-safe calls only.

bool arrangeDescriptors(const ChildPlan& plan) {
    // Moved out of the way first: they may occupy the target numbers.
    int socket = ::fcntl(plan.socket, F_DUPFD_CLOEXEC, firstFreeDescriptor);
    int steps = ::fcntl(plan.steps, F_DUPFD_CLOEXEC, firstFreeDescriptor);
    int nowhere = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    if (socket < 0 || steps < 0 || nowhere < 0) return false;
    for (int standard : {0, 1, 2})
        if (nowhere != standard && ::dup2(nowhere, standard) < 0) return false;
    return ::dup2(socket, 3) == 3 && ::dup2(socket, 4) == 4 &&
           ::dup3(steps, stepsDescriptor, O_CLOEXEC) == stepsDescriptor &&
           ::close_range(firstFreeDescriptor, ~0U, 0) == 0;
}

/// Whether our end of the connection is closed, which it is once this process has ended.
bool parentIsGone() {
    pollfd connection{.fd = 3, .events = 0, .revents = 0};
    return ::poll(&connection, 1, 0) != 0;
}

[[noreturn]] void runChild(const ChildPlan& plan) {
    constexpr int failed = 127;
    resetSignals();
    ::setsid();
    ::umask(077);
    if (::chdir("/") != 0) ::_exit(failed);
    if (!arrangeDescriptors(plan)) {
        LaunchReporter(plan.steps).report(LaunchStep::Kind::descriptors, errno);
        ::_exit(failed);
    }
    LaunchReporter reporter(stepsDescriptor);
    rlimit noCoreFile{0, 0};
    ::setrlimit(RLIMIT_CORE, &noCoreFile);
    limitOwnMemory(plan.memoryLimit);
    if (!plan.sandbox.enter(reporter)) ::_exit(failed);
    // Where something is refused, the engine's own sandbox mostly is, too.
    const bool checks = plan.checkEngineSandbox || !plan.sandbox.hasAll();
    const int sandboxError = checks ? engineSandboxError(reporter) : 0;
    if (sandboxError != 0) {
        using Kind = LaunchStep::Kind;
        reporter.report(plan.requireEngineSandbox ? Kind::requiredSandbox : Kind::engineSandbox,
                        sandboxError);
        if (plan.requireEngineSandbox) ::_exit(failed);
    }

    // Last, since every change of identity resets it.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL, 0, 0, 0);
    if (parentIsGone()) ::_exit(failed);

    const auto& arguments = sandboxError == 0 ? plan.arguments : plan.argumentsWithoutSandbox;
    const auto& environment = plan.sandbox.hasMounts() ? plan.environmentWithMounts : plan.environment;
    ::execve(arguments.front(), arguments.data(), environment.data());
    reporter.report(LaunchStep::Kind::execution, errno);
    ::_exit(failed);
}

} // namespace

EngineChild::EngineChild(const Command& command) : sandbox_(command.arguments.front(), command.environment) {
    int sockets[2];
    checked(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets), "connecting to the engine");
    socket_ = FileDescriptor(sockets[0]);
    FileDescriptor engineSocket(sockets[1]);
    int pipe[2];
    checked(::pipe2(pipe, O_CLOEXEC | O_NONBLOCK), "connecting to the engine");
    steps_ = FileDescriptor(pipe[0]);
    FileDescriptor engineSteps(pipe[1]);

    // Orphaned descendants of the engine become our children and can be reaped.
    ::prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0);
    ChildPlan plan{pointers(command.arguments),
                   pointers(command.argumentsWithoutSandbox),
                   pointers(sandbox_.environment(false)),
                   pointers(sandbox_.environment(true)),
                   sandbox_,
                   command.checkEngineSandbox,
                   command.requireEngineSandbox,
                   command.memoryLimit,
                   engineSocket.get(),
                   engineSteps.get()};
    const SignalsBlocked inherited; // so that none of our handlers runs in the child
    pid_ = checked(sandbox_.fork(LaunchReporter(engineSteps.get())), "starting the engine");
    if (pid_ == 0) runChild(plan);
}

EngineChild::~EngineChild() {
    terminate();
}

std::vector<LaunchStep> EngineChild::takeSteps() {
    std::vector<LaunchStep> steps;
    LaunchStep step;
    while (::read(steps_.get(), &step, sizeof step) == static_cast<ssize_t>(sizeof step))
        steps.push_back(step);
    return steps;
}

void EngineChild::terminate() {
    if (terminated_) return;
    // The engine leads its own process group, except in its first moments, when it has no children yet.
    if (!reaped_) ::kill(pid_, SIGKILL);
    ::kill(-pid_, SIGKILL);
    lookUntil([this] { return reap(); }, mostReapingLooks, reapingRest);
    sandbox_.removeFolder();
    terminated_ = true;
}

/// Whether nothing is left of the engine. The engine itself is reaped first and by its own id: otherwise its
/// status would be lost, and it may have died before it led its group.
bool EngineChild::reap() {
    if (!reaped_) reaped_ = ::waitpid(pid_, &status_, WNOHANG) == pid_;
    if (!reaped_) return false;
    pid_t descendant = 0;
    do descendant = ::waitpid(-pid_, nullptr, WNOHANG);
    while (descendant > 0);
    return descendant < 0;
}

std::string EngineChild::endText() const {
    if (!reaped_) return "does not end";
    return qrv::endText(status_);
}

} // namespace qrv::engine
