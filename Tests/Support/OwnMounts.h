#pragma once

// File systems of a test's own: its function runs in a child process that may mount, whoever runs the tests.

#include <gtest/gtest.h>

#include <cstdio>
#include <fcntl.h>
#include <sched.h>
#include <string>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qrv {

/// Runs the function in a child process; its failures are the test's.
template <class Function>
void inChild(const Function& function) {
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
        function();
        std::fflush(nullptr);
        ::_exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0) << "in the child process";
}

inline void writeOnce(const char* path, const std::string& text) {
    const int file = ::open(path, O_WRONLY | O_CLOEXEC);
    ASSERT_EQ(::write(file, text.data(), text.size()), static_cast<ssize_t>(text.size())) << path;
    ::close(file);
}

/// The same, with mounts that nobody else sees.
template <class Function>
void inOwnMounts(const Function& function) {
    inChild([&] {
        const std::string user = std::to_string(::geteuid());
        const std::string group = std::to_string(::getegid());
        ASSERT_EQ(::unshare(CLONE_NEWUSER | CLONE_NEWNS), 0) << "no user and mount namespaces";
        writeOnce("/proc/self/setgroups", "deny");
        writeOnce("/proc/self/uid_map", "0 " + user + " 1");
        writeOnce("/proc/self/gid_map", "0 " + group + " 1");
        function();
    });
}

inline void mountMemory(const std::string& folder, const char* options) {
    ASSERT_EQ(::mount("memory", folder.c_str(), "tmpfs", 0, options), 0) << folder;
}

} // namespace qrv
