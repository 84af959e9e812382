#pragma once

// Sends commands to an engine and receives its events, over a transport.
//
//     DevToolsClient client(transport, NSRunLoop::currentRunLoop());
//     auto subscription = client.listen(session, "Page.loadEventFired", [](const Json& params) { ... });
//     client.send(session, "Page.navigate", Json::object({{"url", url}}),
//                 [](const DevToolsReply& reply) { ... });
//     DevToolsReply version = client.call({}, "Browser.getVersion", {}, std::chrono::seconds(5));
//
// A session is the engine's identifier of an attached target; the empty session is the browser itself.
// Callbacks and listeners run on the loop, never inside send. Everything belongs to the loop's thread.

#include "Platform/Engine/DevTools/DevToolsTransport.h"
#include "Platform/Engine/DevTools/Json.h"
#include "Platform/Foundation/NSRunLoop.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace qrv::engine {

struct DevToolsReply {
    enum class Status {
        result,
        error,    ///< the engine refused the command
        tooLarge, ///< not sent: the engine would end the connection
        closed,   ///< the connection or the session ended first
        timedOut, ///< from call only
    };

    Status status = Status::closed;
    Json result;                   ///< with Status::result
    std::int64_t errorCode = 0;    ///< with Status::error
    std::string errorMessage = {}; ///< if the command failed

    bool ok() const { return status == Status::result; }
};

class DevToolsClient {
public:
    using ReplyHandler = std::function<void(const DevToolsReply& reply)>;
    using EventHandler = std::function<void(const Json& params)>;
    using ClosedHandler = std::function<void(const std::string& reason)>;

    /// The transport is not owned; it and the loop must outlive the client.
    DevToolsClient(DevToolsTransport& transport, NSRunLoop& loop);
    /// Drops callbacks that are still waiting, without calling them.
    ~DevToolsClient();
    DevToolsClient(const DevToolsClient&) = delete;
    DevToolsClient& operator=(const DevToolsClient&) = delete;

    /// Sends a command; the callback, if any, is called exactly once.
    void send(const std::string& session, std::string_view method, const Json& params = {},
              ReplyHandler callback = {});

    /// Sends a command and runs the loop until the reply, the end of the connection or the timeout. A later
    /// reply is dropped.
    DevToolsReply call(const std::string& session, std::string_view method, const Json& params,
                       std::chrono::nanoseconds timeout);

    /// Runs the loop until this is so, or the timeout: for answers to several commands. False if it is not.
    bool runUntil(const std::function<bool()>& isDone, std::chrono::nanoseconds timeout);

    /// Ends the subscription when destroyed. Any handler, even its own, may destroy it, and it may outlive
    /// the client.
    class Subscription {
    public:
        Subscription() = default;

        void cancel() { handler_.reset(); }

    private:
        friend class DevToolsClient;

        explicit Subscription(std::shared_ptr<EventHandler> handler) : handler_(std::move(handler)) {}

        std::shared_ptr<EventHandler> handler_;
    };

    /// Calls the handler with the parameters of each such event of the session, after earlier listeners. A
    /// listener added during an event gets the next one.
    [[nodiscard]] Subscription listen(const std::string& session, std::string_view method,
                                      EventHandler handler);

    /// Sets the handler that is called once when the connection ends, after the waiting callbacks.
    void setClosedHandler(ClosedHandler handler) { closedHandler_ = std::move(handler); }

    /// Ends the connection from this side: pending and later commands are answered with Status::closed, and
    /// no more events arrive. The closed handler is called as if the engine had ended.
    void disconnect(const std::string& reason) { connectionEnded(reason); }

    bool isClosed() const { return closed_; }

private:
    struct Pending {
        std::string session;
        ReplyHandler callback;
    };

    std::int64_t sendCommand(const std::string& session, std::string_view method, const Json& params,
                             ReplyHandler callback);
    void callSoon(NSRunLoop::Handler handler);
    void answerSoon(ReplyHandler callback, DevToolsReply reply);
    void messageArrived(const Json& message);
    void replyArrived(const Json& message);
    void eventArrived(const Json& message);
    void sessionEnded(const std::string& session);
    void connectionEnded(const std::string& reason);

    using Listeners = std::vector<std::weak_ptr<EventHandler>>;

    DevToolsTransport& transport_;
    NSRunLoop& loop_;
    std::int64_t lastId_ = 0;
    std::map<std::int64_t, Pending> pending_;
    std::map<std::pair<std::string, std::string>, Listeners> listeners_;
    ClosedHandler closedHandler_;
    bool closed_ = false;
    std::string closeReason_;
    std::list<NSRunLoop::Posted> posted_; // what is still to be called
};

} // namespace qrv::engine
