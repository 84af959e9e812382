#pragma once

// A file descriptor that closes itself.

#include <unistd.h>
#include <utility>

namespace qrv::engine {

/// Owns an open file descriptor, or nothing.
class FileDescriptor {
public:
    FileDescriptor() = default;

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

    int get() const { return descriptor_; }

    explicit operator bool() const { return descriptor_ >= 0; }

    void reset() {
        if (descriptor_ >= 0) ::close(std::exchange(descriptor_, -1));
    }

private:
    int descriptor_ = -1;
};

} // namespace qrv::engine
