#pragma once

// What a protection makes of a system call, tried in a child.

#include <cerrno>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>

namespace qrv {

/// What `call` returns in a child behind a protection, which `protect` sets up: 0, or the errno value; 255
/// when there was no protection.
inline int errorBehind(const std::function<bool()>& protect, const std::function<int()>& call) {
    constexpr int unprotected = 255;
    const pid_t child = ::fork();
    if (child == 0) {
        if (!protect()) ::_exit(unprotected);
        ::_exit(call() < 0 ? errno : 0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace qrv
