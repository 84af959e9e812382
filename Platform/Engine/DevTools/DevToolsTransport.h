#pragma once

// Carries DevTools messages to and from an engine. Implemented by the pipe, and by tests with a script.

#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace qrv::engine {

class DevToolsTransport {
public:
    using MessageHandler = std::function<void(std::string_view message)>;
    using CloseHandler = std::function<void(const std::string& reason)>;

    enum class SendResult {
        accepted,
        tooLarge, ///< not sent, because the engine would end the connection; the connection is as it was
        closed,   ///< not sent, because the connection has ended
    };

    virtual ~DevToolsTransport() = default;

    /// Sends one message, in order and without blocking.
    virtual SendResult send(std::string message) = 0;

    /// Called with each message, in order, one per turn of the run loop.
    void setMessageHandler(MessageHandler handler) { messageHandler_ = std::move(handler); }

    /// Called once, after the last message, when the other side or an error ended the connection.
    void setCloseHandler(CloseHandler handler) { closeHandler_ = std::move(handler); }

protected:
    /// The handlers may destroy the transport: call these last. They are copied because a handler that does
    /// so must not vanish while it runs.
    void deliver(std::string_view message) {
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
