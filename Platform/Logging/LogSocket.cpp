#include "Platform/Logging/LogSocket.h"

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

/// Makes a read-only memory file with the bytes; -1 on failure.
int memoryFile(std::string_view bytes) {
    const int file = memfd_create("log-entry", MFD_CLOEXEC | MFD_ALLOW_SEALING);
    if (file < 0) return -1;
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written <= 0) {
            close(file);
            return -1;
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    fcntl(file, F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE | F_SEAL_SEAL);
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

LogSocket::~LogSocket() {
    disconnect();
}

void LogSocket::setPath(std::string path) {
    const std::lock_guard lock(mutex_);
    disconnect();
    path_ = std::move(path);
}

bool LogSocket::send(std::string_view datagram, bool mayPassMemoryFile) {
    const std::lock_guard lock(mutex_);
    if (descriptor_ >= 0) {
        if (sendOnce(datagram, mayPassMemoryFile)) return true;
        if (errno == EAGAIN || errno == EMSGSIZE) return false;
        disconnect();
    }
    return connect() && sendOnce(datagram, mayPassMemoryFile);
}

bool LogSocket::connect() {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path_.size() >= sizeof address.sun_path) return false;
    path_.copy(address.sun_path, path_.size());
    descriptor_ = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (descriptor_ < 0) return false;
    if (::connect(descriptor_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return true;
    disconnect();
    return false;
}

void LogSocket::disconnect() {
    if (descriptor_ >= 0) close(descriptor_);
    descriptor_ = -1;
}

bool LogSocket::sendOnce(std::string_view datagram, bool mayPassMemoryFile) {
    if (::send(descriptor_, datagram.data(), datagram.size(), MSG_DONTWAIT | MSG_NOSIGNAL) >= 0) return true;
    if (errno != EMSGSIZE || !mayPassMemoryFile) return false;
    const int file = memoryFile(datagram);
    if (file < 0) return false;
    const bool sent = sendDescriptor(descriptor_, file);
    const int error = errno;
    close(file);
    errno = error;
    return sent;
}

} // namespace qrv
