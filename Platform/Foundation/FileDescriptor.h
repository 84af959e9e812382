#pragma once

// An open file, socket or pipe of the system that closes itself.

#include <cerrno>
#include <unistd.h>
#include <utility>

namespace qrv {

/// Owns an open file descriptor, or nothing. Closing preserves errno, so that an earlier failure can still be
/// reported, and is allowed between fork and exec.
class FileDescriptor {
public:
    FileDescriptor() = default;

    /// -1 for nothing.
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}

    FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}

    ~FileDescriptor() { reset(); }

    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        if (this != &other) {
            reset();
            descriptor_ = std::exchange(other.descriptor_, -1);
        }
        return *this;
    }

    /// -1 for nothing.
    int get() const { return descriptor_; }

    explicit operator bool() const { return descriptor_ >= 0; }

    void reset() {
        const int error = errno;
        if (descriptor_ >= 0) close();
        errno = error;
    }

    /// Closes a file that was written; false, with errno set, if the system reports a write error only now.
    [[nodiscard]] bool closeWritten() { return close() == 0; }

private:
    int close() { return ::close(std::exchange(descriptor_, -1)); }

    int descriptor_ = -1;
};

} // namespace qrv
