#include "Platform/Foundation/NSFileHandle.h"

#include <cerrno>

#include <poll.h>
#include <unistd.h>

namespace qrv {

namespace {

void waitUntilWritable(int descriptor) {
    pollfd watched{.fd = descriptor, .events = POLLOUT, .revents = 0};
    ::poll(&watched, 1, -1);
}

} // namespace

NSFileHandle NSFileHandle::fileHandleWithStandardOutput() {
    return NSFileHandle(STDOUT_FILENO);
}

void NSFileHandle::writeData(const NSData& data) {
    std::string_view rest = data.bytes();
    while (!rest.empty()) {
        const ssize_t written = ::write(descriptor_, rest.data(), rest.size());
        if (written >= 0) {
            rest.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno == EAGAIN) {
            waitUntilWritable(descriptor_);
        } else if (errno != EINTR) {
            return;
        }
    }
}

void NSFileHandle::closeFile() {
    if (descriptor_ >= 0) ::close(descriptor_);
    descriptor_ = -1;
}

} // namespace qrv
