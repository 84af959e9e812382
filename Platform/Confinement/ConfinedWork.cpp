#include "Platform/Confinement/ConfinedWork.h"

#include "Platform/Confinement/ForkedChild.h"
#include "Platform/Confinement/Sanitizer.h"
#include "Platform/Confinement/SystemCallFilter.h"
#include "Platform/Foundation/FileDescriptor.h"
#include "Platform/Foundation/FileReplacement.h"
#include "Platform/Foundation/SignalsBlocked.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <fstream>
#include <new>
#include <optional>
#include <poll.h>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace qrv {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t longestText = 64 << 10;

/// The exit statuses of the child; every other end is a failure that nobody foresaw.
enum Ending : int { madeData = 0, madeNothing = 100, threw = 101, lacksMemory = 102, isUnconfined = 103 };

int checked(int result, const char* what) {
    if (result < 0) throw std::system_error(errno, std::generic_category(), what);
    return result;
}

SystemCallFilter makeFilter() {
    auto filter = SystemCallFilter::refusingAll(EPERM);
    filter.allow({SYS_write, SYS_close, SYS_mmap, SYS_munmap, SYS_mremap, SYS_mprotect, SYS_madvise, SYS_brk,
                  SYS_futex, SYS_clock_gettime, SYS_gettimeofday, SYS_getrandom, SYS_rt_sigreturn, SYS_exit,
                  SYS_exit_group});
    filter.compile();
    return filter;
}

/// The bytes of address space that this process has in use.
std::uint64_t addressSpace() {
    std::uint64_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    if (pages == 0) throw std::runtime_error("the size of this process is unknown");
    return pages * static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
}

/// What the child needs, made before the fork.
struct ChildPlan {
    const ConfinedWork& work;
    const ConfinedLimits& limits;
    const SystemCallFilter& filter;
    std::uint64_t addressSpace;
    int result;
    int texts;
    pid_t parent;
};

// From here to runChild: in the child.

bool limit(decltype(RLIMIT_AS) resource, std::uint64_t most) {
    rlimit limits{};
    if (::getrlimit(resource, &limits) != 0) return false;
    limits.rlim_cur = std::min<rlim_t>(limits.rlim_cur, most);
    return ::setrlimit(resource, &limits) == 0;
}

bool keepOnly(int first, int second) {
    const auto [low, high] = std::minmax({static_cast<unsigned>(first), static_cast<unsigned>(second)});
    const auto close = [](unsigned from, unsigned to) {
        return from > to || ::close_range(from, to, 0) == 0;
    };
    return (low == 0 || close(0, low - 1)) && close(low + 1, high - 1) && close(high + 1, ~0U);
}

bool confine(const ChildPlan& plan) {
    // A parent that died before the first line is noticed by the second.
    if (::prctl(PR_SET_PDEATHSIG, SIGKILL, 0, 0, 0) != 0 || ::getppid() != plan.parent) return false;
    const auto seconds = static_cast<std::uint64_t>(plan.limits.processorTime.count());
    return keepOnly(plan.result, plan.texts) && limit(RLIMIT_CORE, 0) && limit(RLIMIT_CPU, seconds) &&
           limit(RLIMIT_FSIZE, plan.limits.result) &&
           (isSanitized || (limit(RLIMIT_AS, plan.addressSpace + plan.limits.memory) &&
                            limit(RLIMIT_NOFILE, 0) && plan.filter.install()));
}

[[noreturn]] void endWithText(const ChildPlan& plan, Ending ending, std::string_view text) {
    writeAll(plan.texts, text.substr(0, longestText));
    ::_exit(ending);
}

[[noreturn]] void runChild(const ChildPlan& plan) {
    resetSignals();
    if (!confine(plan)) endWithText(plan, isUnconfined, std::generic_category().message(errno));
    // Libraries take a failed allocation for damage of what they read.
    std::set_new_handler([] { ::_exit(lacksMemory); });
    try {
        std::string notes;
        const NSData data = plan.work(notes);
        if (const int error = writeAll(plan.result, data.bytes()))
            throw std::system_error(error, std::generic_category());
        endWithText(plan, data ? madeData : madeNothing, notes);
    } catch (const std::exception& exception) {
        endWithText(plan, threw, exception.what());
    } catch (...) {
        endWithText(plan, threw, "something that is no exception");
    }
}

// In the parent.

/// Kills and reaps the child, at the latest when it is destroyed.
class Child {
public:
    explicit Child(pid_t pid) : pid_(pid) {}

