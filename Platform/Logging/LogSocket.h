#pragma once

// The client side of a log daemon's datagram socket.

#include <mutex>
#include <string>
#include <string_view>

namespace qrv {

/// Connects at the first datagram, and again if the daemon was restarted. Datagrams for a daemon that is
/// missing or cannot keep up are dropped; the sender never waits. Any thread.
class LogSocket {
public:
    explicit LogSocket(std::string path) : path_(std::move(path)) {}

    ~LogSocket();
    LogSocket(const LogSocket&) = delete;
    LogSocket& operator=(const LogSocket&) = delete;

    /// Returns false if the datagram was dropped. One that is too long is passed in a sealed memory file, if
    /// the daemon supports that.
    bool send(std::string_view datagram, bool mayPassMemoryFile);

    /// Changes the path for the following datagrams.
    void setPath(std::string path);

private:
    bool connect();
    void disconnect();
    bool sendOnce(std::string_view datagram, bool mayPassMemoryFile);

    std::mutex mutex_;
    std::string path_;
    int descriptor_ = -1;
};

} // namespace qrv
