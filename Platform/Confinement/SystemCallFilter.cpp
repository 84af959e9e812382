#include "Platform/Confinement/SystemCallFilter.h"

#include "Platform/Foundation/FileDescriptor.h"

#include <cerrno>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <seccomp.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace qrv {

namespace {

/// The library returns negative errno values.
void check(int result, const char* what) {
    if (result < 0) throw std::system_error(-result, std::generic_category(), what);
}

void checkCall(bool succeeded, const char* what) {
    if (!succeeded) throw std::system_error(errno, std::generic_category(), what);
}

} // namespace

struct SystemCallFilter::Rules {
    explicit Rules(unsigned action) : context(::seccomp_init(action)) {
        if (!context) throw std::bad_alloc();
    }

    ~Rules() { ::seccomp_release(context); }

    Rules(const Rules&) = delete;
    Rules& operator=(const Rules&) = delete;

    void add(unsigned action, std::initializer_list<int> calls) const {
        for (int call : calls) check(::seccomp_rule_add(context, action, call, 0), "filtering a system call");
    }

    void refuse(int call, const scmp_arg_cmp& where, int error) const {
        check(
            ::seccomp_rule_add_array(context, SCMP_ACT_ERRNO(static_cast<unsigned>(error)), call, 1, &where),
            "filtering a system call");
    }

    scmp_filter_ctx context;
};

SystemCallFilter SystemCallFilter::allowingAll() {
    return SystemCallFilter(SCMP_ACT_ALLOW);
}

SystemCallFilter SystemCallFilter::refusingAll(int error) {
    return SystemCallFilter(SCMP_ACT_ERRNO(static_cast<unsigned>(error)));
}

SystemCallFilter::SystemCallFilter(unsigned action) : rules_(std::make_unique<Rules>(action)) {
    check(::seccomp_attr_set(rules_->context, SCMP_FLTATR_ACT_BADARCH, SCMP_ACT_ERRNO(ENOSYS)),
          "filtering the system calls of other architectures");
}

SystemCallFilter::~SystemCallFilter() = default;
SystemCallFilter::SystemCallFilter(SystemCallFilter&&) noexcept = default;
SystemCallFilter& SystemCallFilter::operator=(SystemCallFilter&&) noexcept = default;

void SystemCallFilter::refuse(std::initializer_list<int> calls, int error) {
    rules_->add(SCMP_ACT_ERRNO(static_cast<unsigned>(error)), calls);
}

void SystemCallFilter::refuseUnless(int call, unsigned argument, std::uint64_t value, int error) {
    rules_->refuse(call, {.arg = argument, .op = SCMP_CMP_NE, .datum_a = value, .datum_b = 0}, error);
}

void SystemCallFilter::refuseWhere(int call, unsigned argument, std::uint64_t mask, std::uint64_t value,
                                   int error) {
    rules_->refuse(call, {.arg = argument, .op = SCMP_CMP_MASKED_EQ, .datum_a = mask, .datum_b = value},
                   error);
}

void SystemCallFilter::allow(std::initializer_list<int> calls) {
    rules_->add(SCMP_ACT_ALLOW, calls);
}

/// The library only writes programs to descriptors.
void SystemCallFilter::compile() {
    const FileDescriptor file(::memfd_create("filter", MFD_CLOEXEC));
    checkCall(static_cast<bool>(file), "making room for a filter");
    check(::seccomp_export_bpf(rules_->context, file.get()), "compiling a filter");

    struct stat status {};

    checkCall(::fstat(file.get(), &status) == 0, "reading a filter");
    program_.resize(static_cast<std::size_t>(status.st_size) / sizeof(sock_filter));
    checkCall(::pread(file.get(), program_.data(), static_cast<std::size_t>(status.st_size), 0) ==
                  status.st_size,
              "reading a filter");
}

bool SystemCallFilter::install() const {
    sock_fprog program{static_cast<unsigned short>(program_.size()),
                       const_cast<sock_filter*>(program_.data())};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program, 0, 0) == 0;
}

} // namespace qrv
