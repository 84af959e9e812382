#include "Platform/Logging/StandardError.h"

#include "Platform/Foundation/CoarseClock.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <ctime>
#include <mutex>
#include <poll.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qrv {

namespace {

/// Keeps a SIGPIPE that this thread's own writes cause from reaching the process.
class BrokenPipeGuard {
public:
    BrokenPipeGuard() {
        sigemptyset(&pipe_);
        sigaddset(&pipe_, SIGPIPE);
        sigset_t pending;
        sigpending(&pending);
        wasPending_ = sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &pipe_, &before_);
    }

    ~BrokenPipeGuard() {
        if (!wasPending_) {
            const timespec now{};
            while (sigtimedwait(&pipe_, nullptr, &now) < 0 && errno == EINTR) {
            }
        }
        pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }

    BrokenPipeGuard(const BrokenPipeGuard&) = delete;
    BrokenPipeGuard& operator=(const BrokenPipeGuard&) = delete;

private:
    sigset_t pipe_{};
    sigset_t before_{};
    bool wasPending_ = false;
};

/// Whether the descriptor is writable now. After it was not within the time allowed, the following lines do
/// not wait for it any more.
bool isWritable(int descriptor, std::chrono::milliseconds patience) {
    static std::atomic<bool> isStalled = false;
    pollfd wanted{descriptor, POLLOUT, 0};
    const bool writable = poll(&wanted, 1, isStalled ? 0 : static_cast<int>(patience.count())) == 1 &&
                          (wanted.revents & POLLOUT) != 0 && (wanted.revents & (POLLERR | POLLNVAL)) == 0;
    isStalled = !writable;
    return writable;
}

enum class Kind { file, device, other };

Kind kindOf(int descriptor) {
    struct stat status {};

    if (fstat(descriptor, &status) != 0) return Kind::other;
    return S_ISREG(status.st_mode) ? Kind::file : S_ISCHR(status.st_mode) ? Kind::device : Kind::other;
}

/// Looks at standard error once a tick: it may be redirected at any time, but hardly between two lines of a
/// burst.
bool isKnownAsFileOrDevice(int descriptor) {
    static std::atomic<std::int64_t> tickOfLook = -1;
    if (descriptor != STDERR_FILENO) return false;
    const std::int64_t now = coarseMilliseconds();
    if (tickOfLook == now) return true;
    const bool isOne = kindOf(descriptor) != Kind::other;
    tickOfLook = isOne ? now : -1;
    return isOne;
}

/// Writes all of it with one call, or a few; nothing has to be waited for.
void writeDirectly(int descriptor, std::string_view line) {
    while (!line.empty()) {
        const ssize_t written = write(descriptor, line.data(), line.size());
        if (written < 0 && errno != EINTR) return;
        if (written > 0) line.remove_prefix(static_cast<std::size_t>(written));
    }
}

} // namespace

void writeLogLine(int descriptor, std::string_view line, std::chrono::milliseconds patience) {
    static std::mutex wholeLines;
    const std::lock_guard lock(wholeLines);
    if (isKnownAsFileOrDevice(descriptor) || kindOf(descriptor) == Kind::file) {
        writeDirectly(descriptor, line);
        return;
    }
    const BrokenPipeGuard guard;
    // A writable pipe or terminal takes PIPE_BUF bytes without blocking, but not necessarily more.
    while (!line.empty() && isWritable(descriptor, patience)) {
        const ssize_t written = write(descriptor, line.data(), std::min<std::size_t>(line.size(), PIPE_BUF));
        if (written < 0 && errno != EINTR) return;
        if (written > 0) line.remove_prefix(static_cast<std::size_t>(written));
    }
}

void writeStandardErrorLine(std::string_view line) {
    writeLogLine(STDERR_FILENO, line);
}

} // namespace qrv
