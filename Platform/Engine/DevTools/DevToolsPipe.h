#pragma once

// DevTools messages over a connected stream socket, each terminated by a NUL byte.
//
// Nothing blocks: what the socket does not accept at once is queued. Belongs to the run loop's thread.

#include "Platform/Engine/DevTools/DevToolsTransport.h"
#include "Platform/Foundation/FileDescriptor.h"
#include "Platform/Foundation/NSRunLoop.h"

#include <cstddef>
#include <deque>

namespace qrv::engine {

class DevToolsPipe : public DevToolsTransport {
public:
    struct Limits {
        /// The engine ends the connection at a longer message, its NUL included.
        std::size_t outgoing = std::size_t{100} << 20;
        /// A longer message ends the connection from our side.
        std::size_t incoming = std::size_t{512} << 20;
        /// Bytes of whole messages that wait for their handler; nothing is read meanwhile, so that an engine
        /// that never stops talking is slowed down and fills no memory.
        std::size_t backlog = std::size_t{16} << 20;
    };

    DevToolsPipe(FileDescriptor socket, NSRunLoop& loop);
    DevToolsPipe(FileDescriptor socket, NSRunLoop& loop, Limits limits);
    ~DevToolsPipe() override;

    SendResult send(std::string message) override;

private:
    void watchReadable();
    void readAvailable();
    void takeBytes(std::string_view bytes);
    void deliverNext();
    void writeQueued();
    void end(std::string reason);

    FileDescriptor socket_;
    NSRunLoop& loop_;
    Limits limits_;
    NSRunLoop::Watch readable_;
    NSRunLoop::Watch writable_;
    bool writing_ = false; // writable_ is watching
    std::string incoming_; // the start of an incomplete message
    std::deque<std::string> received_;
    std::size_t backlog_ = 0; // bytes that received_ takes
    bool reading_ = false;    // readable_ is watching
    std::deque<std::string> outgoing_;
    std::size_t written_ = 0; // bytes written of the first outgoing message
    bool ended_ = false;
    bool closeDelivered_ = false;
    NSRunLoop::Posted delivery_; // of the next message
    bool deliveryPosted_ = false;
    std::string endReason_;
};

} // namespace qrv::engine
