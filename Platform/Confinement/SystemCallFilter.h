#pragma once

// A filter of system calls for a child process, compiled before the fork and installed after it.
//
//     SystemCallFilter filter = SystemCallFilter::allowingAll();
//     filter.refuse({SYS_socket}, EACCES);
//     filter.compile();
//     ... fork; in the child:
//     if (!filter.install()) _exit(127);
//
// A filter is inherited by all descendants and can not be taken off. Calls of another architecture or data
// model than the program's own fail with ENOSYS.

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <vector>

struct sock_filter;

namespace qrv {

class SystemCallFilter {
public:
    /// Lets every call pass that is not refused.
    static SystemCallFilter allowingAll();
    /// Has every call fail with this errno value that is not allowed.
    static SystemCallFilter refusingAll(int error);
    ~SystemCallFilter();
    SystemCallFilter(SystemCallFilter&&) noexcept;
    SystemCallFilter& operator=(SystemCallFilter&&) noexcept;

    /// Has the calls fail with this errno value. Numbers are those of <sys/syscall.h>. Throws
    /// std::system_error.
    void refuse(std::initializer_list<int> calls, int error);
    /// Has the call fail with this errno value unless its argument, counted from 0, has this value; or where
    /// those bits of it that the mask has do. Throws std::system_error.
    void refuseUnless(int call, unsigned argument, std::uint64_t value, int error);
    void refuseWhere(int call, unsigned argument, std::uint64_t mask, std::uint64_t value, int error);
    /// Lets the calls pass. Throws std::system_error.
    void allow(std::initializer_list<int> calls);

    /// Makes the program that install puts in; what is added later has no effect. Throws std::system_error.
    void compile();

    /// Puts the compiled filter around the calling thread, which loses the chance to get new privileges.
    /// Returns false and sets errno if the kernel refuses. Async-signal-safe.
    bool install() const;

private:
    explicit SystemCallFilter(unsigned action);

    struct Rules;

    std::unique_ptr<Rules> rules_;
    std::vector<sock_filter> program_;
};

} // namespace qrv
