#pragma once

// The receiving end of a log daemon's datagram socket, for tests: in a folder of its own, gone with it.

#include <array>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <optional>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

namespace qrv {

class LogReceiver {
public:
    LogReceiver() {
        std::string folder = std::filesystem::temp_directory_path() / "log-receiver-XXXXXX";
        if (!mkdtemp(folder.data())) throw std::runtime_error("no temporary folder");
        folder_ = folder;
        listen();
    }

    ~LogReceiver() {
        close();
        std::filesystem::remove_all(folder_);
    }

    LogReceiver(const LogReceiver&) = delete;
    LogReceiver& operator=(const LogReceiver&) = delete;

    std::string path() const { return folder_ / "socket"; }

    void listen() {
        socket_ = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path().copy(address.sun_path, sizeof address.sun_path - 1);
        if (bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
            throw std::runtime_error("no socket");
        }
    }

    void close() {
        ::close(socket_);
        std::filesystem::remove(path());
    }

    /// The oldest datagram, or nothing. Datagrams of this process are there as soon as they are sent.
    std::optional<std::string> next() {
        pollfd wanted{socket_, POLLIN, 0};
        if (poll(&wanted, 1, 0) != 1) return std::nullopt;
        std::vector<char> bytes(1 << 20);
        iovec part{bytes.data(), bytes.size()};
        alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
        msghdr message{};
        message.msg_iov = &part;
        message.msg_iovlen = 1;
        message.msg_control = control.data();
        message.msg_controllen = control.size();
        const ssize_t length = recvmsg(socket_, &message, MSG_CMSG_CLOEXEC);
        if (length < 0) throw std::runtime_error("recvmsg");
        if (const cmsghdr* header = CMSG_FIRSTHDR(&message)) return contentsOfPassedFile(header);
        return std::string(bytes.data(), static_cast<std::size_t>(length));
    }

    /// The next datagram as a journal entry.
    std::optional<std::map<std::string, std::string>> nextEntry() {
        const std::optional<std::string> datagram = next();
        if (!datagram) return std::nullopt;
        return parsed(*datagram);
    }

    /// Takes all datagrams that are there, unread, and says how many.
    std::size_t discard() {
        std::size_t count = 0;
        while (recv(socket_, nullptr, 0, MSG_DONTWAIT) >= 0) ++count;
        return count;
    }

    std::size_t memoryFiles() const { return memoryFiles_; }

private:
    std::string contentsOfPassedFile(const cmsghdr* header) {
        int file = -1;
        std::memcpy(&file, CMSG_DATA(header), sizeof file);
        ++memoryFiles_;
        std::string contents(static_cast<std::size_t>(lseek(file, 0, SEEK_END)), '\0');
        const ssize_t length = pread(file, contents.data(), contents.size(), 0);
        ::close(file);
        contents.resize(static_cast<std::size_t>(length));
        return contents;
    }

    static std::map<std::string, std::string> parsed(const std::string& datagram) {
        std::map<std::string, std::string> fields;
        for (std::size_t at = 0; at < datagram.size();) {
            const std::size_t end = datagram.find_first_of("=\n", at);
            if (end == std::string::npos) throw std::runtime_error("a field without a value");
            const std::string name = datagram.substr(at, end - at);
            std::size_t from = end + 1;
            std::size_t length = 0;
            if (datagram[end] == '=') {
                length = datagram.find('\n', from) - from;
            } else {
                for (unsigned i = 0; i < 8; ++i) {
                    length |= static_cast<std::size_t>(static_cast<unsigned char>(datagram.at(from + i)))
                              << (8 * i);
                }
                from += 8;
            }
            if (datagram.at(from + length) != '\n') throw std::runtime_error("a field without an end");
            fields[name] = datagram.substr(from, length);
            at = from + length + 1;
        }
        return fields;
    }

    std::filesystem::path folder_;
    int socket_ = -1;
    std::size_t memoryFiles_ = 0;
};

} // namespace qrv
