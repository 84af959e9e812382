#include "Platform/Logging/LogSocket.h"

#include "Platform/Foundation/CoarseClock.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace qrv {

namespace {

/// A read-only memory file with the bytes; nothing when there can be none.
FileDescriptor memoryFile(std::string_view bytes) {
    FileDescriptor file(memfd_create("log-entry", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    if (!file) return file;
    while (!bytes.empty()) {
        const ssize_t written = write(file.get(), bytes.data(), bytes.size());
        if (written <= 0) return {};
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    fcntl(file.get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE | F_SEAL_SEAL);
    return file;
}

bool sendDescriptor(int socket, int descriptor) {
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
    msghdr message{};
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    cmsghdr* header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(sizeof(int));
    std::memcpy(CMSG_DATA(header), &descriptor, sizeof descriptor);
    return sendmsg(socket, &message, MSG_DONTWAIT | MSG_NOSIGNAL) >= 0;
}

} // namespace

void LogSocket::setPath(std::string path) {
    const std::lock_guard lock(mutex_);
    socket_.reset();
    path_ = std::move(path);
    wasThere_ = false;
    tickOfLook_ = -1;
}

bool LogSocket::mayHaveReader() {
    const std::lock_guard lock(mutex_);
    return wasThere_ || tickOfLook_ != coarseMilliseconds();
}

bool LogSocket::hasReader() {
    const std::lock_guard lock(mutex_);
    socket_.reset();
    tickOfLook_ = -1;
    return connect();
}

bool LogSocket::send(std::string_view datagram, bool mayPassMemoryFile) {
    const std::lock_guard lock(mutex_);
    if (socket_) {
        if (sendOnce(datagram, mayPassMemoryFile)) return true;
        if (errno == EAGAIN || errno == EMSGSIZE) return false;
        socket_.reset();
    }
    return connect() && sendOnce(datagram, mayPassMemoryFile);
}

bool LogSocket::connect() {
    const std::int64_t now = coarseMilliseconds();
    if (!wasThere_ && tickOfLook_ == now) return false;
    tickOfLook_ = now;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path_.size() >= sizeof address.sun_path) return false;
    path_.copy(address.sun_path, path_.size());
    FileDescriptor unconnected(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    if (::connect(unconnected.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        return false;
    socket_ = std::move(unconnected);
    wasThere_ = true;
    return true;
}

bool LogSocket::sendOnce(std::string_view datagram, bool mayPassMemoryFile) {
    const int socket = socket_.get();
    if (::send(socket, datagram.data(), datagram.size(), MSG_DONTWAIT | MSG_NOSIGNAL) >= 0) return true;
    if (errno != EMSGSIZE || !mayPassMemoryFile) return false;
    const FileDescriptor file = memoryFile(datagram);
    return file && sendDescriptor(socket, file.get());
}

} // namespace qrv
