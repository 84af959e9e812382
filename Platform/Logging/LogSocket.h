#pragma once

// The client side of a log daemon's datagram socket.

#include "Platform/Foundation/FileDescriptor.h"

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>

namespace qrv {

/// Connects at the first datagram, and again if the daemon was restarted; one that has never been there is
/// looked for once in a tick of the system's clock. Datagrams for a daemon that is missing or cannot keep up
/// are dropped; the sender never waits. Any thread.
class LogSocket {
public:
    explicit LogSocket(std::string path) : path_(std::move(path)) {}

    /// False when nobody has ever been there to take datagrams, as far as the present tick's look said.
    bool mayHaveReader();

    /// Whether somebody is there to take datagrams, looked for now.
    bool hasReader();

    /// False when nobody took it. What is too long for one datagram is handed over in a sealed memory file,
    /// where the daemon knows that way.
    bool send(std::string_view datagram, bool mayPassMemoryFile);

    /// Changes the path for the following datagrams.
    void setPath(std::string path);

private:
    bool connect();
    bool sendOnce(std::string_view datagram, bool mayPassMemoryFile);

    std::mutex mutex_;
    std::string path_;
    FileDescriptor socket_;
    bool wasThere_ = false;
    std::int64_t tickOfLook_ = -1;
};

} // namespace qrv