    ~Child() { end(); }

    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    /// Returns the status of waitpid(2).
    int end() {
        if (pid_ > 0) ::kill(pid_, SIGKILL);
        while (pid_ > 0 && ::waitpid(pid_, &status_, 0) < 0 && errno == EINTR) continue;
        pid_ = -1;
        return status_;
    }

private:
    pid_t pid_;
    int status_ = SIGKILL; // as good as any where the system keeps the real one
};

/// Waits until the child has closed its end, and returns what it wrote; nothing when the time is over.
std::optional<std::string> readTexts(int descriptor, Clock::time_point deadline) {
    std::string texts;
    for (;;) {
        const auto rest = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        if (rest.count() <= 0) return std::nullopt;
        pollfd readable{descriptor, POLLIN, 0};
        if (::poll(&readable, 1, static_cast<int>(rest.count())) <= 0) continue;
        char chunk[4096];
        const ssize_t count = ::read(descriptor, chunk, sizeof chunk);
        if (count == 0) return texts;
        if (count > 0 && texts.size() < longestText) texts.append(chunk, static_cast<std::size_t>(count));
    }
}

/// By way of a name that it has, so that a large one is mapped and not copied.
NSData readResult(int descriptor) {
    const NSString name = NSString::fromUTF8("/proc/self/fd/" + std::to_string(descriptor));
    NSData result = NSData::initWithContentsOfFile_options_error(name, 0, nullptr);
    if (!result) throw std::runtime_error("the result cannot be read");
    return result;
}

std::string mebibytes(std::uint64_t bytes) {
    return std::to_string(bytes >> 20) + " MiB";
}

std::string failureText(int status, const std::string& text, const ConfinedLimits& limits) {
    if (WIFSIGNALED(status) && WTERMSIG(status) == SIGXCPU)
        return "needed more than " + std::to_string(limits.processorTime.count()) + " s of processor time";
    if (WIFSIGNALED(status) && WTERMSIG(status) == SIGXFSZ)
        return "made more than " + mebibytes(limits.result);
    if (!WIFEXITED(status)) return endText(status);
    switch (WEXITSTATUS(status)) {
    case threw:
        return "threw: " + text;
    case lacksMemory:
        return "needed more than " + mebibytes(limits.memory) + " of memory";
    case isUnconfined:
        return "could not be confined: " + text;
    default:
        return endText(status);
    }
}

ConfinedResult waitFor(Child& child, int resultFile, int texts, const ConfinedLimits& limits) {
    const auto text = readTexts(texts, Clock::now() + limits.time);
    // Whoever has closed its end has set its exit status, unless it has been taken over.
    const int status = child.end();
    ConfinedResult result;
    if (!text) {
        result.failure = "took longer than " + std::to_string(limits.time.count()) + " s";
    } else if (WIFEXITED(status) && (WEXITSTATUS(status) == madeData || WEXITSTATUS(status) == madeNothing)) {
        result.notes = *text;
        if (WEXITSTATUS(status) == madeData) result.data = readResult(resultFile);
    } else {
        result.failure = failureText(status, *text, limits);
    }
    return result;
}

/// In the child this does not return.
pid_t startChild(const ChildPlan& plan) {
    const SignalsBlocked inherited; // so that none of our handlers runs in the child
    const pid_t child = checked(::fork(), "starting a process");
    if (child == 0) runChild(plan);
    return child;
}

ConfinedResult forkAndWait(const ConfinedWork& work, const ConfinedLimits& limits) {
    static const SystemCallFilter filter = makeFilter();
    const FileDescriptor result(checked(::memfd_create("result", MFD_CLOEXEC), "making room for the result"));
    int pipe[2];
    checked(::pipe2(pipe, O_CLOEXEC), "connecting to the child");
    const FileDescriptor texts(pipe[0]);
    FileDescriptor childTexts(pipe[1]);
    const ChildPlan plan{work, limits, filter, addressSpace(), result.get(), childTexts.get(), ::getpid()};
    Child child(startChild(plan));
    childTexts.reset();
    return waitFor(child, result.get(), texts.get(), limits);
}

} // namespace

ConfinedResult runConfined(const ConfinedWork& work, const ConfinedLimits& limits) {
    try {
        return forkAndWait(work, limits);
    } catch (const std::exception& exception) {
        ConfinedResult result;
        result.failure = "could not be done: " + std::string(exception.what());
        return result;
    }
}

} // namespace qrv
