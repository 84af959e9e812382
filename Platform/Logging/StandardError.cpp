#include "Platform/Logging/StandardError.h"

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

bool isFile(int descriptor) {
    struct stat status {};

    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

} // namespace

void writeLogLine(int descriptor, std::string_view line, std::chrono::milliseconds patience) {
    static std::mutex wholeLines;
    const std::lock_guard lock(wholeLines);
    const BrokenPipeGuard guard;
    // A writable pipe or terminal takes PIPE_BUF bytes without blocking, but not necessarily more.
    const std::size_t most = isFile(descriptor) ? line.size() : PIPE_BUF;
    while (!line.empty() && isWritable(descriptor, patience)) {
        const ssize_t written = write(descriptor, line.data(), std::min(line.size(), most));
        if (written < 0 && errno != EINTR) return;
        if (written > 0) line.remove_prefix(static_cast<std::size_t>(written));
    }
}

void writeStandardErrorLine(std::string_view line) {
    writeLogLine(STDERR_FILENO, line);
}

} // namespace qrv
