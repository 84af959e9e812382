#pragma once

// DevTools messages in their binary form over a connected stream socket.
//
// Nothing blocks: what the socket does not accept at once is queued. Belongs to the run loop's thread.

#include "Platform/Engine/DevTools/DevToolsTransport.h"
#include "Platform/Foundation/FileDescriptor.h"
#include "Platform/Foundation/NSRunLoop.h"

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

namespace qrv::engine {

class DevToolsPipe : public DevToolsTransport {
public:
    struct Limits {
        /// A longer message is not sent. The engine was seen to take 1.1 GB.
        std::size_t outgoing = std::size_t{1} << 30;
        /// A longer message ends the connection from our side.
        std::size_t incoming = std::size_t{512} << 20;
        /// Bytes of whole messages that wait for their handler; nothing is read meanwhile, so that an engine
        /// that never stops talking is slowed down and fills no memory.
        std::size_t backlog = std::size_t{16} << 20;
    };

    DevToolsPipe(FileDescriptor socket, NSRunLoop& loop);
    DevToolsPipe(FileDescriptor socket, NSRunLoop& loop, Limits limits);
    ~DevToolsPipe() override;

    SendResult send(const Json& message) override;

private:
    void watchReadable();
    void readAvailable();
    void takeBytes(std::string_view bytes);
    void takeMessage();
    void deliverNext();
    void writeQueued();
    void written(std::size_t count);
    void end(std::string reason);

    FileDescriptor socket_;
    NSRunLoop& loop_;
    Limits limits_;
    NSRunLoop::Watch readable_;
    NSRunLoop::Watch writable_;
    bool writing_ = false;    // writable_ is watching
    std::string incoming_;    // the message that arrives; as long as it will be once its length is known
    std::size_t arrived_ = 0; // bytes of it
    std::deque<NSData> received_;
    std::size_t backlog_ = 0;     // bytes that received_ takes
    bool reading_ = false;        // readable_ is watching
    std::deque<NSData> outgoing_; // what is left of the pieces of messages
    bool ended_ = false;
    bool closeDelivered_ = false;
    NSRunLoop::Posted delivery_; // of the next message
    bool deliveryPosted_ = false;
    std::string endReason_;
};

} // namespace qrv::engine
