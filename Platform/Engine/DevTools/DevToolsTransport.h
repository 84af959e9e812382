#pragma once

// Carries DevTools messages to and from an engine. Implemented by the pipe, and by tests.

#include "Platform/Engine/DevTools/Json.h"

#include <functional>
#include <string>
#include <utility>

namespace qrv::engine {

class DevToolsTransport {
public:
    using MessageHandler = std::function<void(const Json& message)>;
    using CloseHandler = std::function<void(const std::string& reason)>;

    enum class SendResult {
        accepted,
        tooLarge, ///< not sent, because the engine would end the connection, which stays open
        closed,   ///< not sent, because the connection has ended
    };

    virtual ~DevToolsTransport() = default;

    /// Sends one message, in order and without blocking.
    virtual SendResult send(const Json& message) = 0;

    /// Sets the handler for each message, in order, one per turn of the run loop.
    void setMessageHandler(MessageHandler handler) { messageHandler_ = std::move(handler); }

    /// Sets the handler that is called once, after the last message, if the other side or an error ended the
    /// connection.
    void setCloseHandler(CloseHandler handler) { closeHandler_ = std::move(handler); }

protected:
    /// Call these last: the handlers may destroy the transport. They are copied because a handler must not
    /// vanish while it runs.
    void deliver(const Json& message) {
        if (auto handler = messageHandler_) handler(message);
    }

    void deliverClose(const std::string& reason) {
        if (auto handler = closeHandler_) handler(reason);
    }

private:
    MessageHandler messageHandler_;
    CloseHandler closeHandler_;
};

} // namespace qrv::engine
